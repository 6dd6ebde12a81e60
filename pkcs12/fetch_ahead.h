// Memory of large files, asked for before it is needed.
//
// The place of a bag is known from the header of the bag before it, and a bag is written after the one before it:
// neither is a pattern that a processor foresees for long. In a file that leaves the near caches it would wait for each
// bag; smaller files do without. Bench: pkcs12/read, pkcs12/write.
#pragma once

#include "platform/compiler.h"

#include <algorithm>
#include <cstdint>

namespace pkider {

/// Below this many bytes there is nothing to be gained.
inline constexpr uint64_t near_cache_size = 2'000'000;

/// Asks for as many bytes as a bag has, or as the first 8 KB of a huge one, 8 KB after its first byte.
///
/// @param bag          First byte of the bag.
/// @param size         Its size, roughly.
/// @param size_behind  Bytes that follow `size`; near the end nothing more is asked for.
//
// Inline, and so must be what calls it only: GCC drops calls of a function that does nothing but prefetch.
template <access_t Access>
PKIDER_ALWAYS_INLINE inline void fetch_ahead(const uint8_t* bag, uint64_t size, uint64_t size_behind) {
    constexpr uint64_t distance = 8192;
    constexpr uint64_t line_size = 64;
    if (size_behind < distance) return;
    for (uint64_t at = distance; at < distance + std::min(size, distance); at += line_size)
        fetch_line<Access>(bag + at);
}

} // namespace pkider
