#include "tools/pkider/cli/dn_lines.h"

#include "tools/pkider/cli/output_options.h"

#include <CLI/CLI.hpp>

namespace tool {
namespace {

void add_line_arguments(CLI::App& command, std::vector<std::string>& lines) {
    command.add_option("LINE", lines, "Names such as 'CN=Server,O=Example'; - or none is the lines of standard input")
        ->type_name("");
}

} // namespace

void add_dn_line_options(CLI::App& command, dn_line_options_t& options) {
    add_line_arguments(command, options.lines);
    add_output_options(command, options.form, false);
}

void add_dn_der_options(CLI::App& command, dn_der_options_t& options) {
    add_line_arguments(command, options.lines);
    add_output_options(command, options.form, true);
    add_map_options(command, options.map);
}

void print_result(const dn_line_options_t& options, json_array_t& json, const std::string& line, const char* member,
                  const json_t& value, const std::string& text) {
    if (options.form == output_form_t::json) {
        json.add({{"line", json_text(line)}, {member, value}});
    } else {
        print(text);
    }
}

exit_code_t print_answer(const dn_line_options_t& options, json_array_t& json, const std::string& line, bool yes) {
    print_result(options, json, line, "answer", yes, yes ? "yes\n" : "no\n");
    return yes ? exit_code_t::done : exit_code_t::answer_is_no;
}

} // namespace tool
