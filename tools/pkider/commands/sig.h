// The subcommands of `pkider sig`.
#pragma once

#include "tools/pkider/cli/command.h"

namespace tool {

void register_sig_dsa(CLI::App& sig, chosen_command_t& chosen);
void register_sig_ike(CLI::App& sig, chosen_command_t& chosen);

} // namespace tool
