// Characters as UTF-8 (RFC 3629 3). Any number below 0x110000 is taken for a character, a surrogate too: whether it is
// one is the business of the code page it comes from.
#pragma once

#include <cstdint>

namespace pkider {

/// Number of bytes that a character takes.
constexpr uint64_t utf8_size(uint32_t code) {
    return uint64_t{1} + (code >= 0x80) + (code >= 0x800) + (code >= 0x10000);
}

/// A byte after the first one: the lowest six bits.
constexpr char utf8_tail(uint32_t bits) {
    return static_cast<char>(0x80 | (bits & 0x3F));
}

/// Writes the utf8_size(code) bytes of a character and returns the place after them.
constexpr char* put_utf8(uint32_t code, char* out) {
    if (code < 0x80) {
        *out++ = static_cast<char>(code);
    } else if (code < 0x800) {
        *out++ = static_cast<char>(0xC0 | code >> 6);
        *out++ = utf8_tail(code);
    } else if (code < 0x10000) {
        *out++ = static_cast<char>(0xE0 | code >> 12);
        *out++ = utf8_tail(code >> 6);
        *out++ = utf8_tail(code);
    } else {
        *out++ = static_cast<char>(0xF0 | code >> 18);
        *out++ = utf8_tail(code >> 12);
        *out++ = utf8_tail(code >> 6);
        *out++ = utf8_tail(code);
    }
    return out;
}

} // namespace pkider
