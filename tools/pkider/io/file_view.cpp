#include "tools/pkider/io/file_view.h"

#include "tools/pkider/io/file_input.h"

#include <sys/mman.h>
#include <sys/stat.h>

namespace tool {
namespace {

/// Null when the file is no regular file with something in it.
void* map_file(const open_file_t& file, std::size_t& size) {
    struct stat status {};
    if (fstat(file.descriptor(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_size <= 0) return nullptr;
    size = static_cast<std::size_t>(status.st_size);
    void* const mapping = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file.descriptor(), 0);
    return mapping == MAP_FAILED ? nullptr : mapping;
}

} // namespace

file_view_t::file_view_t(const std::string& path) {
    if (path == "-") {
        m_copy = read_file(path);
        m_view = m_copy.view();
        return;
    }
    const open_file_t file(path); // once: a named pipe would lose its writer in between
    std::size_t size = 0;
    m_mapping = map_file(file, size);
    if (m_mapping != nullptr) {
        m_view = {static_cast<const std::uint8_t*>(m_mapping), size};
        return;
    }
    m_copy = read_all(file.descriptor(), path);
    m_view = m_copy.view();
}

file_view_t::~file_view_t() {
    if (m_mapping != nullptr) munmap(m_mapping, m_view.size());
}

} // namespace tool
