// The exit codes of the program. The numbers above 63 are those of sysexits.h.
#pragma once

#include <algorithm>

namespace tool {

enum class exit_code_t : int {
    done = 0,           // what was asked for was done; a question was answered with yes
    answer_is_no = 1,   // the question was answered with no: not found, not equal, not in that order
    data_fault = 2,     // the input was read, but it is not what it should be
    wrong_password = 3, // wrong password, or a MAC that does not match
    usage = 64,         // the command line is wrong
    internal = 70,      // the program's own fault, or no memory
    file_trouble = 74,  // a file cannot be opened, read or written
};

/// Of two results the one to report when several inputs were worked on.
constexpr exit_code_t worse(exit_code_t a, exit_code_t b) {
    return std::max(a, b);
}

} // namespace tool
