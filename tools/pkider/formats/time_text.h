// The two time types of certificates as ISO 8601 text (RFC 5280 4.1.2.5).
#pragma once

#include "tools/pkider/formats/der_cursor.h"

#include <optional>
#include <string>

namespace tool {

/// "2026-11-21T09:33:59Z" from `YYMMDDHHMMSSZ` or `YYYYMMDDHHMMSSZ`, the only forms that DER has; none for any other
/// text, and for a month, day, hour, minute or second that does not exist.
std::optional<std::string> time_text(std::uint8_t tag, bytes_t contents);

} // namespace tool
