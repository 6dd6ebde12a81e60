// Options that say in which form a command prints its results.
#pragma once

#include "tools/pkider/io/output.h"

namespace CLI {
class App;
}

namespace tool {

/// Adds `--json`; with `bytes` also `--der`, `--hex` and `--base64`, of which at most one may be given.
void add_output_options(CLI::App& command, output_form_t& form, bool bytes);

} // namespace tool
