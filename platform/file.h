// Whole small files by a path in UTF-8, on every platform the same path.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace pkider {

/// Longest path that can be opened, in UTF-16 units with the terminator.
constexpr std::size_t max_path_units = 4096;

struct file_bytes_t {
    std::unique_ptr<char[]> bytes; ///< Null when the file is empty or could not be read.
    uint64_t size = 0;
};

/// Number of UTF-16 units of a NUL-terminated UTF-8 text, without the terminator; a byte that belongs to no character
/// counts as one.
std::size_t utf16_units(const char* utf8);

/// Reads a file to its end. The result is empty when the file cannot be opened, its path has more than max_path_units,
/// it is not a regular file (a directory, a device, a FIFO, which is not waited for), has more than 2^31 - 1 bytes, or
/// ends before its size. Child processes do not inherit the open file (POSIX).
///
/// @throws std::bad_alloc, with the file closed again.
file_bytes_t read_whole_file(const char* utf8_path);

} // namespace pkider
