#include "tools/pkider/io/path_kind.h"

#include "tools/pkider/base/failure.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace tool {

bool file_exists(const std::string& path) {
    return access(path.c_str(), F_OK) == 0;
}

path_kind_t path_kind(const std::string& path) {
    struct stat status = {};
    if (lstat(path.c_str(), &status) == 0)
        return S_ISREG(status.st_mode) ? path_kind_t::regular_file : path_kind_t::other;
    if (errno != ENOENT) throw file_trouble_t(path, std::generic_category().message(errno));
    return path_kind_t::nothing;
}

} // namespace tool
