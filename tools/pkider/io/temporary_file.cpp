#include "tools/pkider/io/temporary_file.h"

#include "tools/pkider/base/failure.h"

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <system_error>
#include <utility>

namespace tool {
namespace {

constexpr mode_t owner_file = 0600;
constexpr mode_t owner_folder = 0700;

[[noreturn]] void fail(const std::string& target) {
    throw file_trouble_t(target, std::generic_category().message(errno));
}

/// With its last slash; empty for the folder that the program runs in.
std::string folder_of(const std::string& path) {
    return path.substr(0, path.rfind('/') + 1);
}

/// A descriptor that only locates the folder: that needs no permission to list it.
int open_folder(const std::string& path) {
    return open(path.empty() ? "." : path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
}

/// The name of an open file, under which it can be linked whether it has another name or not.
std::string name_of_descriptor(int descriptor) {
    return "/proc/self/fd/" + std::to_string(descriptor);
}

/// Negative where the file system, or a system without /proc, cannot do it.
int open_nameless(int folder) {
    const int file = openat(folder, ".", O_TMPFILE | O_RDWR | O_CLOEXEC, owner_file);
    if (file < 0 || access(name_of_descriptor(file).c_str(), F_OK) == 0) return file;
    close(file);
    return -1;
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

/// The new name is on the disk when the folder is. Not every file system can do that, and the file is whole anyway.
void synchronise(int folder) {
    const descriptor_t readable(openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (readable.is_open()) fsync(readable.number());
}

} // namespace

// ---- A folder of its own -----------------------------------------------------------------------------------------

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

// ---- The file ----------------------------------------------------------------------------------------------------

temporary_file_t::temporary_file_t(std::string target, temporary_place_t place)
    : m_target(std::move(target)),
      m_name(m_target.substr(folder_of(m_target).size())),
      m_folder(open_folder(folder_of(m_target))) {
    if (!m_folder.is_open()) fail();
    if (place == temporary_place_t::nameless) m_file.emplace(open_nameless(m_folder.number()));
    if (!m_file || !m_file->is_open()) open_in_folder();
}

void temporary_file_t::fail() const {
    tool::fail(m_target);
}

void temporary_file_t::open_in_folder() {
    m_held.emplace();
    m_private.emplace(m_folder.number(), m_target);
    m_file.emplace(openat(m_private->descriptor(), private_folder_t::file_name,
                          O_CREAT | O_EXCL | O_NOFOLLOW | O_RDWR | O_CLOEXEC, owner_file));
    if (!m_file->is_open()) fail();
    check_folder(*m_private);
}

/// Who may write into the target's folder can put a folder of his own in the place of ours before it is open.
void temporary_file_t::check_folder(const private_folder_t& folder) const {
    if (folder.has_owner_of(descriptor())) return;
    throw file_trouble_t(m_target, "not written: somebody else put a folder in the place of the temporary one");
}

/// False when there is something of that name.
bool temporary_file_t::link_into(int folder, const char* name) {
    const std::string source = name_of_descriptor(descriptor());
    if (linkat(AT_FDCWD, source.c_str(), folder, name, AT_SYMLINK_FOLLOW) == 0) return true;
    if (errno != EEXIST) fail();
    return false;
}

void temporary_file_t::move_from(const private_folder_t& from) {
    if (renameat(from.descriptor(), private_folder_t::file_name, m_folder.number(), m_name.c_str()) != 0) fail();
}

bool temporary_file_t::move_to_free_name() {
    const int from = m_private->descriptor(), to = m_folder.number();
    if (renameat2(from, private_folder_t::file_name, to, m_name.c_str(), RENAME_NOREPLACE) == 0) return true;
    // A file system without RENAME_NOREPLACE: a second name does not replace anything either.
    const bool is_linked = errno == EINVAL && linkat(from, private_folder_t::file_name, to, m_name.c_str(), 0) == 0;
    if (!is_linked && errno != EEXIST) fail();
    return is_linked;
}

bool temporary_file_t::take_name(bool replace) {
    if (m_private) {
        if (replace) {
            move_from(*m_private);
        } else if (!move_to_free_name()) {
            return false;
        }
    } else if (!link_into(m_folder.number(), m_name.c_str())) {
        if (!replace) return false;
        const held_signals_t held;
        const private_folder_t between(m_folder.number(), m_target);
        check_folder(between);
        if (!link_into(between.descriptor(), private_folder_t::file_name)) fail();
        move_from(between);
    }
    synchronise(m_folder.number());
    return true;
}

} // namespace tool
