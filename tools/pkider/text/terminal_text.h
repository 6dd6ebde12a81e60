// Text out of the input, made safe to show.
//
// What a reader cannot see, or what makes the reader see something else, is written as a backslash and two hex digits a
// byte: `CN=a\1B[31m`. These are control characters (C0, DEL, C1), separators of lines, every character without a
// picture of its own (Default_Ignorable_Code_Point: joiners, fillers, variation selectors, tags, marks of direction),
// code points that Unicode has not assigned, and bytes that are no UTF-8.
//
// A backslash before two upper-case hex digits always begins such an escape or, in a name, an escape of the name
// itself. The escapes are the syntax that the library reads, so a name that is shown still encodes to the same bytes.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tool {

/// Text that is not a distinguished name: names of files, friendly names, strings. A backslash of its own is written as
/// `\5C` where it would look like an escape, `\5C1B`; others stay, so that paths of Windows can be read.
std::string printable(std::string_view text);

/// A name as one line (`CN=a\,b`), a part of one, or words about it: the backslashes stay, they are escapes already.
std::string printable_name(std::string_view line);

/// Columns that printable(text) takes on a terminal.
std::size_t printable_width(std::string_view text);

/// Columns that printable_name(line) takes on a terminal.
std::size_t printable_name_width(std::string_view line);

/// The text with only its invalid bytes written as `\XX`: what JSON can hold.
std::string valid_utf8(std::string_view text);

} // namespace tool
