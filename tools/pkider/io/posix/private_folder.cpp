#include "tools/pkider/io/posix/private_folder.h"

#include "tools/pkider/base/failure.h"

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <system_error>

namespace tool {
namespace {

constexpr mode_t owner_folder = 0700;

[[noreturn]] void fail(const std::string& target) {
    throw file_trouble_t(target, std::generic_category().message(errno));
}

std::string random_name() {
    std::uint64_t number = 0;
    if (getrandom(&number, sizeof number, 0) != sizeof number) throw std::system_error(errno, std::generic_category());
    char name[32];
    std::snprintf(name, sizeof name, ".pkider-%016llX", static_cast<unsigned long long>(number));
    return name;
}

/// The name of a new folder that nobody else may look into.
std::string make_folder(int parent, const std::string& target) {
    for (;;) {
        std::string name = random_name();
        if (mkdirat(parent, name.c_str(), owner_folder) == 0) return name;
        if (errno != EEXIST) fail(target);
    }
}

} // namespace

private_folder_t::private_folder_t(int parent, const std::string& target)
    : m_parent(parent),
      m_name(make_folder(parent, target)),
      m_folder(openat(parent, m_name.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC)) {
    if (m_folder.is_open()) return;
    const int reason = errno;
    unlinkat(m_parent, m_name.c_str(), AT_REMOVEDIR);
    errno = reason;
    fail(target);
}

private_folder_t::~private_folder_t() {
    unlinkat(descriptor(), file_name, 0);
    unlinkat(m_parent, m_name.c_str(), AT_REMOVEDIR);
}

bool private_folder_t::has_owner_of(int file) const {
    struct stat of_folder = {}, of_file = {};
    return fstat(descriptor(), &of_folder) == 0 && fstat(file, &of_file) == 0 && of_folder.st_uid == of_file.st_uid;
}

} // namespace tool
