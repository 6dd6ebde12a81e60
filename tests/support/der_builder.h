// DER for tests, put together without the library: minimal lengths, an element a call, nested as the ASN.1 is.
//
//     der(0x30, {der(0x02, "01"_hex), der(0x04, key)})
#pragma once

#include "tests/support/hex.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>

namespace pkider_test {

inline bytes_t join(std::initializer_list<bytes_t> pieces) {
    bytes_t out;
    for (const bytes_t& piece : pieces) out.insert(out.end(), piece.begin(), piece.end());
    return out;
}

inline bytes_t der(uint8_t tag, const bytes_t& contents) {
    bytes_t out{tag};
    const std::size_t size = contents.size();
    if (size < 0x80) {
        out.push_back(static_cast<uint8_t>(size));
    } else {
        int num_octets = 1;
        while (size >> 8 * num_octets != 0) ++num_octets;
        out.push_back(static_cast<uint8_t>(0x80 | num_octets));
        while (num_octets-- > 0) out.push_back(static_cast<uint8_t>(size >> 8 * num_octets));
    }
    out.insert(out.end(), contents.begin(), contents.end());
    return out;
}

inline bytes_t der(uint8_t tag, std::initializer_list<bytes_t> children) {
    return der(tag, join(children));
}

} // namespace pkider_test
