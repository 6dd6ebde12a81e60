#include "tools/pkider/cli/caret.h"

#include "tools/pkider/formats/utf8.h"
#include "tools/pkider/io/report.h"
#include "tools/pkider/text/terminal_text.h"

#include <vector>

namespace tool {
namespace {

constexpr std::string_view indent = "  ";
constexpr std::string_view cut = "...";
constexpr std::size_t columns_before = 60;
constexpr std::size_t columns_behind = 40;

// Offsets of the characters of a line, and of its end.
std::vector<std::size_t> character_offsets(std::string_view line) {
    std::vector<std::size_t> offsets{0};
    while (offsets.back() < line.size()) {
        offsets.push_back(offsets.back() + next_utf8(line.substr(offsets.back())).size);
    }
    return offsets;
}

// The part of a line around an offset, in whole characters.
struct excerpt_t {
    std::size_t begin, end;
};

excerpt_t excerpt_around(std::string_view line, std::size_t offset) {
    const std::vector<std::size_t> offsets = character_offsets(line);
    const auto width = [&](std::size_t from, std::size_t to) {
        return printable_name_width(line.substr(offsets[from], offsets[to] - offsets[from]));
    };
    std::size_t at = 0;
    while (at + 1 < offsets.size() && offsets[at + 1] <= offset) ++at;

    std::size_t first = at;
    for (std::size_t used = 0; first > 0 && (used += width(first - 1, first)) <= columns_before;) --first;
    std::size_t last = at;
    for (std::size_t used = 0; last + 1 < offsets.size() && (used += width(last, last + 1)) <= columns_behind;) ++last;
    return {offsets[first], offsets[last]};
}

} // namespace

std::size_t column_of(std::string_view line, std::size_t offset) {
    return printable_name_width(line.substr(0, offset)) + 1;
}

std::string show_caret(std::string_view line, std::size_t offset) {
    const excerpt_t part = excerpt_around(line, offset);
    const std::string before = part.begin == 0 ? "" : std::string(cut);
    const std::string behind = part.end == line.size() ? "" : std::string(cut);

    std::string text;
    text.append(indent).append(before).append(printable_name(line.substr(part.begin, part.end - part.begin)));
    text.append(behind).append("\n").append(indent);
    text.append(before.size() + printable_name_width(line.substr(part.begin, offset - part.begin)), ' ');
    return text + "^\n";
}

std::string show_line_fault(const std::string& source, std::string_view line, const line_fault_t& fault) {
    const std::string place = source + ":" + std::to_string(column_of(line, fault.offset));
    return format_shown_error(printable(place) + ": " + printable_name(fault.words) + " [code " +
                              std::to_string(fault.code) + "]") +
           show_caret(line, fault.offset) + std::string(indent) + printable_name(fault.advice) + "\n";
}

json_t json_line_fault(std::string_view line, const line_fault_t& fault) {
    return {{"code", fault.code},
            {"position", fault.position},
            {"offset", fault.offset},
            {"column", column_of(line, fault.offset)},
            {"message", json_text(fault.words)},
            {"advice", json_text(fault.advice)}};
}

} // namespace tool
