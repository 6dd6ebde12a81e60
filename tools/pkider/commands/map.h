// The subcommands of `pkider map`.
#pragma once

#include "tools/pkider/cli/command.h"

namespace tool {

void register_map_list(CLI::App& map, chosen_command_t& chosen);
void register_map_find(CLI::App& map, chosen_command_t& chosen);
void register_map_check(CLI::App& map, chosen_command_t& chosen);

} // namespace tool
