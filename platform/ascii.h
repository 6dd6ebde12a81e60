// Letters and digits of ASCII, in any locale and for signed and unsigned `char`. The functions of
// <cctype> depend on the locale and are undefined for negative values.
#pragma once

#include <cstdint>

namespace pkider {

constexpr bool is_ascii_digit(char c) {
    return c >= '0' && c <= '9';
}

/// Folds a to z; every other byte, NUL and the bytes of UTF-8 included, is unchanged.
constexpr char ascii_upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

/// The order of two texts of `size` bytes, ASCII letters without their case: below 0, 0 or above 0, bytes taken as
/// unsigned. A NUL ends nothing.
constexpr int ascii_compare_ignoring_case(const char* a, const char* b, uint64_t size) {
    for (uint64_t i = 0; i < size; ++i) {
        const int difference = static_cast<uint8_t>(ascii_upper(a[i])) - static_cast<uint8_t>(ascii_upper(b[i]));
        if (difference != 0) return difference;
    }
    return 0;
}

} // namespace pkider
