#include "tests/support/temp_dir.h"

#include <cstdlib>
#include <fstream>
#include <random>

namespace pkider_test {

temp_dir_t::temp_dir_t() {
    std::random_device random;
    do {
        m_path = std::filesystem::temp_directory_path() / ("pkider_test_" + std::to_string(random()));
    } while (!std::filesystem::create_directory(m_path));
}

temp_dir_t::~temp_dir_t() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

std::string temp_dir_t::utf8(std::u8string_view name) const {
    const std::u8string text = m_path.u8string() + u8'/' + std::u8string(name);
    return {text.begin(), text.end()};
}

void temp_dir_t::write(std::u8string_view name, std::string_view contents) const {
    const std::filesystem::path file = m_path / std::filesystem::path(name);
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary).write(contents.data(), static_cast<std::streamsize>(contents.size()));
    if (std::filesystem::file_size(file) != contents.size()) std::abort();
}

} // namespace pkider_test
