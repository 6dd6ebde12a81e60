// Runs a program as a child process and gives all that it did (POSIX).
//
//     const run_result_t result = run_program({PKIDER_PROGRAM, "dn", "encode", "CN=abc"});
//     EXPECT_EQ(result.exit_code, 0);
#pragma once

#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace pkider_test {

struct run_result_t {
    int exit_code = -1; // 128 + n when signal n ended it
    std::string out;
    std::string err;
};

std::ostream& operator<<(std::ostream& stream, const run_result_t& result);

struct run_options_t {
    std::string input = {};                                            // standard input
    std::vector<std::pair<std::string, std::string>> environment = {}; // set beside the inherited variables
    std::string directory = {};                                        // to run in; this process's own when empty
    std::string output_file = {};                                      // where standard output goes instead of `out`
};

/// The first argument is the program. NO_COLOR and TERM are not inherited.
run_result_t run_program(const std::vector<std::string>& arguments, const run_options_t& options = {});

/// The same with standard output and standard error on a terminal: both arrive in `out`, line ends as CR LF.
run_result_t run_on_terminal(const std::vector<std::string>& arguments, const run_options_t& options = {});

} // namespace pkider_test
