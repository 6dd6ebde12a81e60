#include <pkider/dn.h>

#include "dn/printable_dn.h"

#include <algorithm>
#include <string_view>

namespace pkider {
namespace {

std::string_view type_of(const RDNdescr_t& record) {
    return {record.type_begin, static_cast<std::size_t>(record.type_end - record.type_begin)};
}

} // namespace
} // namespace pkider

bool printable_dn_get_attr(const char* dn, const char* type, std::string& out, PrintableDnGetAttr mode) {
    using namespace pkider;

    std::vector<RDNdescr_t> records;
    if (printable_dn_split(dn, records).code != 0) return false;
    const std::string_view wanted(type);
    const auto found = std::find_if(records.begin(), records.end(),
                                    [wanted](const RDNdescr_t& record) { return type_of(record) == wanted; });
    if (found == records.end()) return false;

    const char* const begin = mode == DN_GET_ATTR_VALUE ? found->value_begin : found->type_begin;
    out.append(begin, static_cast<std::size_t>(found->value_end - begin));
    return true;
}

bool printable_dn_C_before_CN(const char* dn) {
    using namespace pkider;

    std::vector<RDNdescr_t> records;
    if (printable_dn_split(dn, records).code != 0) return false;
    bool cn_seen = false;
    for (const RDNdescr_t& record : records) {
        if (type_of(record) == "C") return !cn_seen;
        if (type_of(record) == "CN") cn_seen = true;
    }
    return true;
}
