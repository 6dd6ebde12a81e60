#include "tools/pkider/text/terminal_text.h"

#include "tools/pkider/formats/encodings.h"
#include "tools/pkider/formats/utf8.h"
#include "tools/pkider/text/character_width.h"

namespace tool {
namespace {

// What a reader cannot see, or what makes him see something else.
constexpr bool is_safe(char32_t c) {
    if (c < 0x20 || (c >= 0x7F && c < 0xA0)) return false; // C0, DEL, C1
    if (c == 0xAD || c == 0x061C || c == 0xFEFF) return false;
    if (c >= 0x200B && c <= 0x200F) return false; // no width, direction marks
    if (c >= 0x2028 && c <= 0x202E) return false; // separators, embeddings, overrides
    return c < 0x2060 || c > 0x206F;              // joiners, isolates
}

void append_escaped(std::string& out, std::string_view bytes) {
    for (const char byte : bytes) {
        out += '\\';
        append_hex(out, {&byte, 1});
    }
}

template <typename Keep>
std::string escape_unless(std::string_view text, Keep keep) {
    std::string out;
    out.reserve(text.size());
    while (!text.empty()) {
        const utf8_step_t step = next_utf8(text);
        const std::string_view bytes = text.substr(0, step.size);
        if (keep(step)) {
            out += bytes;
        } else {
            append_escaped(out, bytes);
        }
        text.remove_prefix(step.size);
    }
    return out;
}

constexpr bool is_shown_as_it_stands(const utf8_step_t& step) {
    return step.valid && is_safe(step.character);
}

} // namespace

std::string printable(std::string_view text) {
    return escape_unless(text, is_shown_as_it_stands);
}

std::string valid_utf8(std::string_view text) {
    return escape_unless(text, [](const utf8_step_t& step) { return step.valid; });
}

std::size_t printable_width(std::string_view text) {
    std::size_t width = 0;
    while (!text.empty()) {
        const utf8_step_t step = next_utf8(text);
        width +=
            is_shown_as_it_stands(step) ? static_cast<std::size_t>(character_width(step.character)) : 3 * step.size;
        text.remove_prefix(step.size);
    }
    return width;
}

} // namespace tool
