// The text of an OID map, a line at a time: `2.5.4.3 = CN, commonName`. docs/oid_map_format.md describes it.
#pragma once

#include <string_view>

namespace pkider {

/// The tokens of one line, as written; all of them may be empty.
struct oid_map_line_t {
    std::string_view oid;
    std::string_view short_name;
    std::string_view long_name;
};

/// Steps to the next line that has the form of an entry, which does not mean that its OID is one.
///
/// @param text  The text not yet read; shortened.
/// @return      False when no such line is left.
bool next_oid_map_line(std::string_view& text, oid_map_line_t& out);

} // namespace pkider
