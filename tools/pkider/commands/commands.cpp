#include "tools/pkider/commands/commands.h"

#include <vector>

namespace tool {
namespace {

/// A command that only has subcommands.
struct group_t {
    const char* name;
    const char* summary;
    const char* examples;
    bool has_help_all; // --help-all; the subcommands inherit it
    std::vector<void (*)(CLI::App& group, chosen_command_t& chosen)> subcommands; // in the order of --help
};

const group_t dn_group = {
    .name = "dn",
    .summary = "Works on distinguished names: text and DER",
    .examples = "  pkider dn encode 'CN=Server 1,O=Example,C=RU'\n"
                "  pkider dn decode name.der\n"
                "  pkider dn --help-all\n",
    .has_help_all = true,
    .subcommands = {register_dn_encode, register_dn_decode, register_dn_normalize, register_dn_reverse, register_dn_get,
                    register_dn_has, register_dn_order},
};

const group_t map_group = {
    .name = "map",
    .summary = "Shows the names of OIDs, and checks files that add some",
    .examples = "  pkider map list\n"
                "  pkider map find E\n"
                "  pkider map check vpnoids.cfg\n",
    .has_help_all = true,
    .subcommands = {register_map_list, register_map_find, register_map_check},
};

const group_t key_group = {
    .name = "key",
    .summary = "Looks into keys, and puts private ones under a password",
    .examples = "  pkider key show server.pem\n"
                "  pkider key encrypt key.pem -o encrypted.pem\n",
    .has_help_all = false,
    .subcommands = {register_key_show, register_key_wrap, register_key_encrypt, register_key_decrypt},
};

const group_t p12_group = {
    .name = "p12",
    .summary = "Keys and certificates in PKCS#12 files",
    .examples = "  pkider p12 list key.p12\n"
                "  pkider p12 extract key.p12 --certs\n"
                "  pkider p12 create -o key.p12 --key key.pem --cert cert.pem\n",
    .has_help_all = false,
    .subcommands = {register_p12_list, register_p12_verify, register_p12_extract, register_p12_create},
};

const group_t digestinfo_group = {
    .name = "digestinfo",
    .summary = "Wraps hash values, and reads them",
    .examples = "  pkider digestinfo wrap SHA256 digest.bin --der\n"
                "  pkider digestinfo read info.der\n",
    .has_help_all = false,
    .subcommands = {register_digestinfo_wrap, register_digestinfo_read},
};

const group_t sig_group = {
    .name = "sig",
    .summary = "Takes signature values and their algorithms apart",
    .examples = "  pkider sig dsa signature.der\n"
                "  pkider sig ike identifier.der\n",
    .has_help_all = false,
    .subcommands = {register_sig_dsa, register_sig_ike},
};

void register_group(CLI::App& app, chosen_command_t& chosen, const group_t& group) {
    CLI::App& command = add_command(app, group.name, group.summary, group.examples);
    if (group.has_help_all) {
        command.set_help_all_flag("--help-all", "Print the help of every subcommand and exit");
    }
    command.require_subcommand(1);
    for (const auto register_subcommand : group.subcommands) register_subcommand(command, chosen);
}

} // namespace

// In the order of --help.
void register_commands(CLI::App& app, chosen_command_t& chosen) {
    register_what(app, chosen);
    register_cert(app, chosen);
    register_group(app, chosen, dn_group);
    register_oid(app, chosen);
    register_group(app, chosen, map_group);
    register_der(app, chosen);
    register_alg(app, chosen);
    register_group(app, chosen, key_group);
    register_group(app, chosen, p12_group);
    register_group(app, chosen, digestinfo_group);
    register_group(app, chosen, sig_group);
}

} // namespace tool
