#include "tools/pkider/program.h"

#include "tools/pkider/base/failure.h"
#include "tools/pkider/cli/bracket_shield.h"
#include "tools/pkider/commands/commands.h"
#include "tools/pkider/io/output.h"
#include "tools/pkider/io/report.h"

#include <algorithm>
#include <new>
#include <sstream>

namespace tool {
namespace {

constexpr const char* description = "Reads and writes the DER of public keys, names and containers.";

constexpr const char* exit_codes =
    "Exit codes: 0 done, 1 the answer is no, 2 fault in the data, 3 wrong password or MAC,\n"
    "64 wrong command line, 70 internal fault, 74 file trouble.";

exit_code_t run_chosen(const chosen_command_t& chosen) {
    try {
        const exit_code_t code = chosen();
        flush_output();
        return code;
    } catch (const failure_t& failure) {
        report_error(failure.what());
        return failure.exit_code;
    } catch (const std::bad_alloc&) {
        report_error("out of memory");
    } catch (const std::exception& other) {
        report_error(other.what());
    }
    return exit_code_t::internal;
}

/// A help, the version, or what is wrong with the command line.
std::string text_of(const CLI::App& app, const CLI::Error& error) {
    std::ostringstream text;
    app.exit(error, text, text);
    return text.str();
}

} // namespace

exit_code_t run_program(std::vector<std::string> arguments) {
    CLI::App app{description, "pkider"};
    app.footer(exit_codes);
    app.set_version_flag("--version", "pkider " PKIDER_VERSION);
    app.require_subcommand(1);
    app.failure_message([](const CLI::App*, const CLI::Error& error) {
        return format_error(unshielded(error.what())) + "Run with --help for more information.\n";
    });

    chosen_command_t chosen;
    register_commands(app, chosen);
    unshield_brackets(app);
    try {
        shield_brackets(arguments);
        std::ranges::reverse(arguments); // as parse wants them
        app.parse(std::move(arguments));
    } catch (const CLI::Success& help_or_version) {
        return run_chosen([&] {
            print(text_of(app, help_or_version));
            return exit_code_t::done;
        });
    } catch (const CLI::ParseError& error) {
        write_to_stderr(text_of(app, error));
        return exit_code_t::usage;
    }
    return run_chosen(chosen);
}

} // namespace tool
