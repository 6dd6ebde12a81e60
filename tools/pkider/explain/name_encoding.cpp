#include "tools/pkider/explain/name_encoding.h"

#include "tools/pkider/explain/dn_fault.h"
#include "tools/pkider/explain/faithful_lengths.h"

#include <pkider/dn.h>

#include <vector>

namespace tool {
namespace {

[[noreturn]] void fail(const std::string& line, oid_map_handle_t map) {
    std::string ignored;
    throw bad_line_t(line, explain_line_fault(line, printable_dn_normalize_r(line, ignored, nullptr, map), map));
}

} // namespace

std::string encode_name(const std::string& line, oid_map_handle_t map) {
    std::string der;
    if (!printable_to_asn_dn(line.c_str(), der, map)) fail(line, map);
    check_faithful_lengths(der, "the name");
    return der;
}

void check_splits(const std::string& line, oid_map_handle_t map) {
    std::vector<RDNdescr_t> records;
    if (!printable_dn_parse(line.c_str(), records)) fail(line, map);
}

} // namespace tool
