// The program from its command line to its exit code.
#pragma once

#include "tools/pkider/base/exit_codes.h"

namespace tool {

/// Reads the command line, runs the command, reports any exception in one line on standard error.
exit_code_t run_program(int argc, char** argv);

} // namespace tool
