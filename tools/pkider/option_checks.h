// Options that take a count.
#pragma once

#include <CLI/CLI.hpp>

namespace tool {

/// Refuses "-1", which CLI11 would read as the largest number.
inline CLI::Validator not_negative() {
    return {[](std::string& value) { return value.starts_with('-') ? value + " is below 0" : std::string(); }, ""};
}

} // namespace tool
