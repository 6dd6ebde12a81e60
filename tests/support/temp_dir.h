// A directory of its own for one test, with the files that the test needs in it.
#pragma once

#include "tests/support/scratch_dir.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace pkider_test {

class temp_dir_t {
  public:
    const std::filesystem::path& path() const { return m_dir.path(); }

    /// The path of something inside, as UTF-8.
    std::string utf8(std::u8string_view name) const;

    /// Writes a file inside; directories of `name` are made.
    void write(std::u8string_view name, std::string_view contents) const;

  private:
    scratch_dir_t m_dir;
};

} // namespace pkider_test
