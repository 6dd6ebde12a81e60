// Text out of the input, made safe to show.
//
// Control characters (C0, DEL, C1), separators of lines, marks without width or that turn the direction of writing, and
// bytes that are no UTF-8 are written as a backslash and two hex digits a byte: `CN=a\1B[31m`. In a name this is the
// very syntax that the library reads, so such a line still encodes to the same bytes.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tool {

std::string printable(std::string_view text);

/// Columns that printable(text) takes on a terminal.
std::size_t printable_width(std::string_view text);

/// The text with only its invalid bytes written as `\XX`: what JSON can hold.
std::string valid_utf8(std::string_view text);

} // namespace tool
