// A handle of the Windows API, closed on every path.
#pragma once

#include <windows.h>

namespace tool {

class handle_t {
  public:
    explicit handle_t(HANDLE handle) : m_handle(handle) {}
    ~handle_t() {
        if (is_open()) CloseHandle(m_handle);
    }
    handle_t(const handle_t&) = delete;
    handle_t& operator=(const handle_t&) = delete;

    bool is_open() const { return m_handle != nullptr && m_handle != INVALID_HANDLE_VALUE; }
    HANDLE get() const { return m_handle; }

  private:
    HANDLE m_handle;
};

} // namespace tool
