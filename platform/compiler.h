// What GCC and Clang have beyond the standard. No other header or source of the library uses more than C++20.
//
// Each thing has a portable form. Other compilers always get it, and so does a build with PKIDER_PORTABLE, in which the
// tests run it. Both forms give the same results.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__GNUC__) && !defined(PKIDER_PORTABLE)
#define PKIDER_HAS_GNU_EXTENSIONS
#endif

// Attributes of functions; without them only the speed differs.
#ifdef PKIDER_HAS_GNU_EXTENSIONS
#define PKIDER_ON_CACHE_LINE [[gnu::aligned(64)]] // begins a cache line
#define PKIDER_ALWAYS_INLINE [[gnu::always_inline]]
#define PKIDER_NEVER_INLINE [[gnu::noinline]]
#else
#define PKIDER_ON_CACHE_LINE
#define PKIDER_ALWAYS_INLINE
#define PKIDER_NEVER_INLINE
#endif

namespace pkider {

enum class access_t { READ = 0, WRITE = 1 };

/// Asks for a line of memory before it is needed. The portable form does not.
template <access_t Access>
PKIDER_ALWAYS_INLINE inline void fetch_line([[maybe_unused]] const void* line) {
#ifdef PKIDER_HAS_GNU_EXTENSIONS
    __builtin_prefetch(line, static_cast<int>(Access));
#endif
}

/// std::memcpy of a constant size, without the inline function of _FORTIFY_SOURCE, which has nothing to check there and
/// moves the bytes through memory. Bench: dn/print_rdns.
template <std::size_t Size>
PKIDER_ALWAYS_INLINE inline void copy_bytes(void* to, const void* from) {
#ifdef PKIDER_HAS_GNU_EXTENSIONS
    __builtin_memcpy(to, from, Size);
#else
    std::memcpy(to, from, Size);
#endif
}

/// Writes zeros over a secret. An optimiser must not drop them, though nobody reads them.
inline void overwrite(void* secret, std::size_t size) noexcept {
#ifdef PKIDER_HAS_GNU_EXTENSIONS
    if (size != 0) std::memset(secret, 0, size);
    asm volatile("" : : "r"(secret) : "memory"); // may read it
#else
    volatile unsigned char* const bytes = static_cast<unsigned char*>(secret);
    for (std::size_t i = 0; i < size; ++i) bytes[i] = 0;
#endif
}

// Sixteen characters, on all of which one operation works. A comparison gives 0xFF for true and 0 for false.
#ifdef PKIDER_HAS_GNU_EXTENSIONS

using char_block_t [[gnu::vector_size(16)]] = uint8_t; // a register of any processor that has such

/// Eight characters and eight more.
inline char_block_t block_of(uint64_t first_half, uint64_t second_half) {
    using word_pair_t [[gnu::vector_size(16)]] = uint64_t;
    return reinterpret_cast<char_block_t>(word_pair_t{first_half, second_half});
}

#else

struct char_block_t {
    uint8_t chars[16];

    uint8_t operator[](std::size_t at) const { return chars[at]; }

    char_block_t& operator|=(const char_block_t& other) {
        for (std::size_t i = 0; i < sizeof chars; ++i) chars[i] = static_cast<uint8_t>(chars[i] | other.chars[i]);
        return *this;
    }
    friend char_block_t operator|(char_block_t block, const char_block_t& other) { return block |= other; }

    friend char_block_t operator&(const char_block_t& block, uint8_t mask) {
        return block.each([=](uint8_t c) { return c & mask; });
    }
    friend char_block_t operator-(const char_block_t& block, uint8_t number) {
        return block.each([=](uint8_t c) { return c - number; });
    }
    friend char_block_t operator==(const char_block_t& block, uint8_t number) {
        return block.each([=](uint8_t c) { return c == number ? 0xFF : 0; });
    }
    friend char_block_t operator<(const char_block_t& block, uint8_t number) {
        return block.each([=](uint8_t c) { return c < number ? 0xFF : 0; });
    }

  private:
    template <typename Operation>
    char_block_t each(Operation operation) const {
        char_block_t out;
        for (std::size_t i = 0; i < sizeof chars; ++i) out.chars[i] = static_cast<uint8_t>(operation(chars[i]));
        return out;
    }
};

inline char_block_t block_of(uint64_t first_half, uint64_t second_half) {
    const uint64_t halves[] = {first_half, second_half};
    char_block_t block;
    std::memcpy(&block, halves, sizeof block);
    return block;
}

#endif

} // namespace pkider
