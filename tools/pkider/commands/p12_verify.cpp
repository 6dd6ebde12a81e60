// pkider p12 verify: is the MAC of the file right for this password?
#include "tools/pkider/cli/input.h"
#include "tools/pkider/cli/p12_files.h"
#include "tools/pkider/commands/commands.h"
#include "tools/pkider/facts/oid_names.h"
#include "tools/pkider/facts/p12_reading.h"
#include "tools/pkider/io/output.h"
#include "tools/pkider/text/terminal_text.h"

#include <memory>

namespace tool {
namespace {

struct options_t {
    std::vector<std::string> files;
    input_form_t form = input_form_t::guess;
    password_options_t password;
};

exit_code_t run(const options_t& options) {
    password_once_t password(options.password);
    file_budget_t budget(options.password);
    json_array_t no_json(output_form_t::text);
    return for_each_input(options.files, {.form = options.form}, no_json, [&](const input_t& input) {
        const std::string name = input_name(input.file);
        const pfx_t pfx = read_pfx(input.der);
        gost_pbe_t crypto = make_pbe(options.password, password.get(name), default_iterations, &budget.of(input));
        check_mac(pfx, crypto);
        print(printable(name) + ": the MAC is right: " + mac_text(pfx.mac, crypto.mac_form()) + "\n");
        return exit_code_t::done;
    });
}

} // namespace

void register_p12_verify(CLI::App& p12, chosen_command_t& chosen) {
    CLI::App& command = add_command(p12, "verify", "Checks the MAC, and nothing else",
                                    "  pkider p12 verify key.p12\n"
                                    "  pkider p12 verify --password-file secret.txt *.p12\n");
    const auto options = std::make_shared<options_t>();
    add_file_arguments(command, options->files, "PKCS#12 files");
    add_input_option(command, options->form);
    add_password_options(command, options->password);
    when_chosen(command, chosen, [options] { return run(*options); });
}

} // namespace tool
