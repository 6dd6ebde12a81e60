#include "dn/text_sink.h"

namespace pkider {

std::string& text_sink_t::spill() {
    m_text.append(m_block, m_used);
    m_used = 0;
    return m_text;
}

std::string_view text_sink_t::text() {
    if (m_text.empty()) return {m_block, m_used};
    return spill();
}

void text_sink_t::put_past_block(const void* text, std::size_t size) {
    spill().append(static_cast<const char*>(text), size);
}

} // namespace pkider
