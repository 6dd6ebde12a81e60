// Paths for the Windows API, of any length.
#pragma once

#include <string>

namespace tool {

/// The absolute path after `\\?\`, which is not limited to MAX_PATH characters. That of a device (`\\.\NUL`) and one
/// that has the prefix already are unchanged.
std::wstring absolute_path(const std::string& path);

/// Whether the path names a device: `\\.\NUL`.
bool is_device_path(const std::wstring& absolute);

} // namespace tool
