#include "oid/map_text.h"

#include "platform/ascii.h"

namespace pkider {
namespace {

constexpr bool is_blank(char c) {
    return c == ' ' || c == '\t';
}
constexpr bool is_line_end(char c) {
    return c == '\r' || c == '\n';
}
constexpr bool is_oid_char(char c) {
    return is_ascii_digit(c) || c == '.';
}
constexpr bool is_short_name_char(char c) {
    return !is_blank(c) && !is_line_end(c) && c != ',' && c != '=';
}

// Cuts the longest run of such characters off the front.
template <typename Predicate>
std::string_view take_while(std::string_view& text, Predicate wanted) {
    std::size_t size = 0;
    while (size < text.size() && wanted(text[size])) ++size;
    const std::string_view run = text.substr(0, size);
    text.remove_prefix(size);
    return run;
}

bool take_char(std::string_view& text, char c) {
    if (text.empty() || text.front() != c) return false;
    text.remove_prefix(1);
    return true;
}

// Any other character at the beginning makes the line no entry. Required:
// OidMap.RequiredByteOrderMarkHidesTheFirstLine.
bool read_line(std::string_view line, oid_map_line_t& out) {
    take_while(line, is_blank);
    out.oid = take_while(line, is_oid_char);
    take_while(line, is_blank);
    if (!take_char(line, '=')) return false;

    take_while(line, is_blank);
    // May be empty. Required: OidMap.RequiredEmptyShortNameIsAKeyLikeAnyOther.
    out.short_name = take_while(line, is_short_name_char);
    take_while(line, is_blank);
    out.long_name = {};
    if (!take_char(line, ',')) return true;

    take_while(line, is_blank);
    out.long_name = line; // blanks at its end belong to it
    return true;
}

} // namespace

bool next_oid_map_line(std::string_view& text, oid_map_line_t& out) {
    while (!text.empty()) {
        const std::string_view line = take_while(text, [](char c) { return !is_line_end(c); });
        if (!text.empty()) text.remove_prefix(1);
        if (read_line(line, out)) return true;
    }
    return false;
}

} // namespace pkider
