// From the elements that a reader walks to the spans of its record: 32-bit lengths, which the four length octets of a
// header never exceed, in front of pointers into the input.
#pragma once

#include "der/element_reader.h"

#include <cstdint>

namespace pkider {

/// Stores what is left of an element's contents.
inline void asn_store_contents(const asn_element_t& element, uint32_t& len, const uint8_t*& data) {
    len = static_cast<uint32_t>(element.length);
    data = element.content;
}

/// Stores a whole element, its identifier and length octets included.
inline void asn_store_element(const asn_element_t& element, uint32_t& len, const uint8_t*& data) {
    len = static_cast<uint32_t>(element.length + static_cast<uint64_t>(element.content - element.start));
    data = element.start;
}

/// Reads the next element of `parent` and stores its contents. Without such an element `len` and `data` stay as they
/// were.
inline bool asn_read_contents(asn_tag_t::Type tag, asn_element_t& parent, uint32_t& len, const uint8_t*& data) {
    asn_element_t child;
    if (!asn_next_element(tag, parent, child)) return false;
    asn_store_contents(child, len, data);
    return true;
}

/// asn_read_contents that stores 0 and null when there is no such element.
inline bool asn_read_contents_or_null(asn_tag_t::Type tag, asn_element_t& parent, uint32_t& len, const uint8_t*& data) {
    asn_element_t child;
    const bool found = asn_next_element(tag, parent, child);
    len = found ? static_cast<uint32_t>(child.length) : 0;
    data = child.content;
    return found;
}

/// The input from the place to which a reader has walked inside it: bounded by the input, not by an element around it.
inline asn_element_t asn_from_place(const asn_element_t& input, const uint8_t* place) {
    return {nullptr, place, input.length - static_cast<uint64_t>(place - input.content)};
}

} // namespace pkider
