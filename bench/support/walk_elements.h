// Walks every element of some DER with a library's own header reader; the walk around it is the same for all.
#pragma once

#include "bench/support/inputs.h"

#include <cstdint>

namespace pkider_bench {

inline constexpr std::size_t max_depth = 32;

/// @param read  `const uint8_t* read(const uint8_t* at, const uint8_t* end, uint64_t& length)`: the contents of the
///              element at `at`, or null.
/// @return      Number of elements and the sum of their lengths.
template <typename Read>
uint64_t walk_elements(const bytes_t& der, Read read) {
    const uint8_t* ends[max_depth];
    std::size_t depth = 0;
    const uint8_t* at = der.data();
    ends[0] = at + der.size();
    uint64_t sum = 0;
    for (;;) {
        while (at == ends[depth]) {
            if (depth == 0) return sum;
            --depth;
        }
        const bool constructed = (*at & 0x20) != 0;
        uint64_t length = 0;
        const uint8_t* const content = read(at, ends[depth], length);
        if (content == nullptr) return sum;
        sum += length + 1;
        at = content;
        if (!constructed) {
            at += length;
        } else if (++depth == max_depth) {
            return sum;
        } else {
            ends[depth] = content + length;
        }
    }
}

inline std::size_t num_elements() {
    std::size_t num = 0;
    for (const bytes_t& certificate : certificates()) {
        walk(certificate, [&](uint8_t, const uint8_t*, const uint8_t*, std::size_t) { ++num; });
    }
    return num;
}

} // namespace pkider_bench
