// What a command reads: files or standard input, as PEM, DER, hex or base64.
//
// A file that holds DER is mapped, so that only the pages that are used are read. Of any other form one block
// at a time is decoded, and wiped after the work on it.
#pragma once

#include "tools/pkider/base/exit_codes.h"
#include "tools/pkider/formats/blocks.h"
#include "tools/pkider/io/file_input.h"
#include "tools/pkider/io/output.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace tool {

/// Adds `[FILE...]`: files, standard input when there is none.
CLI::Option& add_file_arguments(CLI::App& command, std::vector<std::string>& files, const std::string& what);

/// Adds `FILE`, which must be given.
void add_file_argument(CLI::App& command, std::string& file, const std::string& what);

/// Adds `--in FORM`.
void add_input_option(CLI::App& command, input_form_t& form);

/// One DER encoding that a command works on.
struct input_t {
    input_t(const std::string& its_file, const block_t& block);

    std::string file; ///< As given on the command line; "argument" for one that is hex digits itself.
    std::string name; ///< In messages: the file, for PEM with the line where the block begins.
    std::string label;
    std::size_t line; ///< Of the BEGIN line of a PEM block; 0 for any other form.
    input_form_t form;
    bytes_t der; ///< Until the work returns.
};

/// {"file"}, for PEM with "line": the first members of every result.
json_t json_source(const input_t& input);

/// Prints "# NAME LABEL" where results of several inputs follow one another: of several files, of PEM blocks.
void print_heading(const input_t& input, std::size_t num_files);

/// What an argument may be that names no file.
enum class arguments_t {
    files,       // nothing: the file is missing
    files_or_hex // the input itself, in hex digits
};

/// Which inputs a command takes.
struct input_rules_t {
    input_form_t form = input_form_t::guess;
    arguments_t arguments = arguments_t::files;
    other_text_t other_text = other_text_t::fails;
};

/// Works on every file, standard input when there is none. A failure of one is reported under its name, and as a result
/// in `json`; the others are still worked on. The worst code is the answer.
exit_code_t for_each_file(const std::vector<std::string>& files, json_array_t& json,
                          const std::function<exit_code_t(const std::string& file)>& work);

/// Works on every readable block of every file in the same way; a faulty block is reported.
exit_code_t for_each_input(const std::vector<std::string>& files, const input_rules_t& rules, json_array_t& json,
                           const std::function<exit_code_t(const input_t& input)>& work);

/// Hands over every block of one file, the faulty ones too. Throws file_trouble_t, and data_fault_t when there is none.
void for_each_block(const std::string& file, const input_rules_t& rules, const std::function<void(block_t&)>& work);

/// The only block of a file. Throws data_fault_t when there are more, or it is faulty.
block_t read_only_block(const std::string& file, input_form_t form);

/// The only private key of a file. `label`: of the PEM blocks that count, by its end.
block_t read_only_key(const std::string& file, input_form_t form, std::string_view label);

} // namespace tool
