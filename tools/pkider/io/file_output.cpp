#include "tools/pkider/io/file_output.h"

#include "tools/pkider/base/failure.h"
#include "tools/pkider/base/secret.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <system_error>

namespace tool {
namespace {

constexpr const char* already_there = "is there already; --force replaces it";

[[noreturn]] void fail(const std::string& path) {
    throw file_trouble_t(path, std::generic_category().message(errno));
}

std::string folder_of(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

mode_t allowed_by_umask() {
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

/// A file that goes away with the object, unless it was given a name.
class temporary_file_t {
  public:
    explicit temporary_file_t(const std::string& target)
        : m_target(target), m_name(folder_of(target) + "/.pkider-XXXXXX"), m_fd(mkostemp(m_name.data(), O_CLOEXEC)) {
        if (m_fd < 0) fail(m_target); // mode 0600
    }
    ~temporary_file_t() {
        close(m_fd);
        if (!m_name.empty()) unlink(m_name.c_str());
    }
    temporary_file_t(const temporary_file_t&) = delete;
    temporary_file_t& operator=(const temporary_file_t&) = delete;

    void write_all(std::string_view bytes) {
        while (!bytes.empty()) {
            const ssize_t written = write(m_fd, bytes.data(), bytes.size());
            if (written < 0 && errno == EINTR) continue;
            if (written < 0) fail(m_target);
            bytes.remove_prefix(static_cast<std::size_t>(written));
        }
    }

    void make_ordinary() {
        if (fchmod(m_fd, allowed_by_umask()) != 0) fail(m_target);
    }

    void synchronise() {
        if (fsync(m_fd) != 0) fail(m_target);
    }

    secret_t read_all() {
        struct stat status = {};
        if (fstat(m_fd, &status) != 0) fail(m_target);
        secret_t bytes(static_cast<std::size_t>(status.st_size));
        for (std::size_t at = 0; at < bytes.size();) {
            const ssize_t got = pread(m_fd, bytes.data() + at, bytes.size() - at, static_cast<off_t>(at));
            if (got < 0 && errno == EINTR) continue;
            if (got < 0) fail(m_target);
            if (got == 0) throw file_trouble_t(m_target, "is shorter than what was written to it");
            at += static_cast<std::size_t>(got);
        }
        return bytes;
    }

    /// Takes the target's name; without `replace` only if nobody else has it.
    void take_name(bool replace) {
        if (replace) {
            if (rename(m_name.c_str(), m_target.c_str()) != 0) fail(m_target);
        } else if (renameat2(AT_FDCWD, m_name.c_str(), AT_FDCWD, m_target.c_str(), RENAME_NOREPLACE) != 0) {
            if (errno == EEXIST) throw file_trouble_t(m_target, already_there);
            if (errno != EINVAL) fail(m_target);
            // A file system without RENAME_NOREPLACE: a second name does not replace anything either.
            if (link(m_name.c_str(), m_target.c_str()) != 0) {
                if (errno == EEXIST) throw file_trouble_t(m_target, already_there);
                fail(m_target);
            }
            unlink(m_name.c_str());
        }
        m_name.clear();
        synchronise_folder();
    }

  private:
    /// The new name is on the disk when the folder is. Not every file system can do that, and the file is whole anyway.
    void synchronise_folder() const {
        const int folder = open(folder_of(m_target).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (folder < 0) return;
        fsync(folder);
        close(folder);
    }

    std::string m_target, m_name;
    int m_fd;
};

} // namespace

void check_output_file(const std::string& path, bool force) {
    struct stat status = {};
    if (lstat(path.c_str(), &status) != 0) {
        if (errno != ENOENT) fail(path);
        return;
    }
    if (!S_ISREG(status.st_mode)) throw file_trouble_t(path, "is not a regular file, and is not replaced");
    if (!force) throw file_trouble_t(path, already_there);
}

void write_file(const output_file_t& file, std::string_view bytes, const read_back_t& read_back) {
    check_output_file(file.path, file.force);
    temporary_file_t temporary(file.path);
    temporary.write_all(bytes);
    if (file.mode == file_mode_t::ordinary) temporary.make_ordinary();
    temporary.synchronise();

    const secret_t on_disk = temporary.read_all();
    if (on_disk.text() != bytes) throw file_trouble_t(file.path, "does not hold what was written to it");
    read_back(on_disk.view());
    temporary.take_name(file.force);
}

} // namespace tool
