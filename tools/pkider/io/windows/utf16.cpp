#include "tools/pkider/io/windows/utf16.h"

#include <windows.h>

namespace tool {
namespace {

/// Into a string or a secret.
template <typename Utf8>
Utf8 convert(std::wstring_view utf16) {
    const int units = static_cast<int>(utf16.size());
    const int size = WideCharToMultiByte(CP_UTF8, 0, utf16.data(), units, nullptr, 0, nullptr, nullptr);
    Utf8 utf8;
    utf8.resize(static_cast<std::size_t>(size));
    WideCharToMultiByte(CP_UTF8, 0, utf16.data(), units, reinterpret_cast<char*>(utf8.data()), size, nullptr, nullptr);
    return utf8;
}

} // namespace

std::wstring to_utf16(std::string_view utf8) {
    const int size = static_cast<int>(utf8.size());
    const int units = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, nullptr, 0);
    std::wstring utf16(static_cast<std::size_t>(units), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, utf16.data(), units);
    return utf16;
}

std::string to_utf8(std::wstring_view utf16) {
    return convert<std::string>(utf16);
}

secret_t to_secret_utf8(std::wstring_view utf16) {
    return convert<secret_t>(utf16);
}

} // namespace tool
