// Memory of the entries of a map, which end together: blocks of operator new, from which places are cut one after
// another. Never a resource of the host's, which may end before the map.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace pkider {

class oid_map_memory_t {
  public:
    oid_map_memory_t() = default;
    oid_map_memory_t(const oid_map_memory_t&) = delete;
    oid_map_memory_t& operator=(const oid_map_memory_t&) = delete;

    /// Gives `size` bytes, aligned for an OIDdescr_t, that end with this object.
    ///
    /// @throws std::bad_alloc; what was given before stays.
    void* allocate(std::size_t size);

  private:
    void add_block(std::size_t min_size);

    std::vector<std::unique_ptr<std::byte[]>> m_blocks;
    std::size_t m_next_block_size = 1024; // small maps are the most frequent ones
    std::byte* m_place = nullptr;         // of the last block what is not given yet
    std::size_t m_left = 0;
};

} // namespace pkider
