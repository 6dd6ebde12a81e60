// pkider dn decode: the DER of a Name to a line of text.
#include "tools/pkider/base/count_text.h"
#include "tools/pkider/cli/show_inputs.h"
#include "tools/pkider/commands/commands.h"
#include "tools/pkider/explain/name_fault.h"
#include "tools/pkider/formats/der_cursor.h"
#include "tools/pkider/formats/encodings.h"
#include "tools/pkider/io/report.h"
#include "tools/pkider/text/terminal_text.h"

#include <memory>

namespace tool {
namespace {

struct options_t : named_show_options_t {
    bool reversed = false;
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
    const auto decode_input = [&](const input_t& input, json_array_t& results) {
        const std::string name = print_name(input.der, map.handle(), options.reversed);
        const std::string_view der = as_text(cut_to_name(input));
        if (options.output == output_form_t::json) {
            json_t result = json_source(input);
            result["name"] = json_text(name);
            result["der"] = to_hex(der);
            results.add(result);
        } else if (options.output == output_form_t::text) {
            print(printable_name(name) + "\n");
        } else {
            print_bytes(der, options.output);
        }
        return exit_code_t::done;
    };
    return show_each(options, decode_input, arguments_t::files_or_hex);
}

} // namespace

void register_dn_decode(CLI::App& dn, chosen_command_t& chosen) {
    CLI::App& command = add_command(dn, "decode", "Decodes names: prints the DER of a Name as text",
                                    "  pkider dn decode name.der\n"
                                    "  pkider dn decode --reverse --json name.der\n"
                                    "  pkider dn decode 300E310C300A06035504031303616263\n");
    const auto options = std::make_shared<options_t>();
    add_named_show_options(command, *options, "Files with the DER of a Name, or the DER in hex", true);
    command.add_flag("--reverse", options->reversed, "Print the last RDN first");
    when_chosen(command, chosen, [options] { return decode(*options); });
}

} // namespace tool
