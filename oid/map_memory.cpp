#include "oid/map_memory.h"

#include <pkider/oid.h>

#include <algorithm>

namespace pkider {
namespace {

constexpr std::size_t max_block_size = 64 * 1024; // but for an entry that needs more
constexpr std::size_t alignment = alignof(OIDdescr_t);
static_assert(alignment <= __STDCPP_DEFAULT_NEW_ALIGNMENT__, "blocks must be aligned for the first place in them");

} // namespace

void* oid_map_memory_t::allocate(std::size_t size) {
    size = (size + alignment - 1) / alignment * alignment;
    if (size > m_left) add_block(size);
    std::byte* const place = m_place;
    m_place += size;
    m_left -= size;
    return place;
}

void oid_map_memory_t::add_block(std::size_t min_size) {
    const std::size_t size = std::max(min_size, m_next_block_size);
    m_blocks.push_back(std::unique_ptr<std::byte[]>(new std::byte[size]));
    m_place = m_blocks.back().get();
    m_left = size;
    m_next_block_size = std::min(2 * m_next_block_size, max_block_size);
}

} // namespace pkider
