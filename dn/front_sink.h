// text_sink_t the other way round: text that is put together from its end to its beginning.
// Bench: dn/print_rdns_reversed.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

namespace pkider {

class front_sink_t {
  public:
    static constexpr std::size_t block_size = 512;

    /// @param expected_size  Room for so much is taken at once if it exceeds the block.
    explicit front_sink_t(std::size_t expected_size) {
        if (expected_size > block_size) grow(expected_size);
    }
    front_sink_t(const front_sink_t&) = delete;
    front_sink_t& operator=(const front_sink_t&) = delete;

    /// A place for `size` more characters that ends where the text begins.
    ///
    /// @throws std::bad_alloc, std::length_error; the text is then unchanged.
    char* room(std::size_t size) {
        if (size > static_cast<std::size_t>(m_begin - m_room)) grow(size);
        return m_begin - size;
    }
    /// Takes the last `size` characters of it, which were written.
    void take(std::size_t size) { m_begin -= size; }

    /// All text so far, until more is put.
    std::string_view text() const { return {m_begin, static_cast<std::size_t>(m_end - m_begin)}; }

  private:
    void grow(std::size_t size);

    char* m_room = m_block;
    char* m_begin = m_block + block_size;
    char* m_end = m_block + block_size;
    std::unique_ptr<char[]> m_heap_block;
    char m_block[block_size];
};

} // namespace pkider
