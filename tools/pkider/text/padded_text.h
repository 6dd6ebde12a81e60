// Columns of text.
#pragma once

#include <cstddef>
#include <string>

namespace tool {

/// The text followed by blanks, `width` bytes in all; a longer text is unchanged.
inline std::string padded(std::string text, std::size_t width) {
    if (text.size() < width) text.resize(width, ' ');
    return text;
}

} // namespace tool
