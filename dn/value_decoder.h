// One value of a line: what is written after "=" into the bytes to be encoded and the string type that they need.
// docs/dn_syntax.md describes the three forms.
#pragma once

#include "dn/char_classes.h"

#include <pkider/dn.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace pkider {

/// Contents octets of a value and the identifier octet before them.
struct dn_value_t {
    const uint8_t* bytes = nullptr;
    uint64_t length = 0;
    uint8_t tag = 0;
};

/// The narrowest string type for text of the given character classes.
constexpr uint8_t string_tag_for(uint8_t classes) {
    constexpr uint8_t utf8_string = 0x0C;
    constexpr uint8_t printable_string = 0x13;
    constexpr uint8_t ia5_string = 0x16;
    if ((classes & CHAR_NOT_ASCII) != 0) return utf8_string;
    return (classes & CHAR_NOT_PRINTABLE) != 0 ? ia5_string : printable_string;
}

/// The value whose bytes are unchanged in [begin, end), text of the given classes.
inline dn_value_t dn_text_value(const char* begin, const char* end, uint8_t classes) {
    return {reinterpret_cast<const uint8_t*>(begin), static_cast<std::size_t>(end - begin), string_tag_for(classes)};
}

/// Decodes the raw value [begin, end) of a pair: plain with escapes, in quotes, or "#" and hexadecimal DER.
///
/// @param scratch  What must be rewritten is put here, never more than `end - begin` bytes. Empty when the value can be
///                 taken from the line unchanged; it has no meaning after a fault.
/// @param out      Points into the line or into `scratch`. Untouched after a fault.
/// @return         A fault from DN_FAULT_HEX_COUNT to DN_FAULT_UNESCAPED_SPECIAL has a position relative to the value:
///                 to `begin` in a plain one, else to the character after the opening quote or "#".
asn_dn_result_t printable_dn_value_decode(const char* begin, const char* end, std::string& scratch, dn_value_t& out);

} // namespace pkider
