#include "tools/pkider/io/terminal_prompt.h"

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

namespace tool {
namespace {

volatile std::sig_atomic_t caught_signal = 0;

extern "C" void remember_signal(int number) {
    caught_signal = number;
}

/// While it lives, signals that would end or stop the program only end a wait_for_input. They are held back at all
/// other times, so that none can come unseen between two steps; what is still pending at the end takes its usual
/// course.
class signal_catcher_t {
  public:
    signal_catcher_t() {
        caught_signal = 0;
        sigset_t held;
        sigemptyset(&held);
        for (const int number : numbers) sigaddset(&held, number);
        sigprocmask(SIG_BLOCK, &held, &m_saved_mask);

        struct sigaction action = {};
        action.sa_handler = remember_signal;
        sigemptyset(&action.sa_mask);
        for (std::size_t i = 0; i < numbers.size(); ++i) sigaction(numbers[i], &action, &m_saved[i]);
    }
    ~signal_catcher_t() {
        for (std::size_t i = 0; i < numbers.size(); ++i) sigaction(numbers[i], &m_saved[i], nullptr);
        sigprocmask(SIG_SETMASK, &m_saved_mask, nullptr);
    }
    signal_catcher_t(const signal_catcher_t&) = delete;
    signal_catcher_t& operator=(const signal_catcher_t&) = delete;

    /// False when a signal came instead.
    bool wait_for_input(int fd) const {
        pollfd wanted = {fd, POLLIN, 0};
        return ppoll(&wanted, 1, nullptr, &m_saved_mask) == 1 && caught_signal == 0;
    }

  private:
    static constexpr std::array numbers = {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGTSTP};
    std::array<struct sigaction, numbers.size()> m_saved{};
    sigset_t m_saved_mask{};
};

/// The controlling terminal with its echo off; nothing where that cannot be had.
class silent_terminal_t {
  public:
    silent_terminal_t() : m_fd(open("/dev/tty", O_RDWR | O_NOCTTY | O_CLOEXEC)) {
        if (m_fd < 0 || turn_echo_off()) return;
        close(m_fd);
        m_fd = -1;
    }
    ~silent_terminal_t() {
        if (m_fd < 0) return;
        tcsetattr(m_fd, TCSAFLUSH, &m_saved);
        close(m_fd);
    }
    silent_terminal_t(const silent_terminal_t&) = delete;
    silent_terminal_t& operator=(const silent_terminal_t&) = delete;

    int fd() const { return m_fd; }
    void show(std::string_view text) const {
        while (!text.empty()) {
            const ssize_t written = write(m_fd, text.data(), text.size());
            if (written <= 0) return;
            text.remove_prefix(static_cast<std::size_t>(written));
        }
    }

  private:
    bool turn_echo_off() {
        if (tcgetattr(m_fd, &m_saved) != 0) return false;
        termios silent = m_saved;
        silent.c_lflag &= ~static_cast<tcflag_t>(ECHO | ECHONL);
        return tcsetattr(m_fd, TCSAFLUSH, &silent) == 0;
    }

    int m_fd;
    termios m_saved{};
};

/// One try: nothing when a signal came, the terminal is gone, or there is none.
std::optional<secret_t> read_silently(const std::string& prompt, std::size_t max_size) {
    const signal_catcher_t catcher;
    const silent_terminal_t terminal;
    if (terminal.fd() < 0) return std::nullopt;

    terminal.show(prompt);
    secret_t line(max_size + 2); // a byte that shows that the line is too long, and its end
    const ssize_t got = catcher.wait_for_input(terminal.fd()) ? read(terminal.fd(), line.data(), line.size()) : -1;
    terminal.show("\n"); // the one that was typed was not shown
    if (got <= 0) return std::nullopt;
    auto size = static_cast<std::size_t>(got);
    if (line.data()[size - 1] == '\n') --size;
    return secret_t(line.view().first(size));
}

} // namespace

std::optional<secret_t> prompt_hidden(const std::string& prompt, std::size_t max_size) {
    for (;;) {
        std::optional<secret_t> line = read_silently(prompt, max_size);
        if (caught_signal == 0) return line;
        raise(caught_signal); // with the terminal restored; the program continues here only if it was stopped
    }
}

} // namespace tool
