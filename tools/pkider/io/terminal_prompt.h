// Asking for something on the terminal that must not be seen there.
#pragma once

#include "tools/pkider/base/secret.h"

#include <optional>
#include <string>

namespace tool {

/// Shows `prompt` on the controlling terminal, independent of standard input and output, and reads a line without echo.
///
/// A signal that ends or stops the program finds the terminal with its echo on again; after a stop the prompt is shown
/// once more.
///
/// @return  Nothing when there is no terminal, or it was closed.
std::optional<secret_t> prompt_hidden(const std::string& prompt);

} // namespace tool
