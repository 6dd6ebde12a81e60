// DER that is fixed when the library is compiled: identifiers, and the pieces of algorithm identifiers made of them.
// Lengths are counted by the compiler, so that a constant reads like its ASN.1:
//
//     constexpr auto hmac = asn_oid<"1.2.643.2.2.10">;              // 06 06 2A 85 03 02 02 0A
//     constexpr auto prf = asn_constant_sequence(hmac, asn_null);   // 30 0A 06 06 2A 85 03 02 02 0A 05 00
#pragma once

#include "der/element_reader.h"
#include "der/oid_contents.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace pkider {

/// The pieces one after the other.
template <std::size_t... Sizes>
constexpr auto asn_constant_join(const std::array<uint8_t, Sizes>&... pieces) {
    std::array<uint8_t, (Sizes + ... + 0)> out{};
    auto at = out.begin();
    ((at = std::copy(pieces.begin(), pieces.end(), at)), ...);
    return out;
}

/// An element of the pieces, short enough for a length of one octet.
template <std::size_t... Sizes>
constexpr auto asn_constant_element(asn_tag_t::Type tag, const std::array<uint8_t, Sizes>&... pieces) {
    constexpr std::size_t content_size = (Sizes + ... + 0);
    static_assert(content_size < 0x80);
    return asn_constant_join(std::array{static_cast<uint8_t>(tag), static_cast<uint8_t>(content_size)}, pieces...);
}

template <std::size_t... Sizes>
constexpr auto asn_constant_sequence(const std::array<uint8_t, Sizes>&... pieces) {
    return asn_constant_element(asn_tag_t::SEQUENCE, pieces...);
}

/// An OBJECT IDENTIFIER: writers copy it whole, readers compare with asn_is_oid.
template <literal_t Dotted>
inline constexpr auto asn_oid = asn_constant_element(asn_tag_t::OBJECT_IDENTIFIER, oid_contents<Dotted>);

/// One without contents, which names nothing.
inline constexpr auto asn_empty_oid = asn_constant_element(asn_tag_t::OBJECT_IDENTIFIER);

inline constexpr std::array<uint8_t, 2> asn_null = {0x05, 0x00};

/// The INTEGER that begins many structures, their version; `number` is below 0x80.
constexpr std::array<uint8_t, 3> asn_version(uint8_t number) {
    return {0x02, 0x01, number};
}

/// Steps over `bytes` where they are next in `parent`: one comparison for all the headers in them.
template <std::size_t Size>
bool asn_skip_constant(asn_element_t& parent, const std::array<uint8_t, Size>& bytes) {
    if (parent.length < Size || std::memcmp(parent.content, bytes.data(), Size) != 0) return false;
    parent.content += Size;
    parent.length -= Size;
    return true;
}

/// True when the contents of `element` are those of `oid`, an asn_oid; how its header was written does not matter.
template <std::size_t Size>
bool asn_is_oid(const asn_element_t& element, const std::array<uint8_t, Size>& oid) {
    return element.length == Size - 2 && std::memcmp(element.content, oid.data() + 2, Size - 2) == 0;
}

} // namespace pkider
