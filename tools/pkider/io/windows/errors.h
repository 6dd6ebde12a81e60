// Why a call of the Windows API failed.
#pragma once

#include <string>

namespace tool {

/// The words of GetLastError(): those of the C library, as after its own calls, where it knows the reason.
std::string last_error_text();

/// @throws file_trouble_t  With these words.
[[noreturn]] void fail_with_last_error(const std::string& file);

} // namespace tool
