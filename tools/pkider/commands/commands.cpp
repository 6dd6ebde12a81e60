#include "tools/pkider/commands/commands.h"

namespace tool {
namespace {

// In the order of --help.
constexpr void (*command_table[])(CLI::App&, chosen_command_t&) = {
    register_what, register_cert, register_dn,  register_oid,        register_map, register_der,
    register_alg,  register_key,  register_p12, register_digestinfo, register_sig,
};

} // namespace

void register_commands(CLI::App& app, chosen_command_t& chosen) {
    for (const auto register_command : command_table) register_command(app, chosen);
}

} // namespace tool
