// The subcommands of `pkider dn`, a file for those that look alike.
#pragma once

#include "tools/pkider/cli/command.h"
#include "tools/pkider/cli/map_options.h"
#include "tools/pkider/io/output.h"

#include <string>
#include <vector>

namespace tool {

/// What every subcommand that takes lines of text has in common.
struct line_options_t {
    std::vector<std::string> lines;
    output_form_t form = output_form_t::text;
    map_options_t map;
};

/// Adds `[LINE...]`.
void add_line_arguments(CLI::App& command, std::vector<std::string>& lines);

void register_dn_encode(CLI::App& dn, chosen_command_t& chosen);    // dn_encode_command.cpp
void register_dn_decode(CLI::App& dn, chosen_command_t& chosen);    // dn_decode_command.cpp
void register_dn_normalize(CLI::App& dn, chosen_command_t& chosen); // dn_encode_command.cpp
void register_dn_reverse(CLI::App& dn, chosen_command_t& chosen);   // dn_text_commands.cpp
void register_dn_get(CLI::App& dn, chosen_command_t& chosen);       //
void register_dn_has(CLI::App& dn, chosen_command_t& chosen);       //
void register_dn_order(CLI::App& dn, chosen_command_t& chosen);     //

} // namespace tool
