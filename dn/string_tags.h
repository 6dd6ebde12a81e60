// The string types of attribute values that are printed as text; universal tag numbers of X.680 8.4.
#pragma once

#include <cstdint>

namespace pkider {

enum string_tag_t : uint8_t {
    UTF8_STRING = 12,
    NUMERIC_STRING = 18,
    PRINTABLE_STRING = 19,
    TELETEX_STRING = 20,
    IA5_STRING = 22,
    UNIVERSAL_STRING = 28,
    BMP_STRING = 30,
};

constexpr bool is_string_tag(uint8_t tag) {
    switch (tag) {
    case UTF8_STRING:
    case NUMERIC_STRING:
    case PRINTABLE_STRING:
    case TELETEX_STRING:
    case IA5_STRING:
    case UNIVERSAL_STRING:
    case BMP_STRING:
        return true;
    default:
        return false;
    }
}

/// Those whose contents are printed unchanged, except for escapes.
constexpr bool is_verbatim_tag(uint8_t tag) {
    return tag == UTF8_STRING || tag == PRINTABLE_STRING || tag == IA5_STRING;
}

} // namespace pkider
