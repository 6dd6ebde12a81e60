// For any bytes: the text changes only for a well-formed element. An element that the map does not contain prints as
// the codec's dotted text, appended, or as the name of its algorithm, with or without that text.
#include "alg/display_names.h"
#include "fuzz/check.h"

#include <pkider/der.h>
#include <pkider/oid.h>

#include <string>

namespace {

struct printed_t {
    bool printed;
    std::string text;
};

printed_t print(const uint8_t* data, std::size_t size, bool with_dotted, oid_map_handle_t map) {
    printed_t out{false, "x"};
    out.printed = asn_oid_to_printable(data, static_cast<uint32_t>(size), out.text, with_dotted, map);
    return out;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const printed_t plain = print(data, size, false, {}), full = print(data, size, true, {});
    const printed_t named = print(data, size, true, OID_MAP_HANDLE_DEFAULT);

    uint64_t len = 0;
    const uint8_t* const oid = asn1_read_tag_(asn_tag_t::OBJECT_IDENTIFIER, data, size, &len);
    if (oid == nullptr) {
        for (const printed_t& out : {plain, full, named}) CHECK_TRUE(!out.printed && out.text == "x");
        return 0;
    }
    std::string dotted;
    const bool has_dotted = oid_asn_to_str_(oid, oid + len, dotted);
    const pki_alg_t alg = PKI_OID_TO_ALG(oid, static_cast<uint32_t>(len));
    if (alg == PKI_ALG_NONE) {
        for (const printed_t& out : {plain, full}) CHECK_TRUE(out.printed == has_dotted && out.text == "x" + dotted);
    } else {
        const std::string name(pkider::alg_display_name(alg));
        CHECK_TRUE(plain.printed && plain.text == name);
        CHECK_TRUE(full.printed && full.text == name + "(" + dotted + ")");
    }
    const OIDdescr_t* const entry = oid_map_find_asn(OID_MAP_HANDLE_DEFAULT, oid, len);
    if (entry == nullptr) CHECK_TRUE(named.printed == full.printed && named.text == full.text);
    if (entry != nullptr) CHECK_TRUE(named.printed && named.text == std::string(entry->sn, entry->sn + entry->sn_len));
    return 0;
}
