// pkider dn normalize: a line of text to the DER of a Name, and back again to its normal form.
#include "tools/pkider/cli/dn_lines.h"
#include "tools/pkider/commands/commands.h"
#include "tools/pkider/explain/name_encoding.h"
#include "tools/pkider/explain/name_fault.h"
#include "tools/pkider/formats/der_cursor.h"
#include "tools/pkider/formats/encodings.h"
#include "tools/pkider/text/terminal_text.h"

#include <memory>

namespace tool {
namespace {

exit_code_t normalize(const dn_der_options_t& options) {
    const map_in_force_t map(options.map);
    json_array_t json(options.form);
    return for_each_line(options.lines, json, [&](const std::string& line) {
        const std::string der = encode_name(line, map.handle());
        const std::string name = print_name(as_bytes(der), map.handle());
        if (options.form == output_form_t::json) {
            json.add({{"line", json_text(line)}, {"name", json_text(name)}, {"der", to_hex(der)}});
        } else if (options.form == output_form_t::text) {
            print(printable_name(name) + "\n");
        } else {
            print_bytes(der, options.form);
        }
        return exit_code_t::done;
    });
}

} // namespace

void register_dn_normalize(CLI::App& dn, chosen_command_t& chosen) {
    CLI::App& command = add_command(dn, "normalize", "Encodes names and prints them again, in the one form they have",
                                    "  pkider dn normalize 'cn=\"Smith, John\", 2.5.4.10=Example'\n"
                                    "  pkider dn normalize --json < names.txt\n");
    const auto options = std::make_shared<dn_der_options_t>();
    add_dn_der_options(command, *options);
    when_chosen(command, chosen, [options] { return normalize(*options); });
}

} // namespace tool
