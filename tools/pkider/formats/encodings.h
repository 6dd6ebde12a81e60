// Hexadecimal and base64 (RFC 4648) text of bytes, which may be those of a private key: no copy of them remains.
#pragma once

#include "tools/pkider/base/secret.h"

#include <optional>
#include <string>
#include <string_view>

namespace tool {

/// Appends two upper case digits a byte.
void append_hex(std::string& out, std::string_view bytes);
std::string to_hex(std::string_view bytes);

/// `width` digits a line, or one line for 0. No line end after the last line.
std::string to_base64(std::string_view bytes, std::size_t width = 0);

/// Either case; white space and ':' between bytes are skipped. Nothing for any other character or half a byte.
std::optional<secret_t> from_hex(std::string_view text);

/// White space is skipped, padding is needed, bits after the last byte must be 0. Nothing for anything else.
std::optional<secret_t> from_base64(std::string_view text);

} // namespace tool
