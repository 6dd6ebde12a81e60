// Columns of text.
#pragma once

#include <cstddef>
#include <string>

namespace tool {

/// The text with blanks behind it, `width` bytes in all; a longer text stays as it is.
inline std::string padded(std::string text, std::size_t width) {
    if (text.size() < width) text.resize(width, ' ');
    return text;
}

} // namespace tool
