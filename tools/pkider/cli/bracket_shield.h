// CLI11 takes an argument in brackets, [a,b], for a list where several arguments are allowed, as a configuration file
// would write it. Here it is a name or a file like any other.
#pragma once

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace tool {

/// Marks the arguments that begin with a bracket, so that they stay unchanged.
void shield_brackets(std::vector<std::string>& arguments);

/// Lets every option of the app and its subcommands take the mark off.
void unshield_brackets(CLI::App& app);

/// The words of an error without the marks of arguments that no option took.
std::string unshielded(std::string words);

} // namespace tool
