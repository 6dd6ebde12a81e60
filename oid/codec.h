// Dotted text to the contents octets of an OBJECT IDENTIFIER (X.690 8.19), usable at compile time: the built-in table
// of names is encoded by the very function that hosts call.
#pragma once

#include "platform/ascii.h"

#include <cstdint>

namespace pkider {

constexpr uint64_t oid_buffer_size = 512;

/// Contents are never longer than this, whatever the buffer holds: its last six bytes stay as they are.
/// Wanted: OidStrToAsn.RequiredLastSixBytesAreNeverWritten.
constexpr uint64_t max_oid_contents = 506;

/// Reads the arc that begins at `at`: digits up to a '.' or `end`, leading zeros in any number.
///
/// @return  The place where the arc ends, or null when there is none or it exceeds 32 bits.
constexpr const char* read_oid_arc(const char* at, const char* end, uint32_t& out) {
    if (at == end) return nullptr;
    uint64_t value = ascii_digit_value(*at);
    if (value > 9) return nullptr;
    for (++at; at != end; ++at) {
        const unsigned digit = ascii_digit_value(*at);
        if (digit > 9) break;
        value = value * 10 + digit;
        if (value > 0xFFFFFFFF) return nullptr;
    }
    if (at != end && *at != '.') return nullptr;
    out = static_cast<uint32_t>(value);
    return at;
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
    uint32_t first = 0;
    const char* at = read_oid_arc(begin, end, first);
    if (at == nullptr || first > 2) return 0;

    // The second arc shares a subidentifier with the first one (X.690 8.19.4). It is not limited to 39, and the sum
    // wraps. Wanted: OidStrToAsn.RequiredSecondArcWraps, OidStrToAsn.RequiredSecondArcIsNotLimitedTo39.
    uint32_t shared = first * 40;
    uint64_t count = 0;
    while (at != end) {
        uint32_t arc = 0;
        at = read_oid_arc(at + 1, end, arc);
        if (at == nullptr) return 0;
        const uint32_t value = arc + shared;
        shared = 0;

        const uint64_t size = oid_subidentifier_size(value);
        if (count + size > max_oid_contents) return 0;
        for (uint64_t i = size; i-- > 1;) out[count++] = static_cast<uint8_t>(0x80 | value >> 7 * i);
        out[count++] = value & 0x7F;
    }
    return count;
}

} // namespace pkider
