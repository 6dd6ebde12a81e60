// The part of 'pkider key show' that is for private keys: what they are, and their octets only with --reveal
// them.
#pragma once

#include "tools/pkider/cli/input.h"
#include "tools/pkider/cli/pbe_options.h"
#include "tools/pkider/facts/file_kind.h"
#include "tools/pkider/io/output.h"

#include <string>

namespace CLI {
class App;
}

namespace tool {

struct private_show_options_t {
    bool reveal = false;         ///< Show the octets; an encrypted key is opened for it.
    password_options_t password; ///< Of encrypted keys.
};

void add_private_show_options(CLI::App& command, private_show_options_t& options);

/// PKCS#8, encrypted or not.
bool is_private_key(file_kind_t kind);

/// A few lines, ready to be printed. @throws failure_t
std::string private_key_text(const input_t& input, const private_show_options_t& options);

/// @throws failure_t
json_t private_key_json(const input_t& input, const private_show_options_t& options);

} // namespace tool
