// The subcommands of `pkider key`.
#pragma once

#include "tools/pkider/cli/command.h"

namespace tool {

void register_key_show(CLI::App& key, chosen_command_t& chosen);
void register_key_wrap(CLI::App& key, chosen_command_t& chosen);
void register_key_encrypt(CLI::App& key, chosen_command_t& chosen);
void register_key_decrypt(CLI::App& key, chosen_command_t& chosen);

} // namespace tool
