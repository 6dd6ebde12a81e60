#include "tools/pkider/io/descriptor.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace tool {

descriptor_t::~descriptor_t() {
    if (is_open()) close(m_number);
}

int open_for_reading(const std::string& path) {
    return open(path.c_str(), O_RDONLY | O_CLOEXEC);
}

std::ptrdiff_t read_some(int descriptor, void* bytes, std::size_t size) {
    for (;;) {
        const ssize_t got = read(descriptor, bytes, size);
        if (got >= 0 || errno != EINTR) return got;
    }
}

std::int64_t regular_size(int descriptor) {
    struct stat status = {};
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) return -1;
    return status.st_size;
}

} // namespace tool
