// Of Windows 10 with consoles for programs to use.
#define NTDDI_VERSION 0x0A000006

#include "tests/support/run_program.h"

#include "tests/support/scratch_dir.h"

#include <windows.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

namespace pkider_test {
namespace {

struct handle_closer_t {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using handle_t = std::unique_ptr<HANDLE, handle_closer_t>;

std::wstring utf16(const std::string& text) {
    return std::filesystem::path(std::u8string(text.begin(), text.end())).wstring();
}

/// As the C runtime takes it apart again.
std::wstring quoted(const std::string& argument) {
    std::wstring text = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t unit : utf16(argument)) {
        if (unit == L'"') text.append(backslashes + 1, L'\\');
        backslashes = unit == L'\\' ? backslashes + 1 : 0;
        text += unit;
    }
    return text.append(backslashes, L'\\') + L"\"";
}

std::wstring command_line(const std::vector<std::string>& arguments) {
    std::wstring line;
    for (const std::string& argument : arguments) line += (line.empty() ? L"" : L" ") + quoted(argument);
    return line;
}

/// Variables of this process, as long as a child is made.
class variables_t {
  public:
    explicit variables_t(const run_options_t& options) : m_options(options) {
        for (const auto& [name, value] : options.environment)
            SetEnvironmentVariableW(utf16(name).c_str(), utf16(value).c_str());
    }
    ~variables_t() {
        for (const auto& [name, value] : m_options.environment) SetEnvironmentVariableW(utf16(name).c_str(), nullptr);
    }
    variables_t(const variables_t&) = delete;
    variables_t& operator=(const variables_t&) = delete;

  private:
    const run_options_t& m_options;
};

/// A child that is waited for.
class child_t {
  public:
    child_t(const std::vector<std::string>& arguments, const run_options_t& options, STARTUPINFOEXW& startup,
            DWORD flags) {
        const variables_t variables(options);
        std::wstring line = command_line(arguments);
        const std::wstring directory = utf16(options.directory);
        const BOOL inherits = (startup.StartupInfo.dwFlags & STARTF_USESTDHANDLES) != 0;
        PROCESS_INFORMATION process = {};
        if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, inherits, flags, nullptr,
                           directory.empty() ? nullptr : directory.c_str(), &startup.StartupInfo, &process) == 0)
            throw std::runtime_error("cannot start the program");
        CloseHandle(process.hThread);
        m_process.reset(process.hProcess);
    }

    int wait() const {
        DWORD exit_code = 0;
        WaitForSingleObject(m_process.get(), INFINITE);
        GetExitCodeProcess(m_process.get(), &exit_code);
        return static_cast<int>(exit_code);
    }

  private:
    handle_t m_process;
};

/// A file that children inherit.
handle_t open_inherited(const std::filesystem::path& path, DWORD access) {
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    return handle_t(CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, OPEN_ALWAYS,
                                FILE_ATTRIBUTE_NORMAL, nullptr));
}

std::string contents(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

struct pipe_t {
    pipe_t() {
        HANDLE from = nullptr, to = nullptr;
        if (CreatePipe(&from, &to, nullptr, 0) == 0) throw std::runtime_error("no pipe");
        out.reset(from);
        in.reset(to);
    }
    handle_t out, in; // to read from, to write to
};

/// All that a program shows on its console. `typed` is typed when it asks for something, with a colon: what
/// comes earlier is dropped.
std::string talk(const pipe_t& keyboard, const pipe_t& screen, std::string typed) {
    std::string text;
    char chunk[4096];
    for (DWORD got = 0; ReadFile(screen.out.get(), chunk, sizeof chunk, &got, nullptr) != 0 && got > 0;) {
        text.append(chunk, got);
        if (typed.empty() || text.find(":") == std::string::npos) continue;
        DWORD written = 0;
        WriteFile(keyboard.in.get(), typed.data(), static_cast<DWORD>(typed.size()), &written, nullptr);
        typed.clear();
    }
    return text;
}

} // namespace

std::ostream& operator<<(std::ostream& stream, const run_result_t& result) {
    return stream << "exit " << result.exit_code << "\n-- out\n" << result.out << "\n-- err\n" << result.err << "\n";
}

run_result_t run_program(const std::vector<std::string>& arguments, const run_options_t& options) {
    const scratch_dir_t folder;
    const auto path = [&](const char* name) { return folder.path() / name; };
    std::ofstream(path("in"), std::ios::binary) << options.input;

    STARTUPINFOEXW startup = {};
    startup.StartupInfo.cb = sizeof startup.StartupInfo;
    startup.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
    int exit_code = -1;
    {
        const handle_t in = open_inherited(path("in"), GENERIC_READ);
        const handle_t out = open_inherited(path("out"), GENERIC_WRITE);
        const handle_t err = open_inherited(path("err"), GENERIC_WRITE);
        startup.StartupInfo.hStdInput = in.get();
        startup.StartupInfo.hStdOutput = out.get();
        startup.StartupInfo.hStdError = err.get();
        exit_code = child_t(arguments, options, startup, DETACHED_PROCESS).wait();
    }
    return {exit_code, contents(path("out")), contents(path("err"))};
}

run_result_t run_on_terminal(const std::vector<std::string>& arguments, const run_options_t& options) {
    const pipe_t keyboard;
    pipe_t screen;
    HPCON console = nullptr;
    if (FAILED(CreatePseudoConsole({120, 30}, keyboard.out.get(), screen.in.get(), 0, &console)))
        throw std::runtime_error("no console");

    STARTUPINFOEXW startup = {};
    startup.StartupInfo.cb = sizeof startup;
    startup.StartupInfo.dwFlags = STARTF_USESTDHANDLES; // none of this process: those of the console are taken
    std::array<std::uint64_t, 32> list{};
    startup.lpAttributeList = reinterpret_cast<PPROC_THREAD_ATTRIBUTE_LIST>(list.data());
    SIZE_T size = sizeof list;
    InitializeProcThreadAttributeList(startup.lpAttributeList, 1, 0, &size);
    UpdateProcThreadAttribute(startup.lpAttributeList, 0, PROC_THREAD_ATTRIBUTE_PSEUDOCONSOLE, console, sizeof console,
                              nullptr, nullptr);

    run_result_t result;
    std::thread reader([&] { result.out = talk(keyboard, screen, options.input); });
    result.exit_code = child_t(arguments, options, startup, EXTENDED_STARTUPINFO_PRESENT).wait();
    ClosePseudoConsole(console);
    screen.in.reset();
    reader.join();
    return result;
}

} // namespace pkider_test
