// The fuzzer's bytes as a line of text: the bytes before the first NUL, in a heap block that ends with it.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>

class fuzz_line_t {
  public:
    fuzz_line_t(const uint8_t* data, std::size_t size)
        : m_length(static_cast<std::size_t>(std::find(data, data + size, uint8_t{0}) - data)),
          m_text(new char[m_length + 1]) {
        std::copy(data, data + m_length, m_text.get());
        m_text[m_length] = '\0';
    }

    const char* c_str() const { return m_text.get(); }
    const char* end() const { return m_text.get() + m_length; }
    std::size_t length() const { return m_length; }

  private:
    std::size_t m_length;
    std::unique_ptr<char[]> m_text;
};
