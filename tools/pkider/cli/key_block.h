// The one key that a command on private keys works on.
#pragma once

#include "tools/pkider/cli/input.h"

#include <string>
#include <string_view>

namespace tool {

/// The only block of a file. `label`: of the PEM block to take when there are several, by its end.
/// @throws failure_t  There is not just one.
block_t read_key_block(const std::string& path, input_form_t form, std::string_view label);

} // namespace tool
