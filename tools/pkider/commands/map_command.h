// The subcommands of `pkider map`.
#pragma once

#include "tools/pkider/cli/command.h"

namespace tool {

void register_map_list(CLI::App& map, chosen_command_t& chosen);  // map_list_command.cpp
void register_map_find(CLI::App& map, chosen_command_t& chosen);  // map_find_command.cpp
void register_map_check(CLI::App& map, chosen_command_t& chosen); // map_check_command.cpp

} // namespace tool
