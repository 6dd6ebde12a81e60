#include "tools/pkider/cli/pbe_options.h"

#include "tools/pkider/base/failure.h"
#include "tools/pkider/cli/option_checks.h"
#include "tools/pkider/crypto/iteration_count.h"
#include "tools/pkider/io/progress_note.h"

#include <CLI/CLI.hpp>

namespace tool {

void add_password_options(CLI::App& command, password_options_t& options) {
    CLI::Option* const file =
        command.add_option("--password-file", options.file, "Take the password from the first line of FILE");
    file->check(not_empty())->type_name("FILE");
    command.add_option("--password-fd", options.fd, "Take the password from the first line read from descriptor N")
        ->type_name("N")
        ->check(not_negative())
        ->excludes(file);
    command
        .add_option("--max-iterations", options.max_iterations,
                    "Iterations of key derivation that a file may ask for, all keys together; cheap ones count less")
        ->check(not_negative())
        ->type_name("N")
        ->capture_default_str();
}

void add_iterations_option(CLI::App& command, uint32_t& iterations) {
    command.add_option("--iterations", iterations, "Iterations of key derivation")
        ->type_name("N")
        ->capture_default_str();
}

void check_iteration_count(const password_options_t& options, uint32_t iterations, uint32_t num_keys) {
    const asked_iterations_t all{uint64_t{iterations} * num_keys};
    iteration_budget_t budget(options.max_iterations);
    if (!budget.take(all)) throw usage_fault_t(budget.refusal(all));
    if (is_storable_count(iterations)) return;
    const storable_neighbours_t near = storable_neighbours(iterations);
    std::string words = "an iteration count of " + std::to_string(iterations) + " cannot be stored, take ";
    if (near.below) words += std::to_string(*near.below) + " or ";
    throw usage_fault_t(words + std::to_string(near.above.value_or(1)) +
                        ": zero bytes inside the number would be lost");
}

gost_pbe_t make_pbe(const password_options_t& options, secret_t password, uint32_t iterations,
                    iteration_budget_t* shared_budget) {
    return gost_pbe_t(std::move(password), {.iterations = iterations,
                                            .max_iterations = options.max_iterations,
                                            .shared_budget = shared_budget,
                                            .on_progress = progress_note()});
}

} // namespace tool
