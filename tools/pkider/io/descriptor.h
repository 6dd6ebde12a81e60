// An open file by its number, as the C library of the system counts them, and closed on every path.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace tool {

class descriptor_t {
  public:
    /// `number` is negative when the file could not be opened.
    explicit descriptor_t(int number) : m_number(number) {}
    ~descriptor_t();
    descriptor_t(const descriptor_t&) = delete;
    descriptor_t& operator=(const descriptor_t&) = delete;

    bool is_open() const { return m_number >= 0; }
    int number() const { return m_number; }

  private:
    int m_number;
};

/// Opens a file for reading; no child inherits it. @return  Negative, with errno, when it cannot be opened.
int open_for_reading(const std::string& path);

/// Reads what is there, at most `size` bytes, and waits for the first. @return  0 at the end; negative, with errno.
std::ptrdiff_t read_some(int descriptor, void* bytes, std::size_t size);

/// Bytes of a regular file; negative for anything else.
std::int64_t regular_size(int descriptor);

} // namespace tool
