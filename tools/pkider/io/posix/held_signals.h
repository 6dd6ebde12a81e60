// A time in which no signal ends the program, so that what was begun is finished or undone.
#pragma once

#include <csignal>
#include <initializer_list>

namespace tool {

/// While it lives, signals wait; at its end they take their usual course. SIGKILL and SIGSTOP cannot be held, and the
/// signals of a fault in the program itself must not be.
class held_signals_t {
  public:
    held_signals_t() {
        sigset_t held;
        sigfillset(&held);
        for (const int fault : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGTRAP, SIGSYS}) sigdelset(&held, fault);
        sigprocmask(SIG_BLOCK, &held, &m_saved);
    }
    ~held_signals_t() { sigprocmask(SIG_SETMASK, &m_saved, nullptr); }
    held_signals_t(const held_signals_t&) = delete;
    held_signals_t& operator=(const held_signals_t&) = delete;

  private:
    sigset_t m_saved{};
};

} // namespace tool
