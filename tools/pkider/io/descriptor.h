// An open file of the operating system, closed on every path.
#pragma once

#include <unistd.h>

namespace tool {

class descriptor_t {
  public:
    /// `number` is negative when the file could not be opened.
    explicit descriptor_t(int number) : m_number(number) {}
    ~descriptor_t() {
        if (is_open()) close(m_number);
    }
    descriptor_t(const descriptor_t&) = delete;
    descriptor_t& operator=(const descriptor_t&) = delete;

    bool is_open() const { return m_number >= 0; }
    int number() const { return m_number; }

  private:
    int m_number;
};

} // namespace tool
