// pkider dn: distinguished names, as text and as DER.
#include "tools/pkider/commands/dn.h"

#include "tools/pkider/cli/output_options.h"

namespace tool {
namespace {

// In the order of --help.
constexpr void (*subcommands[])(CLI::App&, chosen_command_t&) = {
    register_dn_encode, register_dn_decode, register_dn_normalize, register_dn_reverse,
    register_dn_get,    register_dn_has,    register_dn_order,
};

void add_line_arguments(CLI::App& command, std::vector<std::string>& lines) {
    command.add_option("LINE", lines, "Names such as 'CN=Server,O=Example'; - or none is the lines of standard input")
        ->type_name("");
}

} // namespace

void add_text_options(CLI::App& command, text_options_t& options) {
    add_line_arguments(command, options.lines);
    add_output_options(command, options.form, false);
}

void add_line_options(CLI::App& command, line_options_t& options) {
    add_line_arguments(command, options.lines);
    add_output_options(command, options.form, true);
    add_map_options(command, options.map);
}

void print_result(const text_options_t& options, json_array_t& json, const std::string& line, const char* member,
                  const json_t& value, const std::string& text) {
    if (options.form == output_form_t::json) {
        json.add({{"line", json_text(line)}, {member, value}});
    } else {
        print(text);
    }
}

exit_code_t print_answer(const text_options_t& options, json_array_t& json, const std::string& line, bool yes) {
    print_result(options, json, line, "answer", yes, yes ? "yes\n" : "no\n");
    return yes ? exit_code_t::done : exit_code_t::answer_is_no;
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
