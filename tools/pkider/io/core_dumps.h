// No core dump and no debugger of another process sees the memory of the program.
#pragma once

namespace tool {

/// Called before the program takes the first secret: an image of the memory would hold the password and the keys. Where
/// the system refuses, the program goes on as it is.
void forbid_core_dumps() noexcept;

} // namespace tool
