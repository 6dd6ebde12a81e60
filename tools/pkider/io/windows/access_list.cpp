#include "tools/pkider/io/windows/access_list.h"

#include "tools/pkider/io/windows/handle.h"

#include <sddl.h>

namespace tool {

access_list_t::access_list_t(const std::wstring& sddl) {
    ConvertStringSecurityDescriptorToSecurityDescriptorW(sddl.c_str(), SDDL_REVISION_1,
                                                         &m_attributes.lpSecurityDescriptor, nullptr);
}

access_list_t::~access_list_t() {
    LocalFree(m_attributes.lpSecurityDescriptor);
}

std::wstring user_sid() {
    HANDLE token = nullptr;
    if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token) == 0) return {};
    const handle_t closer(token);
    alignas(TOKEN_USER) unsigned char user[sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE];
    DWORD size = 0;
    if (GetTokenInformation(token, TokenUser, user, sizeof user, &size) == 0) return {};
    wchar_t* text = nullptr;
    if (ConvertSidToStringSidW(reinterpret_cast<TOKEN_USER*>(user)->User.Sid, &text) == 0) return {};
    std::wstring sid = text;
    LocalFree(text);
    return sid;
}

} // namespace tool
