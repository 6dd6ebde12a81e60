// Lines on standard error.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace tool {

/// Whether colours may be used: only on a terminal that is not dumb, and not when NO_COLOR is set to anything.
bool has_colour(std::FILE* stream);

/// `pkider: words` as one line, safe to show, with its line end.
std::string format_error(std::string_view words);
void report_error(std::string_view words);

/// The same of words that are ready to be shown.
std::string format_shown_error(std::string_view shown);

/// `pkider: note: words`. A note changes no exit code.
void report_note(std::string_view words);

/// Text that is ready to be shown, of one or more lines.
void write_to_stderr(std::string_view text);

} // namespace tool
