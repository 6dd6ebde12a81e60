#include "tools/pkider/cli/output_options.h"

#include <CLI/CLI.hpp>

namespace tool {

void add_output_options(CLI::App& command, output_form_t& form, bool bytes) {
    CLI::Option_group& group = *command.add_option_group("Output", "text without these");
    const auto add = [&](const char* flag, output_form_t value, const char* what) {
        group.add_flag_callback(
            flag, [&form, value] { form = value; }, what);
    };
    if (bytes) {
        add("--der", output_form_t::der, "Print the bytes (not on a terminal)");
        add("--hex", output_form_t::hex, "Print the bytes as hex digits");
        add("--base64", output_form_t::base64, "Print the bytes in base64");
    }
    add("--json", output_form_t::json, "Print one JSON array, an element a result");
    group.require_option(0, 1);
}

} // namespace tool
