// An OBJECT IDENTIFIER element from its dotted text, through the library's codec: a second spelling of constants.
#pragma once

#include <pkider/oid.h>

#include "tests/support/hex.h"

#include <cstring>

namespace pkider_test {

/// Of short identifiers; empty when the text is none.
inline bytes_t dotted_oid(const char* text) {
    uint8_t contents[512];
    const uint64_t size = oid_str_to_asn_(text, text + std::strlen(text), contents);
    if (size == 0 || size >= 0x80) return {};
    bytes_t out{0x06, static_cast<uint8_t>(size)};
    out.insert(out.end(), contents, contents + size);
    return out;
}

} // namespace pkider_test
