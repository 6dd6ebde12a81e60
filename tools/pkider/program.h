// The program from its command line to its exit code.
#pragma once

#include "tools/pkider/base/exit_codes.h"

#include <string>
#include <vector>

namespace tool {

/// Takes the words after the program's name, runs the command, reports any exception in one line on standard error.
exit_code_t run_program(std::vector<std::string> arguments);

} // namespace tool
