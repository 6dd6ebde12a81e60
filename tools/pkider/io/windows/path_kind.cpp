#include "tools/pkider/io/path_kind.h"

#include "tools/pkider/io/windows/errors.h"
#include "tools/pkider/io/windows/paths.h"

#include <windows.h>

namespace tool {

bool file_exists(const std::string& path) {
    return GetFileAttributesW(absolute_path(path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

path_kind_t path_kind(const std::string& path) {
    const std::wstring absolute = absolute_path(path);
    if (is_device_path(absolute)) return path_kind_t::other;
    const DWORD attributes = GetFileAttributesW(absolute.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        const DWORD error = GetLastError();
        if (error != ERROR_FILE_NOT_FOUND && error != ERROR_PATH_NOT_FOUND) fail_with_last_error(path);
        return path_kind_t::nothing;
    }
    constexpr DWORD special = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE | FILE_ATTRIBUTE_REPARSE_POINT;
    return (attributes & special) == 0 ? path_kind_t::regular_file : path_kind_t::other;
}

} // namespace tool
