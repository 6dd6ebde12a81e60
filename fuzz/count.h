// What becomes of an iteration count that is written and read back.
#pragma once

#include <cstdint>

inline uint32_t without_zero_bytes(uint32_t count) {
    uint32_t out = 0;
    for (int shift = 24; shift >= 0; shift -= 8) {
        const uint32_t byte = count >> shift & 0xFF;
        if (byte != 0) out = out << 8 | byte;
    }
    return out;
}
