// Counted things in messages.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tool {

/// "1 byte", "2 bytes"
inline std::string count_text(std::uint64_t count, std::string_view noun) {
    std::string text = std::to_string(count) + " ";
    text += noun;
    if (count != 1) text += 's';
    return text;
}

} // namespace tool
