#include "tools/pkider/io/descriptor.h"

#include "tools/pkider/io/windows/paths.h"
#include "tools/pkider/io/windows/utf16.h"

#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <share.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace tool {
namespace {

HANDLE handle_of(int descriptor) {
    return reinterpret_cast<HANDLE>(_get_osfhandle(descriptor));
}

bool is_console(HANDLE handle) {
    DWORD mode = 0;
    return GetConsoleMode(handle, &mode) != 0;
}

/// What is typed arrives as UTF-8. A line that begins with Ctrl-Z ends it.
std::ptrdiff_t read_console(HANDLE console, void* bytes, std::size_t size) {
    constexpr std::size_t max_unit_size = 3; // bytes of UTF-8
    constexpr wchar_t end_mark = 0x1A;
    secret_t units(size / max_unit_size * sizeof(wchar_t));
    auto* const text = reinterpret_cast<wchar_t*>(units.data());
    DWORD got = 0;
    if (ReadConsoleW(console, text, static_cast<DWORD>(units.size() / sizeof(wchar_t)), &got, nullptr) == 0) {
        errno = EIO;
        return -1;
    }
    if (got == 0 || text[0] == end_mark) return 0;
    const secret_t utf8 = to_secret_utf8({text, got});
    std::memcpy(bytes, utf8.data(), utf8.size());
    return static_cast<std::ptrdiff_t>(utf8.size());
}

} // namespace

descriptor_t::~descriptor_t() {
    if (is_open()) _close(m_number);
}

int open_for_reading(const std::string& path) {
    int descriptor = -1;
    _wsopen_s(&descriptor, absolute_path(path).c_str(), _O_RDONLY | _O_BINARY | _O_NOINHERIT, _SH_DENYNO, 0);
    return descriptor;
}

std::ptrdiff_t read_some(int descriptor, void* bytes, std::size_t size) {
    constexpr std::size_t least_console_size = 64;
    if (size >= least_console_size && is_console(handle_of(descriptor)))
        return read_console(handle_of(descriptor), bytes, size);
    constexpr std::size_t most = 1 << 30;
    return _read(descriptor, bytes, static_cast<unsigned>(std::min(size, most)));
}

std::int64_t regular_size(int descriptor) {
    LARGE_INTEGER size = {};
    const HANDLE handle = handle_of(descriptor);
    if (GetFileType(handle) != FILE_TYPE_DISK || GetFileSizeEx(handle, &size) == 0) return -1;
    return size.QuadPart;
}

} // namespace tool
