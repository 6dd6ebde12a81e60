// Columns that characters take on a terminal.
#pragma once

namespace tool {

/// 0 for marks that join the character before them, 2 for wide ones, 1 for all others.
int character_width(char32_t character);

} // namespace tool
