// Sixteen characters looked at all at once, in the vectors that GCC and Clang have for every processor.
#pragma once

#include <cstdint>
#include <cstring>

namespace pkider {

using char_block_t [[gnu::vector_size(16)]] = uint8_t;

inline char_block_t load_block(const void* chars) {
    char_block_t block;
    std::memcpy(&block, chars, sizeof block);
    return block;
}

/// Eight characters and eight more.
inline char_block_t block_of(uint64_t first_half, uint64_t second_half) {
    using word_pair_t [[gnu::vector_size(16)]] = uint64_t;
    return reinterpret_cast<char_block_t>(word_pair_t{first_half, second_half});
}

/// 0xFF in the place of each of the nine characters of special_chars, 0 in the others.
inline char_block_t find_special_chars(char_block_t c) {
    return ((c & 0xFE) == '"') | ((c - '+') < 2) | ((c - ';') < 4) | (c == '\\'); // "# +, ;<=> backslash
}

inline bool any_found(char_block_t found) {
    uint64_t halves[2];
    std::memcpy(halves, &found, sizeof halves);
    return (halves[0] | halves[1]) != 0;
}

} // namespace pkider
