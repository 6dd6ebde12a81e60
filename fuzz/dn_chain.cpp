// A line printed from an encoded line encodes again and prints as the same text, and printable_dn_normalize gives that
// text. Exceptions are a text with a NUL in it, types of which the first arc prints as 3 or more, and encodings of
// 65,536 bytes and more.
#include "fuzz/check.h"
#include "fuzz/line.h"

#include <pkider/dn.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

constexpr std::size_t first_cut_size = 0x10000;

bool print(const std::string& der, std::string& out, oid_map_handle_t map) {
    return asn_dn_to_printable(reinterpret_cast<const uint8_t*>(der.data()), static_cast<uint32_t>(der.size()), out,
                               DN_ORDER_AS_ENCODED, map);
}

// Dotted text with a first arc of 3 and more is not accepted; it comes from a second arc above 39 after a first arc
// of 2.
bool has_unreadable_type(const std::string& text) {
    std::vector<RDNdescr_t> records;
    CHECK_TRUE(printable_dn_parse(text.c_str(), records));
    return std::any_of(records.begin(), records.end(), [](const RDNdescr_t& record) {
        const bool dotted = *record.type_begin >= '0' && *record.type_begin <= '9';
        return dotted && (*record.type_begin > '2' || record.type_begin[1] != '.');
    });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const oid_map_handle_t map = (data[0] & 1) != 0 ? OID_MAP_HANDLE_DEFAULT : oid_map_handle_t{};
    const fuzz_line_t line(data + 1, size - 1);

    std::string der;
    const bool encoded = printable_to_asn_dn(line.c_str(), der, map);
    std::string text;
    const bool printed = encoded && print(der, text, map);

    std::string normal;
    std::string normal_der;
    CHECK_TRUE(printable_dn_normalize(line.c_str(), normal, &normal_der, map) == printed);
    CHECK_TRUE(normal == text && normal_der == der);
    if (!printed || der.size() >= first_cut_size || text.find('\0') != std::string::npos) return 0;

    std::string again_der;
    if (has_unreadable_type(text)) {
        CHECK_TRUE(!printable_to_asn_dn(text.c_str(), again_der, map));
        return 0;
    }
    CHECK_TRUE(printable_to_asn_dn(text.c_str(), again_der, map));
    if (again_der.size() >= first_cut_size) return 0;
    std::string again;
    CHECK_TRUE(print(again_der, again, map));
    CHECK_TRUE(again == text);
    return 0;
}
