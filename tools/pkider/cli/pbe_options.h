// The crypto object as the command line asks for it: a password, a limit, and a note while it works for long.
#pragma once

#include "tools/pkider/crypto/gost_pbe.h"
#include "tools/pkider/crypto/iteration_limit.h"
#include "tools/pkider/io/password.h"

#include <string>

namespace CLI {
class App;
}

namespace tool {

struct password_options_t : password_source_t {
    uint64_t max_iterations = default_max_iterations; ///< Of all keys that a command derives.
};

/// Adds `--password-file`, `--password-fd` and `--max-iterations`.
void add_password_options(CLI::App& command, password_options_t& options);

/// Adds `--iterations`.
void add_iterations_option(CLI::App& command, uint32_t& iterations);

/// @throws usage_fault_t  The count cannot be stored (the nearest that can are named), or the keys of the file, so many
///                        as `num_keys`, would take more than the limit: nobody could open it without raising that.
void check_iteration_count(const password_options_t& options, uint32_t iterations, uint32_t num_keys);

gost_pbe_t make_pbe(const password_options_t& options, secret_t password, uint32_t iterations = default_iterations,
                    iteration_budget_t* shared_budget = nullptr);

} // namespace tool
