// UTF-8 is the form of all text in the program, UTF-16 that of the Windows API.
#pragma once

#include "tools/pkider/base/secret.h"

#include <string>
#include <string_view>

namespace tool {

/// Bytes that are no UTF-8, and halves of surrogate pairs, become U+FFFD.
std::wstring to_utf16(std::string_view utf8);
std::string to_utf8(std::wstring_view utf16);
secret_t to_secret_utf8(std::wstring_view utf16);

} // namespace tool
