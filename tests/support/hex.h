// Bytes in tests are written as hex text: "30 03 02 01 05"_hex. Blanks and line breaks are free, so that an element a
// line can be written where they nest; a bad digit stops the test program.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace pkider_test {

/// Bytes with a readable form in GoogleTest's messages.
struct bytes_t : std::vector<uint8_t> {
    using std::vector<uint8_t>::vector;

    const char* chars() const { return reinterpret_cast<const char*>(data()); }
    std::string str() const { return {begin(), end()}; }
};

inline bytes_t to_bytes(std::string_view text) {
    return bytes_t(text.begin(), text.end());
}

template <typename Bytes>
std::string to_hex(const Bytes& bytes) {
    constexpr char digits[] = "0123456789ABCDEF";
    std::string out;
    for (const auto item : bytes) {
        const auto byte = static_cast<uint8_t>(item);
        if (!out.empty()) out.push_back(' ');
        out.push_back(digits[byte >> 4]);
        out.push_back(digits[byte & 0x0F]);
    }
    return out;
}

inline void PrintTo(const bytes_t& bytes, std::ostream* os) {
    *os << to_hex(bytes);
}

inline int hex_digit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

inline bytes_t from_hex(std::string_view text) {
    bytes_t out;
    int high = -1;
    for (const char c : text) {
        if (c == ' ' || c == '\n' || c == '\t') continue;
        const int digit = hex_digit(c);
        if (digit < 0) {
            std::fprintf(stderr, "bad hex digit '%c' in \"%.*s\"\n", c, static_cast<int>(text.size()), text.data());
            std::abort();
        }
        if (high < 0) {
            high = digit;
            continue;
        }
        out.push_back(static_cast<uint8_t>(high << 4 | digit));
        high = -1;
    }
    if (high >= 0) {
        std::fprintf(stderr, "odd number of hex digits in \"%.*s\"\n", static_cast<int>(text.size()), text.data());
        std::abort();
    }
    return out;
}

inline namespace literals {
inline bytes_t operator""_hex(const char* text, std::size_t size) {
    return from_hex({text, size});
}
} // namespace literals

} // namespace pkider_test
