// A variable of the environment that holds a secret.
#pragma once

#include "tools/pkider/base/secret.h"

#include <optional>

namespace tool {

/// In UTF-8; nothing when it is not set.
std::optional<secret_t> secret_variable(const char* name);

} // namespace tool
