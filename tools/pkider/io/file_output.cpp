#include "tools/pkider/io/file_output.h"

#include "tools/pkider/base/failure.h"
#include "tools/pkider/base/secret.h"
#include "tools/pkider/io/file_view.h"
#include "tools/pkider/io/temporary_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace tool {
namespace {

constexpr const char* already_there = "is there already; --force replaces it";

[[noreturn]] void fail(const std::string& path) {
    throw file_trouble_t(path, std::generic_category().message(errno));
}

mode_t allowed_by_umask() {
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

void write_all(int file, std::string_view bytes, const std::string& path) {
    while (!bytes.empty()) {
        const ssize_t written = write(file, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) fail(path);
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

secret_t read_again(int file, const std::string& path) {
    struct stat status = {};
    if (fstat(file, &status) != 0) fail(path);
    secret_t bytes(static_cast<std::size_t>(status.st_size));
    for (std::size_t at = 0; at < bytes.size();) {
        const ssize_t got = pread(file, bytes.data() + at, bytes.size() - at, static_cast<off_t>(at));
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) fail(path);
        if (got == 0) throw file_trouble_t(path, "is shorter than what was written to it");
        at += static_cast<std::size_t>(got);
    }
    return bytes;
}

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
    write_file(file, bytes, read_back, temporary_place_t::nameless);
}

void write_file(const output_file_t& file, std::string_view bytes, const read_back_t& read_back,
                temporary_place_t place) {
    check_output_file(file.path, file.force);
    temporary_file_t temporary(file.path, place);
    const int descriptor = temporary.descriptor();
    write_all(descriptor, bytes, file.path);
    if (file.mode == file_mode_t::ordinary && fchmod(descriptor, allowed_by_umask()) != 0) fail(file.path);
    if (fsync(descriptor) != 0) fail(file.path);

    const secret_t on_disk = read_again(descriptor, file.path);
    if (on_disk.text() != bytes) throw file_trouble_t(file.path, "does not hold what was written to it");
    read_back(on_disk.view());
    check_file_views(view_check_t::thorough); // the bytes may come from one
    if (!temporary.take_name(file.force)) throw file_trouble_t(file.path, already_there);
}

} // namespace tool
