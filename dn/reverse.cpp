#include <pkider/dn.h>

#include "dn/char_classes.h"
#include "dn/printable_dn.h"

#include <algorithm>

namespace pkider {
namespace {

using record_iterator_t = std::vector<RDNdescr_t>::const_iterator;

record_iterator_t end_of_rdn(record_iterator_t first, record_iterator_t end) {
    return std::find_if(first + 1, end, [](const RDNdescr_t& record) { return !record.joined_to_previous; });
}

// The blanks before an RDN move with it. Required: DnReverse.TurnsTheLineRound/RequiredBlanksMoveWithTheirRdn.
const char* begin_with_blanks(const char* line, const char* at) {
    while (at != line && (char_class(at[-1]) & CHAR_BLANK) != 0) --at;
    return at;
}

void reverse_chars(char* line, const char* begin, const char* end) {
    std::reverse(line + (begin - line), line + (end - line));
}

} // namespace
} // namespace pkider

char* printable_dn_reverse(char* dn) {
    using namespace pkider;

    std::vector<RDNdescr_t> records;
    if (printable_dn_split(dn, records).code != 0) return nullptr;
    if (records.size() < 2) return dn;

    // Each RDN, then the whole line: the RDNs change places, their text is restored.
    for (auto first = records.cbegin(); first != records.cend();) {
        const auto last = end_of_rdn(first, records.cend());
        reverse_chars(dn, begin_with_blanks(dn, first->type_begin), (last - 1)->value_end);
        first = last;
    }
    reverse_chars(dn, dn, records.back().value_end);
    return dn;
}
