// Dotted text to the contents octets of an OBJECT IDENTIFIER (X.690 8.19), also at compile time: every object
// identifier of the library is written as dotted text, and encoded by the function that hosts call.
//
//     constexpr auto sha1 = oid_contents<"1.3.14.3.2.26">;   // 2B 0E 03 02 1A
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace pkider {

constexpr uint64_t oid_buffer_size = 512;

/// Contents are never longer than this: the last six bytes of the buffer are unchanged.
/// Required: OidStrToAsn.RequiredLastSixBytesAreNeverWritten.
constexpr uint64_t max_oid_contents = 506;

/// The value of a decimal digit; above 9 for every other byte.
constexpr unsigned oid_digit_value(char c) {
    return static_cast<uint8_t>(c) - unsigned{'0'};
}

/// Reads the arc that begins at `at`, digits up to a '.' or `end`, leading zeros in any number, and steps to its end.
///
/// @return  False when there is no arc or it exceeds 32 bits; `at` is then somewhere in it.
constexpr bool read_oid_arc(const char*& at, const char* end, uint32_t& out) {
    if (at == end) return false;
    uint64_t value = oid_digit_value(*at);
    if (value > 9) return false;
    for (++at; at != end; ++at) {
        const unsigned digit = oid_digit_value(*at);
        if (digit > 9) break;
        value = value * 10 + digit;
        if (value > 0xFFFFFFFF) return false;
    }
    if (at != end && *at != '.') return false;
    out = static_cast<uint32_t>(value);
    return true;
}

/// Number of base-128 digits of a subidentifier.
constexpr uint64_t oid_subidentifier_size(uint32_t value) {
    if (value < 1u << 7) return 1;
    if (value < 1u << 14) return 2;
    if (value < 1u << 21) return 3;
    return value < 1u << 28 ? 4 : 5;
}

/// oid_str_to_asn_ itself.
constexpr uint64_t encode_oid(const char* begin, const char* end, uint8_t (&out)[oid_buffer_size]) {
    const char* at = begin;
    uint32_t first = 0;
    if (!read_oid_arc(at, end, first) || first > 2) return 0;

    // The second arc shares a subidentifier with the first one (X.690 8.19.4). It is not limited to 39, and the sum
    // wraps. Required: OidStrToAsn.RequiredSecondArcWraps, OidStrToAsn.RequiredSecondArcIsNotLimitedTo39.
    uint32_t shared = first * 40;
    uint64_t count = 0;
    while (at != end) {
        uint32_t arc = 0;
        ++at; // the '.'
        if (!read_oid_arc(at, end, arc)) return 0;
        const uint32_t value = arc + shared;
        shared = 0;

        const uint64_t size = oid_subidentifier_size(value);
        if (count + size > max_oid_contents) return 0;
        for (uint64_t i = size; i-- > 1;) out[count++] = static_cast<uint8_t>(0x80 | value >> 7 * i);
        out[count++] = value & 0x7F;
    }
    return count;
}

/// A string literal as a template argument.
template <std::size_t Size>
struct literal_t {
    char text[Size];
    constexpr literal_t(const char (&literal)[Size]) { std::copy_n(literal, Size, text); }
    constexpr const char* end() const { return text + Size - 1; }
};

/// The contents octets of an object identifier. Text that is not an OID does not compile.
template <literal_t Dotted>
inline constexpr auto oid_contents = [] {
    struct encoded_t {
        uint8_t bytes[oid_buffer_size] = {};
        uint64_t size = encode_oid(Dotted.text, Dotted.end(), bytes);
    };
    constexpr encoded_t encoded;
    static_assert(encoded.size != 0, "not an object identifier in dotted text");
    std::array<uint8_t, encoded.size> contents{};
    std::copy_n(encoded.bytes, encoded.size, contents.begin());
    return contents;
}();

} // namespace pkider
