// The pattern of a command.
//
// A command is one file, commands/<name>.cpp, with one function register_<name>. A subcommand is a file too,
// commands/<command>_<name>.cpp, with register_<command>_<name>. commands.h declares the functions of both, and
// commands.cpp calls them. The function adds a subcommand to the app, puts its options into a record that lives as long
// as the command, and says with `when_chosen` what runs once the whole command line has been read:
//
//     struct options_t { std::vector<std::string> files; output_options_t output; map_options_t map; };
//
//     exit_code_t run(const options_t& options) { ... }                    // prints results with print()
//
//     void register_frob(CLI::App& app, chosen_command_t& chosen) {
//         CLI::App& command = add_command(app, "frob", "Frobs names", "  pkider frob FILE\n");
//         const auto options = std::make_shared<options_t>();
//         command.add_option("FILE", options->files, "Files to frob; - is standard input")->required();
//         when_chosen(command, chosen, [options] { return run(*options); });
//     }
//
// Results go to standard output (output.h), faults to standard error. A command answers with an exit code, or throws a
// failure_t (failure.h). Of several inputs (input.h, for_each_input) every one is worked on; the worst code is
// answered. Everything that comes out of the input is printed through printable() or printable_name()
// (terminal_text.h) or as JSON (output.h): no control character of a hostile name reaches a terminal.
#pragma once

#include "tools/pkider/base/exit_codes.h"

#include <CLI/CLI.hpp>

#include <functional>
#include <string>

namespace tool {

/// What runs after the command line has been read.
using chosen_command_t = std::function<exit_code_t()>;

/// Adds a subcommand. `examples`: one command line a line, indented by two blanks; every command has some.
inline CLI::App& add_command(CLI::App& app, const std::string& name, const std::string& summary,
                             const std::string& examples) {
    CLI::App& command = *app.add_subcommand(name, summary);
    command.footer("Examples:\n" + examples);
    return command;
}

/// The innermost subcommand named on the command line is the one that runs.
inline void when_chosen(CLI::App& command, chosen_command_t& chosen, chosen_command_t run) {
    command.callback([&chosen, run = std::move(run)] { chosen = run; });
}

} // namespace tool
