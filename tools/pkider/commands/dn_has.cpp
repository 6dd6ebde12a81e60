// pkider dn has: whether a name holds some RDNs.
#include "tools/pkider/cli/dn_lines.h"
#include "tools/pkider/commands/commands.h"

#include <pkider/dn.h>

#include <memory>

namespace tool {
namespace {

struct options_t : dn_line_options_t {
    std::string attributes;
};

// The library compares the raw text, so a line that does not split is searched too.
exit_code_t has(const options_t& options) {
    json_array_t json(options.form);
    return for_each_line(options.lines, json, [&](const std::string& line) {
        return print_answer(options, json, line, printable_dn_contain_attrs(line.c_str(), options.attributes.c_str()));
    });
}

} // namespace

void register_dn_has(CLI::App& dn, chosen_command_t& chosen) {
    CLI::App& command = add_command(dn, "has",
                                    "Says whether a name holds these RDNs in this order; exit 1 when not.\n"
                                    "The text is compared unchanged: not for access decisions",
                                    "  pkider dn has 'O=Example,C=RU' 'CN=Server,O=Example,C=RU'\n");
    const auto options = std::make_shared<options_t>();
    command.add_option("ATTRIBUTES", options->attributes, "RDNs separated by ','")->required()->type_name("");
    add_dn_line_options(command, *options);
    when_chosen(command, chosen, [options] { return has(*options); });
}

} // namespace tool
