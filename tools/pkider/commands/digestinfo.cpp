// pkider digestinfo: the DigestInfo around a hash value (RFC 8017 9.2).
#include "tools/pkider/commands/digestinfo.h"

namespace tool {

void register_digestinfo(CLI::App& app, chosen_command_t& chosen) {
    CLI::App& command = add_command(app, "digestinfo", "Wraps hash values, and reads them",
                                    "  pkider digestinfo wrap SHA256 digest.bin --der\n"
                                    "  pkider digestinfo read info.der\n");
    command.require_subcommand(1);
    register_digestinfo_wrap(command, chosen);
    register_digestinfo_read(command, chosen);
}

} // namespace tool
