#include "tools/pkider/name_encoding.h"

#include "tools/pkider/der_cursor.h"
#include "tools/pkider/dn_fault.h"

#include <pkider/dn.h>

#include <vector>

namespace tool {
namespace {

[[noreturn]] void fail(const std::string& line, oid_map_handle_t map) {
    std::string ignored;
    throw bad_line_t(line, explain_line_fault(line, printable_dn_normalize_r(line, ignored, nullptr, map), map));
}

// No element is larger than the SEQUENCE around all, so only that one is looked at.
bool has_faithful_lengths(const std::string& der) {
    constexpr std::uint64_t largest_contents = 0xFFFF;
    std::uint64_t length = 0;
    const bytes_t bytes = as_bytes(der);
    const std::uint8_t* const contents = asn1_read_tag_(asn_tag_t::SEQUENCE, bytes.data(), bytes.size(), &length);
    if (contents == nullptr || length > largest_contents) return false;
    return contents + length == bytes.data() + bytes.size();
}

} // namespace

std::string encode_name(const std::string& line, oid_map_handle_t map) {
    std::string der;
    if (!printable_to_asn_dn(line.c_str(), der, map)) fail(line, map);
    if (!has_faithful_lengths(der)) {
        throw data_fault_t("the name is too long: it takes " + std::to_string(der.size()) +
                           " bytes of DER, and lengths of 65536 and more cannot be encoded faithfully");
    }
    return der;
}

void check_splits(const std::string& line, oid_map_handle_t map) {
    std::vector<RDNdescr_t> records;
    if (!printable_dn_parse(line.c_str(), records)) fail(line, map);
}

} // namespace tool
