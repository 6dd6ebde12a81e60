// TeletexString contents (T.61, X.680 tag 20) to UTF-8.
#pragma once

#include <cstdint>
#include <string>

namespace pkider {

/// Converts `length` bytes and appends the text.
///
/// An accent (C1 to CF) is read together with the byte after it. With a blank or NUL it gives its spacing form. With a
/// letter that it composes with, it gives the composed letter. With any other byte it gives that byte and a combining
/// mark: the byte is not looked up in the repertoire, it is the code point of its own value. C2 A4 is U+00A4 U+0301,
/// and C2 24, a byte that is not allowed elsewhere, is "$" U+0301. An accent at the end is treated as if a NUL followed
/// it.
///
/// @param length  In bytes; 0 and below convert nothing, successfully.
/// @param out     Unchanged when a byte outside the repertoire is where a character begins.
/// @throws        std::bad_alloc, std::length_error when `out` cannot grow; it is then unchanged.
bool teletex_to_utf8(const uint8_t* in, int32_t length, std::string& out);

} // namespace pkider
