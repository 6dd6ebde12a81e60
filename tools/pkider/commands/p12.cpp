// pkider p12: keys and certificates in PKCS#12 files.
#include "tools/pkider/commands/p12.h"

namespace tool {

void register_p12(CLI::App& app, chosen_command_t& chosen) {
    CLI::App& command = add_command(app, "p12", "Keys and certificates in PKCS#12 files",
                                    "  pkider p12 list key.p12\n"
                                    "  pkider p12 extract key.p12 --certs\n"
                                    "  pkider p12 create -o key.p12 --key key.pem --cert cert.pem\n");
    command.require_subcommand(1);
    register_p12_list(command, chosen);
    register_p12_verify(command, chosen);
    register_p12_extract(command, chosen);
    register_p12_create(command, chosen);
}

} // namespace tool
