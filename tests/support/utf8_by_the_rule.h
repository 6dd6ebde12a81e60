// A second way to write UTF-8: as RFC 3629 3 draws it, bit by bit.
#pragma once

#include <cstdint>
#include <string>

namespace pkider_test {

inline std::string utf8_by_the_rule(uint32_t code) {
    const auto tail = [code](int shift) { return static_cast<char>(0x80 | (code >> shift & 0x3F)); };
    const auto lead = [code](uint32_t mark, int shift) { return static_cast<char>(mark | code >> shift); };
    if (code < 0x80) return {lead(0, 0)};
    if (code < 0x800) return {lead(0xC0, 6), tail(0)};
    if (code < 0x10000) return {lead(0xE0, 12), tail(6), tail(0)};
    return {lead(0xF0, 18), tail(12), tail(6), tail(0)};
}

} // namespace pkider_test
