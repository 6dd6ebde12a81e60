// What the commands have in common that show each of their inputs: which files, their form, the form of the results.
#pragma once

#include "tools/pkider/cli/input.h"
#include "tools/pkider/cli/map_options.h"
#include "tools/pkider/io/output.h"

#include <functional>
#include <string>
#include <vector>

namespace tool {

struct show_options_t {
    std::vector<std::string> files;
    input_form_t form = input_form_t::guess;
    output_form_t output = output_form_t::text;
};

/// Of the commands whose results contain names of OIDs.
struct named_show_options_t : show_options_t {
    map_options_t map;
};

/// Adds `[FILE...]`, `--in` and the forms of the results (add_output_options). `files` says what is in the files.
void add_show_options(CLI::App& command, show_options_t& options, const std::string& files, bool bytes = false);

/// The same, and the options of maps.
void add_named_show_options(CLI::App& command, named_show_options_t& options, const std::string& files,
                            bool bytes = false);

/// Works on every input (for_each_input), and ends the JSON results.
exit_code_t show_each(const show_options_t& options,
                      const std::function<exit_code_t(const input_t& input, json_array_t& results)>& show,
                      arguments_t arguments = arguments_t::files);

/// Shows one result: `text` under a heading, or the members of `json` after those of json_source.
void show_result(const show_options_t& options, const input_t& input, json_array_t& results, const std::string& text,
                 const json_t& json);

} // namespace tool
