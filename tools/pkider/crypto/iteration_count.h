// Iteration counts that survive being written: the library's INTEGER writer drops every zero byte, so that 2048 (08 00)
// would be stored as 8, and the file could be opened by nobody.
#pragma once

#include <cstdint>
#include <optional>

namespace tool {

/// True when `count` reads back as it was written: no zero byte after its first other byte, and not 0 itself.
bool is_storable_count(uint32_t count);

struct storable_neighbours_t {
    std::optional<uint32_t> below, above;
};

/// The nearest counts to either side of `count` that can be stored.
storable_neighbours_t storable_neighbours(uint32_t count);

} // namespace tool
