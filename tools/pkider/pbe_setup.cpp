#include "tools/pkider/pbe_setup.h"

#include "tools/pkider/failure.h"
#include "tools/pkider/iteration_count.h"
#include "tools/pkider/progress_note.h"

#include <CLI/CLI.hpp>

namespace tool {

void add_iterations_option(CLI::App& command, uint32_t& iterations) {
    command.add_option("--iterations", iterations, "Iterations of key derivation")
        ->type_name("N")
        ->capture_default_str();
}

void check_iteration_count(const password_options_t& options, uint32_t iterations, uint32_t num_keys) {
    const uint64_t all = uint64_t{iterations} * num_keys;
    if (all > options.max_iterations) throw usage_fault_t(too_many_iterations_text(all, options.max_iterations));
    if (is_storable_count(iterations)) return;
    const storable_neighbours_t near = storable_neighbours(iterations);
    std::string words = "an iteration count of " + std::to_string(iterations) + " cannot be stored, take ";
    if (near.below) words += std::to_string(*near.below) + " or ";
    throw usage_fault_t(words + std::to_string(near.above.value_or(1)) +
                        ": zero bytes inside the number would be lost");
}

gost_pbe_t make_pbe(const password_options_t& options, secret_t password, uint32_t iterations) {
    return gost_pbe_t(
        std::move(password),
        {.iterations = iterations, .max_iterations = options.max_iterations, .on_progress = progress_note()});
}

std::string too_many_iterations_text(uint64_t asked, uint64_t limit) {
    return std::to_string(asked) + " iterations of key derivation; the limit is " + std::to_string(limit) +
           " for all keys of a file (--max-iterations)";
}

std::string too_many_iterations_text(const gost_pbe_t& crypto) {
    return too_many_iterations_text(crypto.asked_iterations(), crypto.options().max_iterations);
}

} // namespace tool
