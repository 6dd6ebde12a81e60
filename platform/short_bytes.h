// Copying the short pieces that object identifiers and Names are made of: three bytes here, a dozen there. Up to 16
// bytes are copied inline, by the first and the last few of them, which may overlap; for so few, a call of memcpy costs
// more. Bench: dn/encode, dn/encode_rdns.
#pragma once

#include "platform/compiler.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace pkider {

/// The first and the last bytes of a piece of at least `sizeof(Word)` and at most twice as many.
template <typename Word>
struct piece_ends_t {
    Word first;
    Word last;

    piece_ends_t(const void* piece, std::size_t size) {
        copy_bytes<sizeof first>(&first, piece);
        copy_bytes<sizeof last>(&last, static_cast<const uint8_t*>(piece) + size - sizeof last);
    }
    void store(void* piece, std::size_t size) const {
        copy_bytes<sizeof first>(piece, &first);
        copy_bytes<sizeof last>(static_cast<uint8_t*>(piece) + size - sizeof last, &last);
    }
};

/// std::memcpy; null and 0 bytes are fine too.
inline void copy_short(void* to, const void* from, std::size_t size) {
    if (size > 16) {
        std::memcpy(to, from, size);
    } else if (size >= 8) {
        piece_ends_t<uint64_t>(from, size).store(to, size);
    } else if (size >= 4) {
        piece_ends_t<uint32_t>(from, size).store(to, size);
    } else if (size >= 2) {
        piece_ends_t<uint16_t>(from, size).store(to, size);
    } else if (size == 1) {
        piece_ends_t<uint8_t>(from, size).store(to, size);
    }
}

} // namespace pkider
