// pkider dn encode: a line of text to the DER of a Name.
#include "tools/pkider/cli/dn_lines.h"
#include "tools/pkider/commands/commands.h"
#include "tools/pkider/explain/name_encoding.h"
#include "tools/pkider/formats/encodings.h"

#include <memory>

namespace tool {
namespace {

exit_code_t encode(const dn_der_options_t& options) {
    const map_in_force_t map(options.map);
    json_array_t json(options.form);
    return for_each_line(options.lines, json, [&](const std::string& line) {
        const std::string der = encode_name(line, map.handle());
        if (options.form == output_form_t::json) {
            json.add({{"line", json_text(line)}, {"der", to_hex(der)}});
        } else {
            print_bytes(der, options.form == output_form_t::text ? output_form_t::hex : options.form);
        }
        return exit_code_t::done;
    });
}

} // namespace

void register_dn_encode(CLI::App& dn, chosen_command_t& chosen) {
    CLI::App& command = add_command(dn, "encode", "Encodes names: prints their DER, in hex by default",
                                    "  pkider dn encode 'CN=Server 1,O=Example,C=RU'\n"
                                    "  pkider dn encode --der 'CN=\"Smith, John\"' > name.der\n"
                                    "  pkider dn encode --base64 < names.txt\n");
    const auto options = std::make_shared<dn_der_options_t>();
    add_dn_der_options(command, *options);
    when_chosen(command, chosen, [options] { return encode(*options); });
}

} // namespace tool
