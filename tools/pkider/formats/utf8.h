// UTF-8 as the program meets it: in names that may hold any bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tool {

/// One step through a text: a whole character, or one byte that is part of none.
struct utf8_step_t {
    char32_t character = 0; // of an invalid byte: the byte
    std::size_t size = 0;   // bytes taken, 1 to 4
    bool valid = false;
};

/// The step at the start of a text that is not empty. Overlong forms, surrogates and values above U+10FFFF are invalid
/// (RFC 3629 3).
utf8_step_t next_utf8(std::string_view text);

/// What some editors leave at the start of a text: U+FEFF.
inline constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

/// The text after a byte order mark, if there is one.
std::string_view without_byte_order_mark(std::string_view text);

} // namespace tool
