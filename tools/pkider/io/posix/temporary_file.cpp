// Where the file system can make a file without a name (O_TMPFILE), there is nothing to remove, not even after SIGKILL
// or a loss of power. Replacing a file is the exception, because Linux gives a nameless file only a name that is free:
// between two system calls it has a name in a folder of its own (private_folder.h), and signals are held meanwhile.
// SIGKILL between these two leaves that folder.
//
// Elsewhere the file is in a folder of its own beside the target from the beginning, and signals are held as long as it
// is there. Only SIGKILL and a loss of power leave it.
#include "tools/pkider/io/temporary_file.h"

#include "tools/pkider/base/failure.h"
#include "tools/pkider/io/posix/held_signals.h"
#include "tools/pkider/io/posix/private_folder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <optional>
#include <system_error>
#include <utility>

namespace tool {
namespace {

constexpr mode_t owner_file = 0600;

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

mode_t allowed_by_umask() {
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

/// The new name is on the disk when the folder is. Not every file system can do that, and the file is whole anyway.
void synchronise(int folder) {
    const descriptor_t readable(openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (readable.is_open()) fsync(readable.number());
}

class posix_file_t final : public temporary_file_t {
  public:
    posix_file_t(std::string target, file_mode_t mode, temporary_place_t place);

    void write(std::string_view bytes) override;
    secret_t read_again() const override;
    bool take_name(bool replace) override;

  private:
    int descriptor() const { return m_file->number(); }
    void open_in_folder();
    void check_folder(const private_folder_t& folder) const;
    bool link_into(int folder, const char* name);
    void move_from(const private_folder_t& from);
    bool move_to_free_name();
    [[noreturn]] void fail() const;

    std::string m_target, m_name; // as given; without its folder
    file_mode_t m_mode;
    descriptor_t m_folder; // of the target
    std::optional<held_signals_t> m_held;
    std::optional<private_folder_t> m_private; // empty: the file has no name
    std::optional<descriptor_t> m_file;
};

posix_file_t::posix_file_t(std::string target, file_mode_t mode, temporary_place_t place)
    : m_target(std::move(target)),
      m_name(m_target.substr(folder_of(m_target).size())),
      m_mode(mode),
      m_folder(open_folder(folder_of(m_target))) {
    if (!m_folder.is_open()) fail();
    if (place == temporary_place_t::nameless) m_file.emplace(open_nameless(m_folder.number()));
    if (!m_file || !m_file->is_open()) open_in_folder();
}

void posix_file_t::fail() const {
    throw file_trouble_t(m_target, std::generic_category().message(errno));
}

void posix_file_t::open_in_folder() {
    m_held.emplace();
    m_private.emplace(m_folder.number(), m_target);
    m_file.emplace(openat(m_private->descriptor(), private_folder_t::file_name,
                          O_CREAT | O_EXCL | O_NOFOLLOW | O_RDWR | O_CLOEXEC, owner_file));
    if (!m_file->is_open()) fail();
    check_folder(*m_private);
}

/// Who may write into the target's folder can put a folder of his own in the place of ours before it is open.
void posix_file_t::check_folder(const private_folder_t& folder) const {
    if (folder.has_owner_of(descriptor())) return;
    throw file_trouble_t(m_target, "not written: somebody else put a folder in the place of the temporary one");
}

// ---- Contents ----------------------------------------------------------------------------------------------------

void posix_file_t::write(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor(), bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) fail();
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    if (m_mode == file_mode_t::ordinary && fchmod(descriptor(), allowed_by_umask()) != 0) fail();
    if (fsync(descriptor()) != 0) fail();
}

secret_t posix_file_t::read_again() const {
    struct stat status = {};
    if (fstat(descriptor(), &status) != 0) fail();
    secret_t bytes(static_cast<std::size_t>(status.st_size));
    for (std::size_t at = 0; at < bytes.size();) {
        const ssize_t got = pread(descriptor(), bytes.data() + at, bytes.size() - at, static_cast<off_t>(at));
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) fail();
        if (got == 0) throw file_trouble_t(m_target, "is shorter than what was written to it");
        at += static_cast<std::size_t>(got);
    }
    return bytes;
}

// ---- The name ----------------------------------------------------------------------------------------------------

/// False when there is something of that name.
bool posix_file_t::link_into(int folder, const char* name) {
    const std::string source = name_of_descriptor(descriptor());
    if (linkat(AT_FDCWD, source.c_str(), folder, name, AT_SYMLINK_FOLLOW) == 0) return true;
    if (errno != EEXIST) fail();
    return false;
}

void posix_file_t::move_from(const private_folder_t& from) {
    if (renameat(from.descriptor(), private_folder_t::file_name, m_folder.number(), m_name.c_str()) != 0) fail();
}

bool posix_file_t::move_to_free_name() {
    const int from = m_private->descriptor(), to = m_folder.number();
    if (renameat2(from, private_folder_t::file_name, to, m_name.c_str(), RENAME_NOREPLACE) == 0) return true;
    // A file system without RENAME_NOREPLACE: a second name does not replace anything either.
    const bool is_linked = errno == EINVAL && linkat(from, private_folder_t::file_name, to, m_name.c_str(), 0) == 0;
    if (!is_linked && errno != EEXIST) fail();
    return is_linked;
}

bool posix_file_t::take_name(bool replace) {
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

} // namespace

std::unique_ptr<temporary_file_t> make_temporary_file(std::string target, file_mode_t mode, temporary_place_t place) {
    return std::make_unique<posix_file_t>(std::move(target), mode, place);
}

} // namespace tool
