// CLI11 takes an argument in brackets, [a,b], for a list where several arguments are allowed, as a configuration file
// would write it. Here it is a name or a file like any other.
#pragma once

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace tool {

/// The arguments after the program's name. Those that begin with a bracket are marked, so that they stay unchanged.
std::vector<std::string> shield_brackets(int argc, char** argv);

/// Lets every option of the app and its subcommands take the mark off.
void unshield_brackets(CLI::App& app);

/// The words of an error without the marks of arguments that no option took.
std::string unshielded(std::string words);

} // namespace tool
