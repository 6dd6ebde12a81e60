// Copies a value and finds out at the same time whether it needs an escape. Nearly no value does, so the characters are
// tested by blocks and not one by one. Bench: dn/print, dn/print_rdns, dn/print_one_set.
#pragma once

#include "dn/char_classes.h"
#include "platform/compiler.h"
#include "platform/short_bytes.h"

#include <cstddef>
#include <cstdint>

namespace pkider {

inline char_block_t load_block(const void* chars) {
    char_block_t block;
    copy_bytes<sizeof block>(&block, chars);
    return block;
}

/// 0xFF in the place of each of the nine characters of special_chars, 0 in the others.
inline char_block_t find_special_chars(char_block_t c) {
    return ((c & 0xFE) == '"') | ((c - '+') < 2) | ((c - ';') < 4) | (c == '\\'); // "# +, ;<=> backslash
}

inline bool any_found(char_block_t found) {
    uint64_t halves[2];
    copy_bytes<sizeof halves>(halves, &found);
    return (halves[0] | halves[1]) != 0;
}

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
        copy_bytes<sizeof block>(to + at, &block);
        found |= find_special_chars(block);
    }
    copy_bytes<sizeof(char_block_t)>(to + last, from + last);
    return !any_found(found);
}

/// Copies `size` characters.
///
/// @return  False when one of them is special; the bytes at `to` then have no meaning.
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
