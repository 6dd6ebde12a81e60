// Text while it is put together: short pieces gather in a block on the stack, and only what outgrows it takes a string.
// Printing a Name takes some twenty pieces, and the book-keeping of std::string for each would cost more than all the
// rest. The output is written once, at the end, so that it may hold the input and stays as it was when memory runs out.
#pragma once

#include "platform/short_bytes.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace pkider {

class text_sink_t {
  public:
    static constexpr std::size_t block_size = 512;

    /// @param expected_size  Room for so much is taken at once if it exceeds the block.
    explicit text_sink_t(std::size_t expected_size = 0) {
        if (expected_size > block_size) m_text.reserve(expected_size);
    }
    text_sink_t(const text_sink_t&) = delete;
    text_sink_t& operator=(const text_sink_t&) = delete;

    void put(char c) {
        if (m_used == block_size) spill();
        m_block[m_used++] = c;
    }

    void put(const void* text, std::size_t size) {
        if (size > block_size - m_used) return put_past_block(text, size);
        copy_short(m_block + m_used, text, size);
        m_used += size;
    }

    /// All text so far as a string, to which the caller may append.
    std::string& spill();

    /// All text so far, until more is put.
    std::string_view text();

    std::size_t size() const { return m_text.size() + m_used; }

  private:
    void put_past_block(const void* text, std::size_t size);

    std::string m_text; // in front of what the block holds
    std::size_t m_used = 0;
    char m_block[block_size];
};

} // namespace pkider
