#include "tools/pkider/explain/map_lines.h"

#include "tools/pkider/formats/oid_text.h"
#include "tools/pkider/formats/utf8.h"

#include <algorithm>

namespace tool {
namespace {

constexpr std::string_view blanks = " \t";
constexpr std::string_view line_ends = "\r\n";
constexpr std::string_view oid_characters = "0123456789.";
constexpr std::string_view short_name_ends = " \t,=";
constexpr std::string_view comment_marks = "#;/";

// Cuts a run off the front of the text.
std::string_view take(std::string_view& text, std::size_t size) {
    const std::string_view run = text.substr(0, size);
    text.remove_prefix(run.size());
    return run;
}
std::string_view take_all_of(std::string_view& text, std::string_view characters) {
    return take(text, text.find_first_not_of(characters));
}
std::string_view take_none_of(std::string_view& text, std::string_view characters) {
    return take(text, text.find_first_of(characters));
}

std::string upper(std::string_view text) {
    std::string out(text);
    for (char& c : out) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    return out;
}

void drop(map_line_t& line, const std::string& reason) {
    line.kind = map_line_kind_t::dropped;
    line.reason = reason;
}

void note_oid(map_line_t& line) {
    const std::optional<std::string> dotted = oid_dotted(line.contents);
    if (dotted && *dotted != line.oid && !has_leading_zeros(line.oid)) {
        line.notes.push_back("the OID is not exact: its bytes are printed as " + *dotted);
    }
}

void read_names(std::string_view rest, map_line_t& line) {
    take_all_of(rest, blanks);
    line.short_name = upper(take_none_of(rest, short_name_ends));
    take_all_of(rest, blanks);
    if (line.short_name.empty())
        line.notes.push_back("without a short name it prints as '=value', which cannot be read");
    if (rest.empty()) return;
    if (rest.front() != ',') {
        line.notes.push_back("'" + std::string(rest) + "' is ignored: a long name follows a ','");
        return;
    }
    rest.remove_prefix(1);
    take_all_of(rest, blanks);
    line.long_name = rest;
    if (!rest.empty() && blanks.find(rest.back()) != std::string_view::npos) {
        line.notes.push_back("the blanks at its end belong to the long name");
    }
}

void read_line(map_line_t& line) {
    std::string_view rest = line.text;
    take_all_of(rest, blanks);
    const bool comment = rest.empty() || comment_marks.find(rest.front()) != std::string_view::npos;
    if (comment || rest.find('=') == std::string_view::npos) return;

    line.oid = take_all_of(rest, oid_characters);
    take_all_of(rest, blanks);
    if (line.oid.empty()) return drop(line, "there is no OID before the '='");
    if (rest.front() != '=') return drop(line, "there is more than an OID before the '='");
    rest.remove_prefix(1);
    const std::optional<std::string> contents = oid_contents(line.oid);
    if (!contents) return drop(line, why_no_oid(line.oid));

    line.kind = map_line_kind_t::entry;
    line.contents = *contents;
    note_oid(line);
    read_names(rest, line);
}

// The mark is text before the OID, so a first line with an entry is lost.
void read_line_with_mark(map_line_t& line) {
    map_line_t without_mark = line;
    without_mark.text = without_byte_order_mark(line.text);
    read_line(without_mark);
    if (without_mark.kind == map_line_kind_t::other) {
        line.notes.push_back("a byte order mark (EF BB BF); it would hide an entry on this line");
    } else {
        drop(line, "a byte order mark (EF BB BF) is before it; save the file without one");
    }
}

} // namespace

std::vector<map_line_t> read_map_lines(const std::string& source, std::string_view text) {
    std::vector<map_line_t> lines;
    while (!text.empty()) {
        map_line_t line;
        line.source = source;
        line.number = lines.size() + 1;
        line.text = take_none_of(text, line_ends);
        take(text, text.starts_with("\r\n") ? 2 : 1);
        if (line.number == 1 && line.text.starts_with(byte_order_mark)) {
            read_line_with_mark(line);
        } else {
            read_line(line);
        }
        lines.push_back(std::move(line));
    }
    return lines;
}

} // namespace tool
