// All commands of the program.
#pragma once

#include "tools/pkider/cli/command.h"

namespace tool {

void register_commands(CLI::App& app, chosen_command_t& chosen);

} // namespace tool
