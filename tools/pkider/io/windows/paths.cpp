#include "tools/pkider/io/windows/paths.h"

#include "tools/pkider/io/windows/utf16.h"

#include <windows.h>

namespace tool {
namespace {

constexpr const wchar_t* verbatim_prefix = LR"(\\?\)";
constexpr const wchar_t* device_prefix = LR"(\\.\)";
constexpr const wchar_t* share_prefix = LR"(\\)";

/// With backslashes, and without `.` and `..`: nothing after the prefix is interpreted.
std::wstring full_path(const std::wstring& path) {
    std::wstring full(GetFullPathNameW(path.c_str(), 0, nullptr, nullptr), L'\0');
    const DWORD size = GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
    if (size == 0 || size > full.size()) return path;
    full.resize(size);
    return full;
}

} // namespace

bool is_device_path(const std::wstring& absolute) {
    return absolute.starts_with(device_prefix);
}

std::wstring absolute_path(const std::string& path) {
    const std::wstring given = to_utf16(path);
    if (given.empty() || given.starts_with(verbatim_prefix)) return given;
    const std::wstring full = full_path(given);
    if (is_device_path(full)) return full;
    if (full.starts_with(share_prefix)) return verbatim_prefix + (L"UNC" + full.substr(1));
    return verbatim_prefix + full;
}

} // namespace tool
