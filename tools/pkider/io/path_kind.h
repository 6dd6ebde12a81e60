// What is at a path, before anything is opened.
#pragma once

#include <string>

namespace tool {

/// Whether there is anything of this name.
bool file_exists(const std::string& path);

enum class path_kind_t {
    nothing,
    regular_file,
    other, ///< A directory, a link, a device.
};

/// Links are not followed. @throws file_trouble_t  It cannot be found out.
path_kind_t path_kind(const std::string& path);

} // namespace tool
