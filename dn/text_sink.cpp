#include "dn/text_sink.h"

#include "der/checked_size.h"

#include <algorithm>
#include <cstdint>

namespace pkider {

void text_sink_t::grow(std::size_t size) {
    const auto old_room = static_cast<std::size_t>(m_room_end - m_begin);
    const std::size_t new_room = std::max(2 * old_room, checked_size(uint64_t{this->size()} + size));
    std::unique_ptr<char[]> block(new char[new_room]); // not zeroed
    m_end = std::copy(m_begin, m_end, block.get());
    m_begin = block.get();
    m_room_end = m_begin + new_room;
    m_heap_block = std::move(block);
}

} // namespace pkider
