// pkider key: keys, shown, wrapped, encrypted and decrypted.
#include "tools/pkider/commands/key.h"

namespace tool {
namespace {

// In the order of --help.
constexpr void (*subcommand_table[])(CLI::App&, chosen_command_t&) = {
    register_key_show,
    register_key_wrap,
    register_key_encrypt,
    register_key_decrypt,
};

} // namespace

void register_key(CLI::App& app, chosen_command_t& chosen) {
    CLI::App& command = add_command(app, "key", "Looks into keys, and puts private ones under a password",
                                    "  pkider key show server.pem\n"
                                    "  pkider key encrypt key.pem -o encrypted.pem\n");
    command.require_subcommand(1);
    for (const auto register_subcommand : subcommand_table) register_subcommand(command, chosen);
}

} // namespace tool
