// Steps that the readers of nested structures share, and the spans that they store. Spans of the records of alg.h and
// of asn_pkcs8_priv_key_info_t have 32-bit lengths, which the four length octets of a header never exceed, the others
// 64-bit ones.
#pragma once

#include "der/element_reader.h"

#include <cstddef>
#include <cstdint>

namespace pkider {

/// Stores what is left of an element's contents.
template <typename Length>
void asn_store_contents(const asn_element_t& element, Length& out_len, const uint8_t*& out) {
    out_len = static_cast<Length>(element.length);
    out = element.content;
}

/// Stores a whole element, its identifier and length octets included.
template <typename Length>
void asn_store_element(const asn_element_t& element, Length& out_len, const uint8_t*& out) {
    out_len = static_cast<Length>(element.length + static_cast<uint64_t>(element.content - element.start));
    out = element.start;
}

/// asn_next_element that stores the contents. On failure the span and `parent` are unchanged.
template <typename Length>
bool asn_next_contents(asn_tag_t::Type tag, asn_element_t& parent, Length& out_len, const uint8_t*& out) {
    asn_element_t child;
    if (!asn_next_element(tag, parent, child)) return false;
    asn_store_contents(child, out_len, out);
    return true;
}

/// asn_next_contents that stores 0 and null on failure.
template <typename Length>
bool asn_next_contents_or_null(asn_tag_t::Type tag, asn_element_t& parent, Length& out_len, const uint8_t*& out) {
    asn_element_t child;
    const bool found = asn_next_element(tag, parent, child);
    out_len = found ? static_cast<Length>(child.length) : 0;
    out = child.content;
    return found;
}

/// True when at least one byte is left in `parent` and it is `tag`.
inline bool asn_is_next(asn_tag_t::Type tag, const asn_element_t& parent) {
    return parent.length != 0 && parent.content[0] == tag;
}

/// The input from the place to which a reader has walked inside it: bounded by the input, not by an element around it.
inline asn_element_t asn_from_place(const asn_element_t& input, const uint8_t* place) {
    // Not straight to uint64_t: with addresses of 32 bits a difference of 2 GiB and more is negative.
    return asn_contents(place, input.length - static_cast<std::size_t>(place - input.content));
}

} // namespace pkider
