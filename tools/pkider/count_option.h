// Options that take a count.
#pragma once

#include <CLI/CLI.hpp>

namespace tool {

/// Refuses "-1", which CLI11 would read as the largest number.
inline CLI::Validator not_negative() {
    return CLI::Validator(CLI::NonNegativeNumber).description("");
}

} // namespace tool
