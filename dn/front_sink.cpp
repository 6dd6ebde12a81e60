#include "dn/front_sink.h"

#include "der/checked_size.h"

#include <algorithm>
#include <cstdint>

namespace pkider {

void front_sink_t::grow(std::size_t size) {
    const auto old_room = static_cast<std::size_t>(m_end - m_room);
    const std::size_t new_room = std::max(2 * old_room, checked_size(uint64_t{text().size()} + size));
    std::unique_ptr<char[]> block(new char[new_room]); // not zeroed
    char* const end = block.get() + new_room;
    m_begin = std::copy_backward(m_begin, m_end, end);
    m_end = end;
    m_room = block.get();
    m_heap_block = std::move(block);
}

} // namespace pkider
