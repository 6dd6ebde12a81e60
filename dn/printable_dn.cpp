#include "dn/printable_dn.h"

#include "dn/line_splitter.h"

namespace pkider {

asn_dn_result_t printable_dn_split(const char* dn, std::vector<RDNdescr_t>& out) {
    return split_line(dn, [&out](const RDNdescr_t& pair, uint8_t) { out.push_back(pair); });
}

} // namespace pkider

bool printable_dn_parse(const char* dn, std::vector<RDNdescr_t>& out) {
    return pkider::printable_dn_split(dn, out).code == 0;
}
