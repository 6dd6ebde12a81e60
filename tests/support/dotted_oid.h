// Object identifiers from dotted text by the rule of X.690 8.19, without the library's encoder: a second opinion on its
// constants, which are written as dotted text too.
#pragma once

#include "tests/support/hex.h"

#include <charconv>
#include <string_view>
#include <vector>

namespace pkider_test {

/// Contents octets.
inline bytes_t dotted_contents(std::string_view text) {
    std::vector<uint32_t> arcs;
    for (const char *at = text.data(), *const end = at + text.size(); at < end; ++at) {
        uint32_t arc = 0;
        at = std::from_chars(at, end, arc).ptr;
        arcs.push_back(arc);
    }
    arcs.at(1) += 40 * arcs.at(0);

    bytes_t out;
    for (std::size_t i = 1; i < arcs.size(); ++i) {
        int num_digits = 1; // of base 128
        while (num_digits < 5 && arcs[i] >> 7 * num_digits != 0) ++num_digits;
        for (int digit = num_digits; digit-- > 0;)
            out.push_back(static_cast<uint8_t>((arcs[i] >> 7 * digit & 0x7F) | (digit != 0 ? 0x80 : 0)));
    }
    return out;
}

/// The whole element.
inline bytes_t dotted_oid(std::string_view text) {
    const bytes_t contents = dotted_contents(text);
    bytes_t out{0x06, static_cast<uint8_t>(contents.size())};
    out.insert(out.end(), contents.begin(), contents.end());
    return out;
}

} // namespace pkider_test
