// pkider dn order: whether C is before CN.
#include "tools/pkider/cli/dn_lines.h"
#include "tools/pkider/commands/commands.h"
#include "tools/pkider/explain/name_encoding.h"

#include <pkider/dn.h>

#include <memory>

namespace tool {
namespace {

exit_code_t order(const dn_line_options_t& options) {
    json_array_t json(options.form);
    return for_each_line(options.lines, json, [&](const std::string& line) {
        check_splits(line, {});
        return print_answer(options, json, line, printable_dn_C_before_CN(line.c_str()));
    });
}

} // namespace

void register_dn_order(CLI::App& dn, chosen_command_t& chosen) {
    CLI::App& command = add_command(dn, "order", "Says whether C is before CN; exit 1 when not",
                                    "  pkider dn order 'C=RU,O=Example,CN=Server'\n");
    const auto options = std::make_shared<dn_line_options_t>();
    add_dn_line_options(command, *options);
    when_chosen(command, chosen, [options] { return order(*options); });
}

} // namespace tool
