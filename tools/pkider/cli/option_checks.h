// Checks of what options are given.
#pragma once

#include <CLI/CLI.hpp>

#include <string>

namespace tool {

/// Refuses "-1", which CLI11 would read as the largest number.
inline CLI::Validator not_negative() {
    return {[](std::string& value) { return value.starts_with('-') ? value + " is below 0" : std::string(); }, ""};
}

/// Refuses an empty name: an unset variable of a script is not "no such option".
inline CLI::Validator not_empty() {
    return {[](std::string& value) { return value.empty() ? std::string("is empty") : std::string(); }, ""};
}

} // namespace tool
