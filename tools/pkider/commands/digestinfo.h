// The subcommands of `pkider digestinfo`.
#pragma once

#include "tools/pkider/cli/command.h"

namespace tool {

void register_digestinfo_wrap(CLI::App& digestinfo, chosen_command_t& chosen);
void register_digestinfo_read(CLI::App& digestinfo, chosen_command_t& chosen);

} // namespace tool
