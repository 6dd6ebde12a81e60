// From sizes, which are 64 bits wide on every machine, to memory, which may be smaller. A sum of sizes never becomes an
// allocation or a length in any other way: where addresses have 32 bits, the upper half would be cut off, and a result
// of 4 GiB and more would be written to a block of a few bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>

namespace pkider {

/// True when a block of memory can have `size` bytes, half of the address space at most, so that a difference of two
/// pointers into it is no negative number either. Free with addresses of 64 bits: asn_max_content_size is below.
constexpr bool fits_memory([[maybe_unused]] uint64_t size) {
    if constexpr (sizeof(std::size_t) < sizeof(uint64_t)) return size <= SIZE_MAX / 2;
    return true;
}

/// `size`, for memory that is about to be taken.
///
/// @throws std::length_error when no block of memory can be so large.
constexpr std::size_t checked_size(uint64_t size) {
    if constexpr (sizeof(std::size_t) < sizeof(uint64_t)) {
        if (!fits_memory(size)) throw std::length_error("pkider: result too long for the memory of this machine");
    }
    return static_cast<std::size_t>(size);
}

} // namespace pkider
