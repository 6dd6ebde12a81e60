// Lines of text that are distinguished names: the options of the commands that work on them, and how they print the
// result of each line.
#pragma once

#include "tools/pkider/cli/map_options.h"
#include "tools/pkider/cli/text_lines.h"
#include "tools/pkider/io/output.h"

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace tool {

/// Of the commands that work on the text alone.
struct dn_line_options_t {
    std::vector<std::string> lines;
    output_form_t form = output_form_t::text;
};

/// Of those that encode it.
struct dn_der_options_t : dn_line_options_t {
    map_options_t map;
};

/// Adds `[LINE...]` and `--json`.
void add_dn_line_options(CLI::App& command, dn_line_options_t& options);

/// Adds `[LINE...]`, the forms of DER, and the options of maps.
void add_dn_der_options(CLI::App& command, dn_der_options_t& options);

/// Prints `text`, or {"line", member: value}.
void print_result(const dn_line_options_t& options, json_array_t& json, const std::string& line, const char* member,
                  const json_t& value, const std::string& text);

/// Prints yes or no, or {"line", "answer"}.
exit_code_t print_answer(const dn_line_options_t& options, json_array_t& json, const std::string& line, bool yes);

} // namespace tool
