// A directory with a name of its own, removed with everything in it at the end; in the language of the oldest host.
#pragma once

#include <filesystem>
#include <random>
#include <string>
#include <system_error>

namespace pkider_test {

class scratch_dir_t {
  public:
    scratch_dir_t() {
        std::random_device random;
        do {
            m_path = std::filesystem::temp_directory_path() / ("pkider_test_" + std::to_string(random()));
        } while (!std::filesystem::create_directory(m_path));
    }
    ~scratch_dir_t() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    scratch_dir_t(const scratch_dir_t&) = delete;
    scratch_dir_t& operator=(const scratch_dir_t&) = delete;

    const std::filesystem::path& path() const { return m_path; }

  private:
    std::filesystem::path m_path;
};

} // namespace pkider_test
