#include "tools/pkider/io/terminal_prompt.h"

#include "tools/pkider/io/windows/handle.h"
#include "tools/pkider/io/windows/utf16.h"

#include <atomic>

namespace tool {
namespace {

constexpr DWORD milliseconds_to_end = 1000; // Ctrl-C ends the program meanwhile

struct silenced_t {
    HANDLE console;
    DWORD mode; // before
};
std::atomic<const silenced_t*> silenced = nullptr;

/// Ctrl-C, Ctrl-Break and the end of the console find its echo on again, and then take their usual course.
BOOL WINAPI restore_echo(DWORD /*event*/) {
    if (const silenced_t* const saved = silenced.load()) SetConsoleMode(saved->console, saved->mode);
    return FALSE;
}

HANDLE open_console(const wchar_t* name) {
    return CreateFileW(name, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                       0, nullptr);
}

/// The console of the program with its echo off.
class silent_console_t {
  public:
    silent_console_t() : m_in(open_console(L"CONIN$")), m_out(open_console(L"CONOUT$")), m_saved{m_in.get(), 0} {
        if (!m_out.is_open() || GetConsoleMode(m_in.get(), &m_saved.mode) == 0) return;
        silenced = &m_saved;
        SetConsoleCtrlHandler(restore_echo, TRUE);
        const DWORD lines = ENABLE_LINE_INPUT | ENABLE_PROCESSED_INPUT;
        m_is_silent = SetConsoleMode(m_in.get(), (m_saved.mode & ~DWORD{ENABLE_ECHO_INPUT}) | lines) != 0;
        FlushConsoleInputBuffer(m_in.get()); // what was typed before was not meant for it
    }
    ~silent_console_t() {
        if (silenced == nullptr) return;
        SetConsoleMode(m_in.get(), m_saved.mode);
        SetConsoleCtrlHandler(restore_echo, FALSE);
        silenced = nullptr;
    }
    silent_console_t(const silent_console_t&) = delete;
    silent_console_t& operator=(const silent_console_t&) = delete;

    /// False where there is none, or its echo cannot be turned off.
    bool is_silent() const { return m_is_silent; }

    void show(std::wstring_view text) const {
        DWORD written = 0;
        WriteConsoleW(m_out.get(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
    }

    /// Units of the line, with its end. 0 when there is none.
    std::size_t read_line(wchar_t* text, std::size_t max_units) const {
        DWORD got = 0;
        if (ReadConsoleW(m_in.get(), text, static_cast<DWORD>(max_units), &got, nullptr) == 0) return 0;
        if (got == 0 && GetLastError() == ERROR_OPERATION_ABORTED) Sleep(milliseconds_to_end);
        return got;
    }

  private:
    handle_t m_in, m_out;
    silenced_t m_saved;
    bool m_is_silent = false;
};

} // namespace

std::optional<secret_t> prompt_hidden(const std::string& prompt, std::size_t max_size) {
    const silent_console_t console;
    if (!console.is_silent()) return std::nullopt;

    console.show(to_utf16(prompt));
    const std::size_t max_units = max_size + 3; // a unit that shows that the line is too long, and its end
    secret_t line(max_units * sizeof(wchar_t));
    auto* const text = reinterpret_cast<wchar_t*>(line.data());
    std::size_t size = console.read_line(text, max_units);
    console.show(L"\n"); // the one that was typed was not shown

    constexpr wchar_t end_mark = 0x1A; // Ctrl-Z
    if (size == 0 || text[0] == end_mark) return std::nullopt;
    while (size > 0 && (text[size - 1] == L'\n' || text[size - 1] == L'\r')) --size;
    return to_secret_utf8({text, size});
}

} // namespace tool
