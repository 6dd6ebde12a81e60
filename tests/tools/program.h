// The built program for the tests.
#pragma once

#include "tests/support/run_program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pkider_test {

inline run_result_t run_pkider(std::vector<std::string> arguments, const run_options_t& options = {}) {
    arguments.insert(arguments.begin(), PKIDER_PROGRAM);
    return run_program(arguments, options);
}

inline run_result_t run_pkider_on_terminal(std::vector<std::string> arguments, const run_options_t& options = {}) {
    arguments.insert(arguments.begin(), PKIDER_PROGRAM);
    return run_on_terminal(arguments, options);
}

/// Names the tests of a table after its rows.
inline constexpr auto row_name = [](const auto& row) { return std::string(row.param.name); };

} // namespace pkider_test
