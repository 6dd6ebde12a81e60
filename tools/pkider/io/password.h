// The password of a command: asked for on the terminal, or taken from where the caller says. Never an argument, which
// every user of the machine can read.
//
//     const secret_t password = read_password({.file = "secret.txt"}, "Password of k.p12");
#pragma once

#include "tools/pkider/base/secret.h"

#include <string>

namespace tool {

/// Where the caller says that the password is; nowhere, without a file and a descriptor.
struct password_source_t {
    std::string file;
    int fd = -1;
};

enum class password_use_t {
    open,     ///< Asked for once.
    make_new, ///< Asked for twice, so that a slip does not lock everybody out.
};

/// Takes the first of: the file's first line, the first line from the descriptor, PKIDER_PASSWORD, the terminal.
///
/// It may be empty, and has at most 4,096 bytes from any of them. The end of the line does not belong to it.
///
/// @throws failure_t  There is none to be had, it cannot be read, it is too long, or the two answers differ.
secret_t read_password(const password_source_t& source, const std::string& prompt,
                       password_use_t use = password_use_t::open);

} // namespace tool
