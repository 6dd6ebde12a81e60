// Walking DER inside the library: one header, the next child of a parent, a context-tagged child, a short INTEGER.
//
// asn_decode_header is the one decoder of headers; asn1_read_tag_ (pkider/der.h) and everything here is a thin form of
// it. All of it is inline: a key or a signature is a handful of headers, and calls would cost more than they do. A
// parent is consumed as it is walked:
//
//     asn_element_t name = asn_contents(der, size), rdn;
//     while (asn_next_element(asn_tag_t::SET, name, rdn)) { ... }   // rdn is a cursor over its own contents
#pragma once

#include <pkider/der.h>

#include <cstdint>

namespace pkider {

/// A view of one element in a caller's buffer, and the cursor over its own contents.
struct asn_element_t {
    const uint8_t* start = nullptr;   ///< First byte of the identifier.
    const uint8_t* content = nullptr; ///< First byte of the contents not yet walked; null when the read failed.
    uint64_t length = 0;              ///< Bytes of contents not yet walked.
};

/// Bytes to be walked as the contents of an element: an input, or contents that a caller hands over.
constexpr asn_element_t asn_contents(const uint8_t* content, uint64_t length) {
    return {nullptr, content, length};
}

/// The context-specific constructed tag [number], of which the low five bits count.
constexpr asn_tag_t::Type asn_context_tag(uint8_t number) {
    return static_cast<asn_tag_t::Type>(asn_tag_t::CONTEXT_0 | (number & 0x1F));
}

/// asn1_read_tag_, whose contract it keeps.
inline const uint8_t* asn_decode_header(asn_tag_t::Type tag, const uint8_t* data, uint64_t size, uint64_t* out_len) {
    constexpr uint64_t max_length_octets = 4;

    if (size < 2) return nullptr;
    if (tag != asn_tag_t::ANY && static_cast<uint8_t>(tag) != data[0]) return nullptr;

    const uint64_t available = size - 2;
    const uint64_t first = data[1];
    if (first < 0x80) [[likely]] { // short form, X.690 8.1.3.4. Bench: der/walk
        *out_len = first;
        if (available < first) [[unlikely]]
            return nullptr;
        return data + 2;
    }
    if (first == 0x82 && available >= 2) { // most long forms. Bench: alg/rsa_public_key
        const uint64_t length = uint64_t{data[2]} << 8 | data[3];
        *out_len = length;
        return available - 2 >= length ? data + 4 : nullptr;
    }
    // Need not be the shortest. Required: ReadTag.BothWidthsGiveContentsAndLength/RequiredNonMinimalLength and
    // ReadTag.BothWidthsGiveContentsAndLength/RequiredNonMinimalTwoOctets.
    const uint64_t num_octets = first & 0x7F; // long form, X.690 8.1.3.5; none: the indefinite form, 8.1.3.6
    if (num_octets == 0 || num_octets > max_length_octets || num_octets > available) return nullptr;
    uint32_t length = 0;
    for (uint64_t i = 0; i < num_octets; ++i) length = length << 8 | data[2 + i];
    *out_len = length;
    return available - num_octets >= length ? data + 2 + num_octets : nullptr;
}

/// asn_decode_header with 32-bit sizes. Unlike it, always writes `*out_len`: 0 when the header cannot be decoded, the
/// decoded length when only the contents do not fit.
inline const uint8_t* asn1_read_tag32(asn_tag_t::Type tag, const uint8_t* data, uint32_t size, uint32_t* out_len) {
    uint64_t length = 0;
    const uint8_t* const content = asn_decode_header(tag, data, size, &length);
    *out_len = static_cast<uint32_t>(length); // four length octets at most
    return content;
}

/// Reads the next element of `parent`'s remaining contents and moves past it.
///
/// On failure `parent` is unchanged, `child.start` is the place where the element was expected, `child.content` is
/// null, and `child.length` is as asn1_read_tag_ leaves its length. `parent` and `child` must be two objects.
inline bool asn_next_element(asn_tag_t::Type tag, asn_element_t& parent, asn_element_t& child) {
    child.start = parent.content;
    child.content = asn_decode_header(tag, parent.content, parent.length, &child.length);
    if (child.content == nullptr) return false;

    parent.length -= static_cast<uint64_t>(child.content - child.start) + child.length;
    parent.content = child.content + child.length;
    return true;
}

/// asn_next_element for asn_context_tag(number).
inline bool asn_next_context_element(uint8_t number, asn_element_t& parent, asn_element_t& child) {
    return asn_next_element(asn_context_tag(number), parent, child);
}

/// Reads INTEGER contents as an unsigned number (iteration counts).
///
/// Empty contents are accepted and leave `*out` unchanged; a negative number is refused. Five significant bytes pass
/// and lose their high byte; six are refused.
bool asn_read_uint32(const uint8_t* content, uint64_t length, uint32_t* out);

} // namespace pkider
