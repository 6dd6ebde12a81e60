// "Deriving the key: 40 %", on a terminal, when it takes long; nothing elsewhere.
#pragma once

#include "tools/pkider/key_derivation.h"

namespace tool {

/// A progress_t that speaks on standard error from the first second on, if that is a terminal, and takes its note away
/// when the derivation is done.
progress_t progress_note();

} // namespace tool
