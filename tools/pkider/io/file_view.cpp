#include "tools/pkider/io/file_view.h"

#include "tools/pkider/base/failure.h"

#include <cstdint>

namespace tool {

file_view_t::file_view_t(const std::string& path) {
    if (path == "-") {
        m_copy = read_file(path);
        return;
    }
    m_file.emplace(path); // once: a named pipe would lose its writer in between
    const std::int64_t size = regular_size(m_file->descriptor());
    if (size > static_cast<std::int64_t>(largest_read_file)) {
        m_mapping = map_file(m_file->descriptor(), static_cast<std::size_t>(size), path);
        if (m_mapping != nullptr) return;
    }
    m_copy = read_all(m_file->descriptor(), path);
    m_file.reset();
    if (static_cast<std::int64_t>(m_copy.size()) < size) throw file_trouble_t(path, became_shorter);
}

} // namespace tool
