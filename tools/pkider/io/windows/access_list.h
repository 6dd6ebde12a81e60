// Who may do what with an object of Windows: the program grants less than is usual.
#pragma once

#include <windows.h>

#include <string>

namespace tool {

class access_list_t {
  public:
    /// @param sddl  The list, as the security descriptor definition language has it.
    explicit access_list_t(const std::wstring& sddl);
    ~access_list_t();
    access_list_t(const access_list_t&) = delete;
    access_list_t& operator=(const access_list_t&) = delete;

    /// False where it cannot be made; GetLastError() has the reason.
    bool is_made() const { return m_attributes.lpSecurityDescriptor != nullptr; }
    PSECURITY_DESCRIPTOR descriptor() const { return m_attributes.lpSecurityDescriptor; }
    /// For an object that is created.
    SECURITY_ATTRIBUTES* attributes() { return &m_attributes; }

  private:
    SECURITY_ATTRIBUTES m_attributes = {sizeof(SECURITY_ATTRIBUTES), nullptr, FALSE};
};

/// The user who runs the program, `S-1-5-21-...`; empty, with GetLastError(), where that cannot be found out.
std::wstring user_sid();

} // namespace tool
