// pkider sig: signature values, and their algorithms.
#include "tools/pkider/commands/sig.h"

namespace tool {

void register_sig(CLI::App& app, chosen_command_t& chosen) {
    CLI::App& command = add_command(app, "sig", "Takes signature values and their algorithms apart",
                                    "  pkider sig dsa signature.der\n"
                                    "  pkider sig ike identifier.der\n");
    command.require_subcommand(1);
    register_sig_dsa(command, chosen);
    register_sig_ike(command, chosen);
}

} // namespace tool
