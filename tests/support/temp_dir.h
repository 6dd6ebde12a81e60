// A directory of its own for one test, removed with everything in it at the end.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace pkider_test {

class temp_dir_t {
  public:
    temp_dir_t();
    ~temp_dir_t();
    temp_dir_t(const temp_dir_t&) = delete;
    temp_dir_t& operator=(const temp_dir_t&) = delete;

    const std::filesystem::path& path() const { return m_path; }

    /// The path of something inside, as UTF-8.
    std::string utf8(std::u8string_view name) const;

    /// Writes a file inside; directories of `name` are made.
    void write(std::u8string_view name, std::string_view contents) const;

  private:
    std::filesystem::path m_path;
};

} // namespace pkider_test
