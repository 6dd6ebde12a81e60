// pkider dn: distinguished names, as text and as DER.
#include "tools/pkider/commands/dn_command.h"

namespace tool {
namespace {

// In the order of --help.
constexpr void (*subcommands[])(CLI::App&, chosen_command_t&) = {
    register_dn_encode, register_dn_decode, register_dn_normalize, register_dn_reverse,
    register_dn_get,    register_dn_has,    register_dn_order,
};

} // namespace

void add_line_arguments(CLI::App& command, std::vector<std::string>& lines) {
    command.add_option("LINE", lines, "Names such as 'CN=Server,O=Example'; - or none is the lines of standard input")
        ->type_name("");
}

void register_dn(CLI::App& app, chosen_command_t& chosen) {
    CLI::App& dn = add_command(app, "dn", "Works on distinguished names: text and DER",
                               "  pkider dn encode 'CN=Server 1,O=Example,C=RU'\n"
                               "  pkider dn decode name.der\n"
                               "  pkider dn --help-all\n");
    dn.set_help_all_flag("--help-all", "Print the help of every subcommand and exit");
    dn.require_subcommand(1);
    for (const auto register_subcommand : subcommands) register_subcommand(dn, chosen);
}

} // namespace tool
