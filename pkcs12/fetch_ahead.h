// Memory of large files, asked for before it is needed.
//
// Where a bag begins stands in the header of the one before it, and a bag is written behind the one before it: neither
// is a pattern that a processor foresees for long, and in a file that leaves the near caches each bag would be waited
// for. 100,000 certificates are read in 75 ns each instead of 240, and written in 70 instead of 130; 10,000 are read in
// 40 instead of 52, and written in 51 instead of 60. Smaller files do without.
#pragma once

#include <algorithm>
#include <cstdint>

namespace pkider {

enum class access_t { READ = 0, WRITE = 1 };

/// Below this many bytes there is nothing to be gained.
inline constexpr uint64_t near_cache_size = 2'000'000;

/// Asks for as many bytes as a bag has, or as the first 8 KB of a huge one, 8 KB behind its first byte.
///
/// @param bag          First byte of the bag.
/// @param size         Its size, roughly.
/// @param size_behind  Bytes that come behind `size`; near the end nothing more is asked for.
template <access_t Access>
void fetch_ahead(const uint8_t* bag, uint64_t size, uint64_t size_behind) {
    constexpr uint64_t distance = 8192;
    constexpr uint64_t line_size = 64;
    if (size_behind < distance) return;
    // GCC takes a function that only prefetches for one without effects, and drops the calls of it, but for this.
    asm volatile("");
    for (uint64_t at = distance; at < distance + std::min(size, distance); at += line_size)
        __builtin_prefetch(bag + at, static_cast<int>(Access));
}

} // namespace pkider
