#include "tools/pkider/text/terminal_text.h"

#include "tools/pkider/formats/encodings.h"
#include "tools/pkider/formats/utf8.h"

#include <utf8proc.h>

namespace tool {
namespace {

const utf8proc_property_t& properties_of(char32_t c) {
    return *utf8proc_get_property(static_cast<utf8proc_int32_t>(c));
}

/// Format characters that have a picture: signs that enclose the number after them (Prepended_Concatenation_Mark).
bool encloses_what_follows(const utf8proc_property_t& properties) {
    return properties.category == UTF8PROC_CATEGORY_CF && properties.boundclass == UTF8PROC_BOUNDCLASS_PREPEND;
}

// Unassigned code points can be ignorable too, which utf8proc does not know of them.
bool is_seen(char32_t c) {
    const utf8proc_property_t& properties = properties_of(c);
    switch (properties.category) {
    case UTF8PROC_CATEGORY_CC:
    case UTF8PROC_CATEGORY_ZL:
    case UTF8PROC_CATEGORY_ZP:
    case UTF8PROC_CATEGORY_CN:
        return false;
    case UTF8PROC_CATEGORY_CF:
        return encloses_what_follows(properties);
    default:
        return !properties.ignorable;
    }
}

bool looks_like_escape(std::string_view rest) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    return rest.size() >= 3 && rest[0] == '\\' && digits.find(rest[1]) != std::string_view::npos &&
           digits.find(rest[2]) != std::string_view::npos;
}

/// Of the character at the start of `rest`, as the two that follow.
bool is_valid(const utf8_step_t& step, std::string_view) {
    return step.valid;
}

bool is_seen_in_name(const utf8_step_t& step, std::string_view) {
    return step.valid && is_seen(step.character);
}

bool is_seen_in_text(const utf8_step_t& step, std::string_view rest) {
    return is_seen_in_name(step, rest) && !looks_like_escape(rest);
}

/// Columns of a character that is seen. As on terminals (wcwidth), spacing marks and enclosing signs take a column,
/// which utf8proc_charwidth does not count, and the vowels and finals of Hangul join the syllable, which it counts.
std::size_t character_width(char32_t c) {
    const utf8proc_property_t& properties = properties_of(c);
    if (properties.category == UTF8PROC_CATEGORY_MC || encloses_what_follows(properties)) return 1;
    const bool joins_syllable =
        properties.boundclass == UTF8PROC_BOUNDCLASS_V || properties.boundclass == UTF8PROC_BOUNDCLASS_T;
    return joins_syllable ? 0 : properties.charwidth;
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
        if (keep(step, text)) {
            out += bytes;
        } else {
            append_escaped(out, bytes);
        }
        text.remove_prefix(step.size);
    }
    return out;
}

template <typename Keep>
std::size_t width_unless(std::string_view text, Keep keep) {
    constexpr std::size_t escape_width = 3; // of one byte
    std::size_t width = 0;
    while (!text.empty()) {
        const utf8_step_t step = next_utf8(text);
        width += keep(step, text) ? character_width(step.character) : escape_width * step.size;
        text.remove_prefix(step.size);
    }
    return width;
}

} // namespace

std::string printable(std::string_view text) {
    return escape_unless(text, is_seen_in_text);
}

std::string printable_name(std::string_view line) {
    return escape_unless(line, is_seen_in_name);
}

std::size_t printable_width(std::string_view text) {
    return width_unless(text, is_seen_in_text);
}

std::size_t printable_name_width(std::string_view line) {
    return width_unless(line, is_seen_in_name);
}

std::string valid_utf8(std::string_view text) {
    return escape_unless(text, is_valid);
}

} // namespace tool
