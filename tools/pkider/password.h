// The password of a command: asked for on the terminal, or taken from where the caller says. Never an argument, which
// every user of the machine can read.
//
//     password_options_t options;
//     add_password_options(command, options);          // --password-file, --password-fd, --max-iterations
//     const secret_t password = read_password(options, "Password of k.p12");
#pragma once

#include "tools/pkider/secret.h"

#include <cstdint>
#include <string>

namespace CLI {
class App;
}

namespace tool {

struct password_options_t {
    std::string file;
    int fd = -1;
    uint64_t max_iterations = 10'000'000; ///< Of all keys that a command derives; a file with more is refused.
};

enum class password_use_t {
    open,     ///< Asked for once.
    make_new, ///< Asked for twice, so that a slip does not lock everybody out.
};

void add_password_options(CLI::App& command, password_options_t& options);

/// Takes the first of: the file's first line, the first line from the descriptor, PKIDER_PASSWORD, the terminal.
///
/// The end of the line does not belong to the password; it may be empty.
///
/// @throws failure_t  There is none to be had, it cannot be read, it is too long, or the two answers differ.
secret_t read_password(const password_options_t& options, const std::string& prompt,
                       password_use_t use = password_use_t::open);

} // namespace tool
