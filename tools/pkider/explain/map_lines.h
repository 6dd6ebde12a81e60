// The lines of a map text, distinguished as the library reads them, with the reasons that it does not report.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

enum class map_line_kind_t {
    entry,   // becomes an entry of the map
    dropped, // looks like an entry and is none: `reason` says why
    other,   // a blank line, a comment, any text without '='
};

struct map_line_t {
    std::string source;     // what the text is called
    std::size_t number = 0; // from 1; LF, CR and CR LF end a line
    map_line_kind_t kind = map_line_kind_t::other;
    std::string_view text; // the whole line; the views point into the text
    std::string_view oid;
    std::string_view long_name;
    std::string short_name;         // in upper case, as the map stores it
    std::string contents;           // of the OID
    std::string reason;             // of a dropped line
    std::vector<std::string> notes; // what a careful writer of the file wants to know
};

std::vector<map_line_t> read_map_lines(const std::string& source, std::string_view text);

} // namespace tool
