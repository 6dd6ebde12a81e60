#include "tools/pkider/formats/utf16.h"

#include "tools/pkider/formats/utf8.h"

namespace tool {
namespace {

constexpr char32_t replacement = 0xFFFD;

constexpr bool is_high_surrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool is_low_surrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

void append_unit(char32_t unit, std::string& out) {
    out.push_back(static_cast<char>(unit >> 8));
    out.push_back(static_cast<char>(unit & 0xFF));
}

void append_utf8(char32_t value, std::string& out) {
    const auto tail = [&](int shift) { out.push_back(static_cast<char>(0x80 | (value >> shift & 0x3F))); };
    if (value < 0x80) {
        out.push_back(static_cast<char>(value));
    } else if (value < 0x800) {
        out.push_back(static_cast<char>(0xC0 | value >> 6));
        tail(0);
    } else if (value < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | value >> 12));
        tail(6);
        tail(0);
    } else {
        out.push_back(static_cast<char>(0xF0 | value >> 18));
        tail(12);
        tail(6);
        tail(0);
    }
}

} // namespace

bool append_utf16be(std::string_view utf8, std::string& out) {
    out.reserve(out.size() + 2 * utf8.size()); // once: a password must not remain in a buffer that was outgrown
    while (!utf8.empty()) {
        const utf8_step_t step = next_utf8(utf8);
        if (!step.valid) return false;
        utf8.remove_prefix(step.size);
        if (step.character < 0x10000) {
            append_unit(step.character, out);
        } else {
            append_unit(0xD800 + ((step.character - 0x10000) >> 10), out);
            append_unit(0xDC00 + ((step.character - 0x10000) & 0x3FF), out);
        }
    }
    return true;
}

std::string utf16be_to_utf8(std::span<const uint8_t> utf16) {
    const auto unit_at = [&](std::size_t i) { return static_cast<char32_t>(utf16[i] << 8 | utf16[i + 1]); };
    std::string out;
    for (std::size_t i = 0; i < utf16.size(); i += 2) {
        if (utf16.size() - i < 2) {
            append_utf8(replacement, out);
            break;
        }
        const char32_t unit = unit_at(i);
        if (is_high_surrogate(unit) && utf16.size() - i >= 4 && is_low_surrogate(unit_at(i + 2))) {
            append_utf8(0x10000 + ((unit - 0xD800) << 10) + (unit_at(i + 2) - 0xDC00), out);
            i += 2;
        } else {
            append_utf8(is_high_surrogate(unit) || is_low_surrogate(unit) ? replacement : unit, out);
        }
    }
    return out;
}

} // namespace tool
