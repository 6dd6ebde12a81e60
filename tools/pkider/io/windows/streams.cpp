#include "tools/pkider/io/streams.h"

#include "tools/pkider/io/windows/utf16.h"

#include <windows.h>

#include <fcntl.h>
#include <io.h>

#include <algorithm>
#include <cerrno>

namespace tool {
namespace {

HANDLE handle_of(std::FILE* stream) {
    return reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
}

/// Units that are written at once: older consoles take no more than 64 KiB.
constexpr std::size_t max_piece = 16'384;

/// A console gets UTF-16: no code page is changed for it, and none must be restored.
bool write_to_console(HANDLE console, std::wstring_view text) {
    while (!text.empty()) {
        std::size_t units = std::min(text.size(), max_piece);
        if (units < text.size() && IS_HIGH_SURROGATE(text[units - 1])) --units;
        DWORD written = 0;
        if (WriteConsoleW(console, text.data(), static_cast<DWORD>(units), &written, nullptr) == 0 || written == 0) {
            errno = EIO;
            return false;
        }
        text.remove_prefix(written);
    }
    return true;
}

} // namespace

void prepare_standard_streams() noexcept {
    for (std::FILE* const stream : {stdin, stdout, stderr}) _setmode(_fileno(stream), _O_BINARY);
}

bool is_terminal(std::FILE* stream) {
    DWORD mode = 0;
    return GetConsoleMode(handle_of(stream), &mode) != 0;
}

bool shows_colours(std::FILE* stream) {
    DWORD mode = 0;
    const HANDLE console = handle_of(stream);
    return GetConsoleMode(console, &mode) != 0 &&
           SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

bool write_to(std::FILE* stream, std::string_view bytes) {
    if (is_terminal(stream)) return write_to_console(handle_of(stream), to_utf16(bytes));
    return std::fwrite(bytes.data(), 1, bytes.size(), stream) == bytes.size();
}

} // namespace tool
