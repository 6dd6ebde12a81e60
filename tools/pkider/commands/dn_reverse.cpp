// pkider dn reverse: a name with its RDNs in the opposite order.
#include "tools/pkider/cli/dn_lines.h"
#include "tools/pkider/commands/commands.h"
#include "tools/pkider/explain/name_encoding.h"
#include "tools/pkider/text/terminal_text.h"

#include <pkider/dn.h>

#include <memory>

namespace tool {
namespace {

exit_code_t reverse(const dn_line_options_t& options) {
    json_array_t json(options.form);
    return for_each_line(options.lines, json, [&](const std::string& line) {
        check_splits(line, {});
        std::string reversed = line;
        printable_dn_reverse(reversed.data());
        print_result(options, json, line, "name", json_text(reversed), printable_name(reversed) + "\n");
        return exit_code_t::done;
    });
}

} // namespace

void register_dn_reverse(CLI::App& dn, chosen_command_t& chosen) {
    CLI::App& command = add_command(dn, "reverse", "Turns the order of the RDNs round, each as it is written",
                                    "  pkider dn reverse 'C=RU,O=Example,CN=Server'\n");
    const auto options = std::make_shared<dn_line_options_t>();
    add_dn_line_options(command, *options);
    when_chosen(command, chosen, [options] { return reverse(*options); });
}

} // namespace tool
