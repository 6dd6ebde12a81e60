// Text while it is put together: in a block on the stack, and what outgrows it in one on the heap. A Name is
// printed in about twenty pieces, without the overhead of std::string for each. The output is written once, at the end,
// so that it may contain the input and is unchanged when memory is exhausted. Bench: dn/encode, dn/print.
//
//     char* at = sink.room(3);    // one test of the room for a group of pieces
//     at[0] = 'C', at[1] = 'N', at[2] = '=';
//     sink.take(3);
#pragma once

#include "platform/short_bytes.h"

#include <cstddef>
#include <memory>
#include <string_view>

namespace pkider {

class text_sink_t {
  public:
    static constexpr std::size_t block_size = 512;

    /// @param expected_size  Room for so much is taken at once if it exceeds the block.
    explicit text_sink_t(std::size_t expected_size = 0) {
        if (expected_size > block_size) grow(expected_size);
    }
    text_sink_t(const text_sink_t&) = delete;
    text_sink_t& operator=(const text_sink_t&) = delete;

    /// The place after the text, for `size` more characters.
    ///
    /// @throws std::bad_alloc, std::length_error; the text is then unchanged.
    char* room(std::size_t size) {
        if (size > static_cast<std::size_t>(m_room_end - m_end)) grow(size);
        return m_end;
    }
    /// Takes the first `size` characters of it, which were written.
    void take(std::size_t size) { m_end += size; }

    void put(char c) {
        *room(1) = c;
        take(1);
    }

    void put(const void* text, std::size_t size) {
        copy_short(room(size), text, size);
        take(size);
    }

    /// Drops all but the first `size` characters.
    void cut(std::size_t size) { m_end = m_begin + size; }

    char* data() { return m_begin; }

    std::size_t size() const { return static_cast<std::size_t>(m_end - m_begin); }

    /// All text so far, until more is put.
    std::string_view text() const { return {m_begin, size()}; }

  private:
    void grow(std::size_t size);

    char* m_begin = m_block;
    char* m_end = m_block;
    char* m_room_end = m_block + block_size;
    std::unique_ptr<char[]> m_heap_block;
    char m_block[block_size];
};

} // namespace pkider
