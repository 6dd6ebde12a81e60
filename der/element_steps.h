// Steps that the readers of nested structures share: the next contents as a span, and whether an optional element is
// next.
#pragma once

#include "der/element_reader.h"

#include <cstdint>

namespace pkider {

/// asn_next_element that stores the contents. A refused element leaves the span, and `parent`, as they were.
inline bool asn_next_span(asn_tag_t::Type tag, asn_element_t& parent, uint64_t& out_len, const uint8_t*& out) {
    asn_element_t child;
    if (!asn_next_element(tag, parent, child)) return false;
    out_len = child.length;
    out = child.content;
    return true;
}

/// True when at least one byte is left in `parent` and it is `tag`.
inline bool asn_next_is(asn_tag_t::Type tag, const asn_element_t& parent) {
    return parent.length != 0 && parent.content[0] == tag;
}

} // namespace pkider
