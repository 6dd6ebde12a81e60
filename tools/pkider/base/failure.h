// How a command fails: it throws one of these. What ends the whole command goes up to run_program; what concerns one
// input of several is caught by for_each_input, reported, and the others are still worked on.
//
//     throw data_fault_t{"no certificate in it"};            // exit 2
//     throw file_trouble_t{name, "No such file or directory"}; // exit 74, names the file itself
#pragma once

#include "tools/pkider/base/exit_codes.h"

#include <cstdint>
#include <stdexcept>
#include <string>

namespace tool {

/// A failure with its words, which may hold any bytes of the input: the report makes them safe to show.
struct failure_t : std::runtime_error {
    failure_t(exit_code_t code, const std::string& words) : std::runtime_error(words), exit_code(code) {}
    exit_code_t exit_code;
};

struct data_fault_t : failure_t {
    explicit data_fault_t(const std::string& words) : failure_t(exit_code_t::data_fault, words) {}
};

struct usage_fault_t : failure_t {
    explicit usage_fault_t(const std::string& words) : failure_t(exit_code_t::usage, words) {}
};

/// The words name the file.
struct file_trouble_t : failure_t {
    file_trouble_t(const std::string& file, const std::string& reason)
        : failure_t(exit_code_t::file_trouble, file + ": " + reason) {}
};

/// A fault in DER: its offset in bytes from the start of the DER, what was expected there and what is there.
struct der_fault_t : data_fault_t {
    der_fault_t(std::uint64_t offset_in_der, const std::string& what_was_expected, const std::string& what_is_there)
        : data_fault_t("offset " + std::to_string(offset_in_der) + ": expected " + what_was_expected + ", found " +
                       what_is_there),
          offset(offset_in_der),
          expected(what_was_expected),
          found(what_is_there) {}
    der_fault_t(std::uint64_t offset_in_der, const std::string& what_was_expected)
        : data_fault_t("offset " + std::to_string(offset_in_der) + ": expected " + what_was_expected),
          offset(offset_in_der),
          expected(what_was_expected) {}
    std::uint64_t offset;
    std::string expected;
    std::string found; // empty where that says nothing
};

} // namespace tool
