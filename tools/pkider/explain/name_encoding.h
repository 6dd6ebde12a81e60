// Lines of text to the DER of a Name, and nothing that would read as another Name.
#pragma once

#include <pkider/oid.h>

#include <string>

namespace tool {

/// The DER of a Name. Throws bad_line_t for a line that is none, and data_fault_t for a line whose Name has 65,536 or
/// more content bytes at some level: the length octets that the library writes from there on can lose zero bytes, and
/// the result may be the DER of another Name.
std::string encode_name(const std::string& line, oid_map_handle_t map);

/// Throws bad_line_t for a line that cannot be split into attributes; types and values are not checked.
void check_splits(const std::string& line, oid_map_handle_t map);

} // namespace tool
