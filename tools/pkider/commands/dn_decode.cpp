// pkider dn decode: the DER of a Name to a line of text.
#include "tools/pkider/base/count_text.h"
#include "tools/pkider/cli/input.h"
#include "tools/pkider/cli/map_options.h"
#include "tools/pkider/cli/output_options.h"
#include "tools/pkider/commands/commands.h"
#include "tools/pkider/explain/name_fault.h"
#include "tools/pkider/formats/der_cursor.h"
#include "tools/pkider/formats/encodings.h"
#include "tools/pkider/io/output.h"
#include "tools/pkider/io/report.h"
#include "tools/pkider/text/terminal_text.h"

#include <memory>

namespace tool {
namespace {

struct options_t {
    std::vector<std::string> files;
    input_form_t in = input_form_t::guess;
    output_form_t form = output_form_t::text;
    bool reversed = false;
    map_options_t map;
};

// The Name's own bytes; the library ignores bytes after them.
bytes_t cut_to_name(const input_t& input) {
    der_cursor_t cursor(input.der);
    const bytes_t name = cursor.next(asn_tag_t::SEQUENCE, "a Name").whole;
    if (!cursor.at_end())
        report_note(input.name + ": " + count_text(cursor.remaining().size(), "byte") + " after the name");
    return name;
}

exit_code_t decode(const options_t& options) {
    const map_in_force_t map(options.map);
    const input_rules_t rules{.form = options.in, .arguments = arguments_t::files_or_hex};
    json_array_t json(options.form);
    const auto decode_input = [&](const input_t& input) {
        const std::string name = print_name(input.der, map.handle(), options.reversed);
        const std::string_view der = as_text(cut_to_name(input));
        if (options.form == output_form_t::json) {
            json_t result = json_source(input);
            result["name"] = json_text(name);
            result["der"] = to_hex(der);
            json.add(result);
        } else if (options.form == output_form_t::text) {
            print(printable_name(name) + "\n");
        } else {
            print_bytes(der, options.form);
        }
        return exit_code_t::done;
    };
    const exit_code_t code = for_each_input(options.files, rules, json, decode_input);
    json.end();
    return code;
}

} // namespace

void register_dn_decode(CLI::App& dn, chosen_command_t& chosen) {
    CLI::App& command = add_command(dn, "decode", "Decodes names: prints the DER of a Name as text",
                                    "  pkider dn decode name.der\n"
                                    "  pkider dn decode --reverse --json name.der\n"
                                    "  pkider dn decode 300E310C300A06035504031303616263\n");
    const auto options = std::make_shared<options_t>();
    add_file_arguments(command, options->files, "Files with the DER of a Name, or the DER in hex");
    add_input_option(command, options->in);
    command.add_flag("--reverse", options->reversed, "Print the last RDN first");
    add_output_options(command, options->form, true);
    add_map_options(command, options->map);
    when_chosen(command, chosen, [options] { return decode(*options); });
}

} // namespace tool
