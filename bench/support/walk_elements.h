// Walks every element of some DER with a library's own header reader; the walk around it is the same for all.
#pragma once

#include "bench/support/inputs.h"

#include <cstdint>

namespace pkider_bench {

/// Into what is constructed and past what is not: elements nest properly in a certificate, so that no stack of ends is
/// needed to see them all. What the walk costs is small beside a header, and the same for all.
///
/// @param read  `const uint8_t* read(const uint8_t* at, const uint8_t* end, uint64_t& length)`: the contents of the
///              element at `at`, or null.
/// @return      Number of elements and the sum of their lengths.
template <typename Read>
uint64_t walk_elements(const bytes_t& der, Read read) {
    const uint8_t* at = der.data();
    const uint8_t* const end = at + der.size();
    uint64_t sum = 0;
    while (at != end) {
        const bool constructed = (*at & 0x20) != 0;
        uint64_t length = 0;
        at = read(at, end, length);
        if (at == nullptr) return sum;
        sum += length + 1;
        if (constructed) continue;
        asm volatile(""); // no conditional move: it would make every step wait for the length before it
        at += length;
    }
    return sum;
}

/// The pass of row_name::walk.
template <typename Read>
uint64_t walk_certificates(Read read) {
    uint64_t sum = 0;
    for (const bytes_t& certificate : certificates()) sum += walk_elements(certificate, read);
    return sum;
}

inline std::size_t num_elements() {
    std::size_t num = 0;
    for (const bytes_t& certificate : certificates()) {
        walk(certificate, [&](uint8_t, const uint8_t*, const uint8_t*, std::size_t) { ++num; });
    }
    return num;
}

} // namespace pkider_bench
