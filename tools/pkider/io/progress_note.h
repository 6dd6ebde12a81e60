// "Deriving the key: 40 %", on a terminal, when it takes long; nothing elsewhere.
#pragma once

#include <cstdint>
#include <functional>

namespace tool {

/// Called with the iterations done and wanted. It speaks on standard error from the first second on, if that is a
/// terminal, and takes its note away when the derivation is done.
std::function<void(uint32_t done, uint32_t total)> progress_note();

} // namespace tool
