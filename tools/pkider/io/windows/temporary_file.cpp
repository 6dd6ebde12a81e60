// The file is beside its target, as `.pkider-<16 hex digits>`. Windows deletes it when its handle is closed, however
// the program ends, and lets nobody else open it until then. This is taken back between two calls, just before the file
// gets its name: a program that is ended between them leaves the whole file under the temporary name.
#include "tools/pkider/io/temporary_file.h"

#include "tools/pkider/base/failure.h"
#include "tools/pkider/io/windows/access_list.h"
#include "tools/pkider/io/windows/errors.h"
#include "tools/pkider/io/windows/handle.h"
#include "tools/pkider/io/windows/paths.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <cwchar>
#include <random>
#include <utility>
#include <vector>

namespace tool {
namespace {

constexpr std::size_t max_piece = 1 << 30; // of one call

std::wstring random_name() {
    std::random_device random;
    wchar_t name[32];
    std::swprintf(name, std::size(name), L".pkider-%08X%08X", random(), random());
    return name;
}

class windows_file_t final : public temporary_file_t {
  public:
    windows_file_t(std::string target, file_mode_t mode);

    void write(std::string_view bytes) override;
    secret_t read_again() const override;
    bool take_name(bool replace) override;

  private:
    HANDLE open(file_mode_t mode) const;
    bool delete_when_closed(bool wanted) const;
    bool rename(bool replace) const;

    std::string m_target; // as given
    std::wstring m_path;
    handle_t m_file;
};

windows_file_t::windows_file_t(std::string target, file_mode_t mode)
    : m_target(std::move(target)), m_path(absolute_path(m_target)), m_file(open(mode)) {
    if (!m_file.is_open() || !delete_when_closed(true)) fail_with_last_error(m_target);
}

HANDLE windows_file_t::open(file_mode_t mode) const {
    const std::wstring user = user_sid();
    if (user.empty()) return INVALID_HANDLE_VALUE;
    access_list_t user_alone(L"D:P(A;;FA;;;" + user + L")");
    if (!user_alone.is_made()) return INVALID_HANDLE_VALUE;
    SECURITY_ATTRIBUTES* const as_the_folder_says = nullptr;
    SECURITY_ATTRIBUTES* const attributes = mode == file_mode_t::secret ? user_alone.attributes() : as_the_folder_says;

    const std::wstring folder = m_path.substr(0, m_path.rfind(L'\\') + 1);
    constexpr DWORD share_nothing = 0;
    for (;;) {
        const std::wstring path = folder + random_name();
        const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE | DELETE, share_nothing, attributes,
                                        CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (file != INVALID_HANDLE_VALUE || GetLastError() != ERROR_FILE_EXISTS) return file;
    }
}

bool windows_file_t::delete_when_closed(bool wanted) const {
    FILE_DISPOSITION_INFO disposition = {static_cast<BOOLEAN>(wanted)};
    return SetFileInformationByHandle(m_file.get(), FileDispositionInfo, &disposition, sizeof disposition) != 0;
}

void windows_file_t::write(std::string_view bytes) {
    while (!bytes.empty()) {
        DWORD written = 0;
        const auto size = static_cast<DWORD>(std::min(bytes.size(), max_piece));
        if (WriteFile(m_file.get(), bytes.data(), size, &written, nullptr) == 0) fail_with_last_error(m_target);
        bytes.remove_prefix(written);
    }
    if (FlushFileBuffers(m_file.get()) == 0) fail_with_last_error(m_target);
}

secret_t windows_file_t::read_again() const {
    LARGE_INTEGER size = {};
    if (GetFileSizeEx(m_file.get(), &size) == 0) fail_with_last_error(m_target);
    if (SetFilePointerEx(m_file.get(), {}, nullptr, FILE_BEGIN) == 0) fail_with_last_error(m_target);
    secret_t bytes(static_cast<std::size_t>(size.QuadPart));
    for (std::size_t at = 0; at < bytes.size();) {
        DWORD got = 0;
        const auto left = static_cast<DWORD>(std::min(bytes.size() - at, max_piece));
        if (ReadFile(m_file.get(), bytes.data() + at, left, &got, nullptr) == 0) fail_with_last_error(m_target);
        if (got == 0) throw file_trouble_t(m_target, "is shorter than what was written to it");
        at += got;
    }
    return bytes;
}

/// In one step: whoever opens the target meanwhile finds the old file or the whole new one.
bool windows_file_t::rename(bool replace) const {
    const std::size_t name_size = m_path.size() * sizeof(wchar_t);
    std::vector<std::byte> room(sizeof(FILE_RENAME_INFO) + name_size);
    auto* const info = reinterpret_cast<FILE_RENAME_INFO*>(room.data());
    info->ReplaceIfExists = static_cast<BOOLEAN>(replace);
    info->FileNameLength = static_cast<DWORD>(name_size);
    std::memcpy(info->FileName, m_path.data(), name_size);
    return SetFileInformationByHandle(m_file.get(), FileRenameInfo, info, static_cast<DWORD>(room.size())) != 0;
}

bool windows_file_t::take_name(bool replace) {
    if (!delete_when_closed(false)) fail_with_last_error(m_target);
    if (rename(replace)) return true;
    const DWORD error = GetLastError();
    delete_when_closed(true);
    if (!replace && (error == ERROR_ALREADY_EXISTS || error == ERROR_FILE_EXISTS)) return false;
    SetLastError(error);
    fail_with_last_error(m_target);
}

} // namespace

std::unique_ptr<temporary_file_t> make_temporary_file(std::string target, file_mode_t mode,
                                                      temporary_place_t /*place*/) {
    return std::make_unique<windows_file_t>(std::move(target), mode);
}

} // namespace tool
