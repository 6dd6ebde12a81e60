// The commands of the program. Each is registered in the file of its name: `pkider dn encode` in dn_encode.cpp.
#pragma once

#include "tools/pkider/cli/command.h"

namespace tool {

/// Adds all of them.
void register_commands(CLI::App& app, chosen_command_t& chosen);

void register_alg(CLI::App& app, chosen_command_t& chosen);
void register_cert(CLI::App& app, chosen_command_t& chosen);
void register_der(CLI::App& app, chosen_command_t& chosen);
void register_oid(CLI::App& app, chosen_command_t& chosen);
void register_what(CLI::App& app, chosen_command_t& chosen);

void register_digestinfo_read(CLI::App& digestinfo, chosen_command_t& chosen);
void register_digestinfo_wrap(CLI::App& digestinfo, chosen_command_t& chosen);

void register_dn_decode(CLI::App& dn, chosen_command_t& chosen);
void register_dn_encode(CLI::App& dn, chosen_command_t& chosen);
void register_dn_get(CLI::App& dn, chosen_command_t& chosen);
void register_dn_has(CLI::App& dn, chosen_command_t& chosen);
void register_dn_normalize(CLI::App& dn, chosen_command_t& chosen);
void register_dn_order(CLI::App& dn, chosen_command_t& chosen);
void register_dn_reverse(CLI::App& dn, chosen_command_t& chosen);

void register_key_decrypt(CLI::App& key, chosen_command_t& chosen);
void register_key_encrypt(CLI::App& key, chosen_command_t& chosen);
void register_key_show(CLI::App& key, chosen_command_t& chosen);
void register_key_wrap(CLI::App& key, chosen_command_t& chosen);

void register_map_check(CLI::App& map, chosen_command_t& chosen);
void register_map_find(CLI::App& map, chosen_command_t& chosen);
void register_map_list(CLI::App& map, chosen_command_t& chosen);

void register_p12_create(CLI::App& p12, chosen_command_t& chosen);
void register_p12_extract(CLI::App& p12, chosen_command_t& chosen);
void register_p12_list(CLI::App& p12, chosen_command_t& chosen);
void register_p12_verify(CLI::App& p12, chosen_command_t& chosen);

void register_sig_dsa(CLI::App& sig, chosen_command_t& chosen);
void register_sig_ike(CLI::App& sig, chosen_command_t& chosen);

} // namespace tool
