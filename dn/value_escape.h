// The two forms in which an attribute value is printed: escaped text, and "#" digits.
#pragma once

#include "dn/text_sink.h"

#include <cstdint>

namespace pkider {

/// Puts a backslash before each of the nine special characters and copies everything else: blanks at the ends,
/// control characters and bytes of 0x80 and above too.
void dn_value_escape(const uint8_t* bytes, uint64_t length, text_sink_t& out);

/// Two upper-case digits a byte.
void dn_append_hex(const uint8_t* bytes, uint64_t length, text_sink_t& out);

} // namespace pkider
