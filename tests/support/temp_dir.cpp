#include "tests/support/temp_dir.h"

#include <cstdlib>
#include <fstream>

namespace pkider_test {

std::string temp_dir_t::utf8(std::u8string_view name) const {
    const std::u8string text = path().u8string() + u8'/' + std::u8string(name);
    return {text.begin(), text.end()};
}

void temp_dir_t::write(std::u8string_view name, std::string_view contents) const {
    const std::filesystem::path file = path() / std::filesystem::path(name);
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary).write(contents.data(), static_cast<std::streamsize>(contents.size()));
    if (std::filesystem::file_size(file) != contents.size()) std::abort();
}

} // namespace pkider_test
