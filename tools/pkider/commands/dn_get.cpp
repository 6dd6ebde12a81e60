// pkider dn get: the first attribute of a type.
#include "tools/pkider/cli/dn_lines.h"
#include "tools/pkider/commands/commands.h"
#include "tools/pkider/explain/name_encoding.h"
#include "tools/pkider/text/terminal_text.h"

#include <pkider/dn.h>

#include <memory>

namespace tool {
namespace {

struct options_t : dn_line_options_t {
    std::string type;
    bool pair = false;
};

exit_code_t get(const options_t& options) {
    json_array_t json(options.form);
    return for_each_line(options.lines, json, [&](const std::string& line) {
        check_splits(line, {});
        std::string value;
        const PrintableDnGetAttr mode = options.pair ? DN_GET_ATTR_PAIR : DN_GET_ATTR_VALUE;
        const bool found = printable_dn_get_attr(line.c_str(), options.type.c_str(), value, mode);
        print_result(options, json, line, options.pair ? "pair" : "value", found ? json_text(value) : json_t(),
                     found ? printable_name(value) + "\n" : "");
        return found ? exit_code_t::done : exit_code_t::answer_is_no;
    });
}

} // namespace

void register_dn_get(CLI::App& dn, chosen_command_t& chosen) {
    CLI::App& command =
        add_command(dn, "get", "Prints the first attribute of a type, as it is written; exit 1 when there is none",
                    "  pkider dn get O 'CN=Server,O=Example'\n"
                    "  pkider dn get --pair CN < names.txt\n");
    const auto options = std::make_shared<options_t>();
    command.add_option("TYPE", options->type, "Attribute type, exactly as the line writes it")
        ->required()
        ->type_name("");
    command.add_flag("--pair", options->pair, "Print TYPE=value, not the value alone");
    add_dn_line_options(command, *options);
    when_chosen(command, chosen, [options] { return get(*options); });
}

} // namespace tool
