// The standard streams: bytes on all of them, and what is special about a terminal.
#pragma once

#include <cstdio>
#include <string_view>

namespace tool {

/// Called before the first byte is read or written: no system changes line ends then.
void prepare_standard_streams() noexcept;

bool is_terminal(std::FILE* stream);

/// A terminal that shows colours. On Windows this asks the console for them.
bool shows_colours(std::FILE* stream);

/// Writes UTF-8 or any bytes. @return  False, with errno, when not all could be written.
bool write_to(std::FILE* stream, std::string_view bytes);

} // namespace tool
