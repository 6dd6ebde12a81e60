#include "tools/pkider/cli/show_inputs.h"

#include "tools/pkider/cli/output_options.h"

namespace tool {

void add_show_options(CLI::App& command, show_options_t& options, const std::string& files, bool bytes) {
    add_file_arguments(command, options.files, files);
    add_input_option(command, options.form);
    add_output_options(command, options.output, bytes);
}

void add_named_show_options(CLI::App& command, named_show_options_t& options, const std::string& files, bool bytes) {
    add_show_options(command, options, files, bytes);
    add_map_options(command, options.map);
}

exit_code_t show_each(const show_options_t& options,
                      const std::function<exit_code_t(const input_t& input, json_array_t& results)>& show,
                      arguments_t arguments) {
    json_array_t results(options.output);
    const input_rules_t rules{.form = options.form, .arguments = arguments};
    const exit_code_t worst =
        for_each_input(options.files, rules, results, [&](const input_t& input) { return show(input, results); });
    results.end();
    return worst;
}

void show_result(const show_options_t& options, const input_t& input, json_array_t& results, const std::string& text,
                 const json_t& json) {
    if (options.output == output_form_t::json) {
        json_t result = json_source(input);
        result.update(json);
        results.add(result);
    } else {
        print_heading(input, options.files.size());
        print(text);
    }
}

} // namespace tool
