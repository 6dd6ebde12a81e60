// Memory that the system never writes to a swap device.
#pragma once

#include <cstddef>

namespace tool {

/// Memory that is locked, or none; it lives as long as the program.
struct locked_memory_t {
    unsigned char* begin = nullptr;
    std::size_t size = 0;
};

/// At most `max_size` bytes, fewer where the system allows no more.
locked_memory_t take_locked_memory(std::size_t max_size);

} // namespace tool
