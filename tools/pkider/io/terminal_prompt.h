// Asking for something on the terminal that must not be seen there.
#pragma once

#include "tools/pkider/base/secret.h"

#include <cstddef>
#include <optional>
#include <string>

namespace tool {

/// Shows `prompt` on the controlling terminal, independent of standard input and output, and reads a line without echo.
///
/// A signal that ends or stops the program finds the terminal with its echo on again; after a stop the prompt is shown
/// once more.
///
/// @return  The line without its end, cut if it is longer than `max_size`, but then also longer than that. Linux cuts
///          lines of a terminal at 4,095 bytes. Nothing when there is no terminal, or it was closed.
std::optional<secret_t> prompt_hidden(const std::string& prompt, std::size_t max_size);

} // namespace tool
