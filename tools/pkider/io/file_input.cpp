#include "tools/pkider/io/file_input.h"

#include "tools/pkider/base/failure.h"

#include <cerrno>
#include <system_error>

namespace tool {
namespace {

constexpr int standard_input = 0; // on every system

[[noreturn]] void fail(const std::string& name) {
    throw file_trouble_t(name, std::generic_category().message(errno));
}

} // namespace

open_file_t::open_file_t(const std::string& path) : m_descriptor(open_for_reading(path)) {
    if (!m_descriptor.is_open()) fail(path);
}

secret_t read_all(int descriptor, const std::string& name) {
    constexpr std::size_t chunk_size = 1 << 16;
    secret_t bytes;
    for (std::size_t size = 0;;) {
        bytes.resize(size + chunk_size);
        const std::ptrdiff_t got = read_some(descriptor, bytes.data() + size, chunk_size);
        if (got < 0) fail(name);
        size += static_cast<std::size_t>(got);
        if (got > 0) continue;
        bytes.resize(size);
        return bytes;
    }
}

secret_t read_file(const std::string& path) {
    if (path == "-") return read_all(standard_input, input_name(path));
    return read_all(open_file_t(path).descriptor(), path);
}

std::vector<std::string> or_standard_input(const std::vector<std::string>& arguments) {
    return arguments.empty() ? std::vector<std::string>{"-"} : arguments;
}

std::string input_name(const std::string& path) {
    return path == "-" ? "standard input" : path;
}

} // namespace tool
