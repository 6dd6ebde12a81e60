#include "tools/pkider/io/windows/errors.h"

#include "tools/pkider/base/failure.h"
#include "tools/pkider/io/windows/utf16.h"

#include <windows.h>

#include <system_error>

namespace tool {
namespace {

std::string words_of_windows(DWORD error) {
    wchar_t words[512];
    const DWORD size =
        FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK,
                       nullptr, error, 0, words, static_cast<DWORD>(std::size(words)), nullptr);
    std::string text = to_utf8({words, size});
    while (text.ends_with(' ') || text.ends_with('.')) text.pop_back();
    return text.empty() ? "error " + std::to_string(error) + " of Windows" : text;
}

} // namespace

std::string last_error_text() {
    const DWORD error = GetLastError();
    const std::error_condition reason = std::system_category().default_error_condition(static_cast<int>(error));
    return reason.category() == std::generic_category() ? reason.message() : words_of_windows(error);
}

void fail_with_last_error(const std::string& file) {
    throw file_trouble_t(file, last_error_text());
}

} // namespace tool
