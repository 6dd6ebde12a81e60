// The bytes of a file, of any size, in little memory.
//
// A small file is read: what happens to it afterwards does not matter. A large one is mapped. When it becomes shorter
// meanwhile (file_mapping.h), the next print or flush_output fails with the reason instead of giving out what was made
// of the missing bytes.
#pragma once

#include "tools/pkider/base/secret.h"
#include "tools/pkider/io/file_input.h"
#include "tools/pkider/io/file_mapping.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

namespace tool {

/// A file's bytes: read up to this size, and when it cannot be mapped (standard input, a pipe); mapped above.
inline constexpr std::size_t largest_read_file = std::size_t{1} << 20;

class file_view_t {
  public:
    /// @throws file_trouble_t  It cannot be read, or becomes shorter meanwhile.
    explicit file_view_t(const std::string& path);

    bytes_t bytes() const { return m_mapping != nullptr ? m_mapping->bytes() : m_copy.view(); }

  private:
    std::optional<open_file_t> m_file; // of the mapping
    std::unique_ptr<file_mapping_t> m_mapping;
    secret_t m_copy;
};

} // namespace tool
