#include "tools/pkider/io/environment.h"

#include "tools/pkider/io/windows/utf16.h"

#include <windows.h>

namespace tool {

std::optional<secret_t> secret_variable(const char* name) {
    const std::wstring variable = to_utf16(name);
    const DWORD units = GetEnvironmentVariableW(variable.c_str(), nullptr, 0); // with the terminator
    if (units == 0) return std::nullopt;
    secret_t value(units * sizeof(wchar_t));
    auto* const text = reinterpret_cast<wchar_t*>(value.data());
    return to_secret_utf8({text, GetEnvironmentVariableW(variable.c_str(), text, units)});
}

} // namespace tool
