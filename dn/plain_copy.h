// Copying a value and finding out on the way whether it needs an escape: nearly none does, and so the characters are
// looked at by blocks and not one by one. Bench: dn/print, dn/print_rdns, dn/print_one_set.
#pragma once

#include "dn/char_block.h"
#include "dn/char_classes.h"
#include "platform/short_bytes.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace pkider {

/// Copies at least eight characters, by blocks of which the last may overlap the one before it.
///
/// @return  False when there are special characters among them.
inline bool copy_blocks_if_plain(char* to, const uint8_t* from, std::size_t size) {
    if (size < sizeof(char_block_t)) {
        const piece_ends_t<uint64_t> ends(from, size);
        ends.store(to, size);
        return !any_found(find_special_chars(block_of(ends.first, ends.last)));
    }
    const std::size_t last = size - sizeof(char_block_t);
    char_block_t found = find_special_chars(load_block(from + last));
    for (std::size_t at = 0; at < last; at += sizeof(char_block_t)) {
        const char_block_t block = load_block(from + at);
        std::memcpy(to + at, &block, sizeof block);
        found |= find_special_chars(block);
    }
    std::memcpy(to + last, from + last, sizeof(char_block_t));
    return !any_found(found);
}

/// Copies `size` characters.
///
/// @return  False when one of them is special; what stands at `to` is then of no meaning.
inline bool copy_if_plain(char* to, const uint8_t* from, std::size_t size) {
    if (size >= sizeof(char_block_t) / 2) return copy_blocks_if_plain(to, from, size);
    uint8_t classes = 0;
    for (std::size_t i = 0; i < size; ++i) {
        to[i] = static_cast<char>(from[i]);
        classes |= char_classes[from[i]];
    }
    return (classes & CHAR_SPECIAL) == 0;
}

} // namespace pkider
