// The subcommands of `pkider dn`, and what several of them need.
#pragma once

#include "tools/pkider/cli/command.h"
#include "tools/pkider/cli/map_options.h"
#include "tools/pkider/io/output.h"

#include <string>
#include <vector>

namespace tool {

/// What the subcommands have in common that work on the text alone.
struct text_options_t {
    std::vector<std::string> lines;
    output_form_t form = output_form_t::text;
};

/// And those that encode it.
struct line_options_t : text_options_t {
    map_options_t map;
};

/// Adds `[LINE...]` and `--json`.
void add_text_options(CLI::App& command, text_options_t& options);

/// Adds `[LINE...]`, the forms of DER, and the options of maps.
void add_line_options(CLI::App& command, line_options_t& options);

/// Prints `text`, or {"line", member: value}.
void print_result(const text_options_t& options, json_array_t& json, const std::string& line, const char* member,
                  const json_t& value, const std::string& text);

/// Prints yes or no, or {"line", "answer"}.
exit_code_t print_answer(const text_options_t& options, json_array_t& json, const std::string& line, bool yes);

void register_dn_encode(CLI::App& dn, chosen_command_t& chosen);
void register_dn_decode(CLI::App& dn, chosen_command_t& chosen);
void register_dn_normalize(CLI::App& dn, chosen_command_t& chosen);
void register_dn_reverse(CLI::App& dn, chosen_command_t& chosen);
void register_dn_get(CLI::App& dn, chosen_command_t& chosen);
void register_dn_has(CLI::App& dn, chosen_command_t& chosen);
void register_dn_order(CLI::App& dn, chosen_command_t& chosen);

} // namespace tool
