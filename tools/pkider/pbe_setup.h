// The crypto object as the program uses it: with a limit from the command line, and a note while it works for long.
#pragma once

#include "tools/pkider/gost_pbe.h"
#include "tools/pkider/password.h"

#include <string>

namespace CLI {
class App;
}

namespace tool {

constexpr uint32_t default_iterations = 600'000;

/// Adds `--iterations`.
void add_iterations_option(CLI::App& command, uint32_t& iterations);

/// @throws usage_fault_t  The count cannot be stored (the nearest that can are named), or the keys of the file, so many
///                        as `num_keys`, would take more than the limit: nobody could open it without raising that.
void check_iteration_count(const password_options_t& options, uint32_t iterations, uint32_t num_keys);

gost_pbe_t make_pbe(const password_options_t& options, secret_t password, uint32_t iterations = default_iterations);

/// "4294967295 iterations of key derivation; the limit is 10000000 for all keys of a file (--max-iterations)"
std::string too_many_iterations_text(uint64_t asked, uint64_t limit);
std::string too_many_iterations_text(const gost_pbe_t& crypto);

} // namespace tool
