// A file's number may need 64 bits also where addresses have 32 (POSIX: fstat would fail otherwise).
#define _FILE_OFFSET_BITS 64

#include "platform/file.h"

#include <cstdio>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace pkider {
namespace {

constexpr int64_t max_file_size = 0x7FFFFFFF;

struct file_closer_t {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using file_t = std::unique_ptr<std::FILE, file_closer_t>;

#ifdef _WIN32
file_t open_for_reading(const char* utf8_path) {
    wchar_t path[max_path_units];
    constexpr int with_terminator = -1;
    if (MultiByteToWideChar(CP_UTF8, 0, utf8_path, with_terminator, path, max_path_units) == 0) return nullptr;
    const int descriptor = _wopen(path, _O_RDONLY | _O_BINARY | _O_NOINHERIT);
    if (descriptor < 0) return nullptr;

    file_t file(_fdopen(descriptor, "rb"));
    if (file == nullptr) _close(descriptor);
    return file;
}

// ftell, whose 32 bits there would take a file of 2^32 + 10 bytes for one of 10.
int64_t position(std::FILE* file) {
    return _ftelli64(file);
}
#else
file_t open_for_reading(const char* utf8_path) {
    if (utf16_units(utf8_path) >= max_path_units) return nullptr;
    // Without O_NONBLOCK a FIFO in the file's place would wait for a writer; regular files are not affected.
    const int descriptor = open(utf8_path, O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (descriptor < 0) return nullptr;

    file_t file;
    struct stat status;
    if (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)) file.reset(fdopen(descriptor, "rb"));
    if (file == nullptr) close(descriptor);
    return file;
}

int64_t position(std::FILE* file) {
    return std::ftell(file);
}
#endif

// Number of bytes of the UTF-8 character at `at`, 0 when there is none (RFC 3629 4). A terminator ends it like any
// other byte that is no continuation.
int utf8_char_size(const unsigned char* at) {
    const auto is_tail = [](unsigned char byte) { return (byte & 0xC0) == 0x80; };
    if (at[0] < 0x80) return 1;
    if (at[0] < 0xC2) return 0;
    if (!is_tail(at[1])) return 0;
    if (at[0] < 0xE0) return 2;
    if (at[0] == 0xE0 && at[1] < 0xA0) return 0; // overlong
    if (at[0] == 0xED && at[1] > 0x9F) return 0; // surrogate
    if (at[0] == 0xF0 && at[1] < 0x90) return 0; // overlong
    if (at[0] == 0xF4 && at[1] > 0x8F) return 0; // above U+10FFFF
    if (at[0] > 0xF4) return 0;
    if (!is_tail(at[2])) return 0;
    if (at[0] < 0xF0) return 3;
    return is_tail(at[3]) ? 4 : 0;
}

} // namespace

std::size_t utf16_units(const char* utf8) {
    const auto* at = reinterpret_cast<const unsigned char*>(utf8);
    std::size_t units = 0;
    while (*at != 0) {
        const int size = utf8_char_size(at);
        units += size == 4 ? 2 : 1;
        at += size == 0 ? 1 : size;
    }
    return units;
}

file_bytes_t read_whole_file(const char* utf8_path) {
    const file_t file = open_for_reading(utf8_path);
    if (file == nullptr) return {};

    if (std::fseek(file.get(), 0, SEEK_END) != 0) return {};
    const int64_t size = position(file.get());
    if (size <= 0 || size > max_file_size) return {};
    if (std::fseek(file.get(), 0, SEEK_SET) != 0) return {};

    file_bytes_t out;
    out.bytes.reset(new char[static_cast<std::size_t>(size)]);
    if (std::fread(out.bytes.get(), static_cast<std::size_t>(size), 1, file.get()) != 1) return {};
    out.size = static_cast<uint64_t>(size);
    return out;
}

} // namespace pkider
