#include "tools/pkider/formats/utf8.h"

namespace tool {
namespace {

struct lead_byte_t {
    std::size_t size;
    char32_t smallest; // smaller values have a shorter form
    char32_t bits;
};

constexpr lead_byte_t read_lead_byte(unsigned char byte) {
    if (byte >= 0xC2 && byte <= 0xDF) return {2, 0x80, byte & 0x1Fu};
    if (byte >= 0xE0 && byte <= 0xEF) return {3, 0x800, byte & 0x0Fu};
    if (byte >= 0xF0 && byte <= 0xF4) return {4, 0x10000, byte & 0x07u};
    return {0, 0, 0};
}

} // namespace

utf8_step_t next_utf8(std::string_view text) {
    const unsigned char first = static_cast<unsigned char>(text.front());
    if (first < 0x80) return {first, 1, true};

    const utf8_step_t invalid{first, 1, false};
    const lead_byte_t lead = read_lead_byte(first);
    if (lead.size == 0 || text.size() < lead.size) return invalid;

    char32_t character = lead.bits;
    for (std::size_t i = 1; i < lead.size; ++i) {
        const unsigned char byte = static_cast<unsigned char>(text[i]);
        if ((byte & 0xC0u) != 0x80u) return invalid;
        character = character << 6 | (byte & 0x3Fu);
    }
    const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
    if (character < lead.smallest || surrogate || character > 0x10FFFF) return invalid;
    return {character, lead.size, true};
}

std::string_view without_byte_order_mark(std::string_view text) {
    return text.starts_with(byte_order_mark) ? text.substr(byte_order_mark.size()) : text;
}

} // namespace tool
