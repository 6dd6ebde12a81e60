// What a command reads: files or standard input, as PEM, DER, hex or base64.
#pragma once

#include "tools/pkider/exit_codes.h"
#include "tools/pkider/file_input.h"
#include "tools/pkider/output.h"
#include "tools/pkider/pem.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace tool {

enum class input_form_t { guess, pem, der, hex, base64 };

/// Adds `[FILE...]`: files, standard input when there is none.
CLI::Option& add_file_arguments(CLI::App& command, std::vector<std::string>& files, const std::string& what);

/// Adds `FILE`, which must be given.
void add_file_argument(CLI::App& command, std::string& file, const std::string& what);

/// Adds `--in FORM`.
void add_input_option(CLI::App& command, input_form_t& form);

/// PEM when a line begins a block; bytes that are no text are DER; else hex when all digits are hex digits; else
/// base64. A byte order mark in front of a text is none of it.
input_form_t guess_form(std::string_view bytes);

/// The blocks of an input: one, or as many as a PEM text holds. Throws data_fault_t when there is none.
std::vector<block_t> read_blocks(std::string_view bytes, input_form_t form);

/// The block of an input that holds no other. Throws data_fault_t when there are more, or it is faulty.
block_t read_only_block(std::string_view bytes, input_form_t form);

/// How a block is called in messages: the input's name, for PEM with the line where the block begins.
std::string block_name(const std::string& input, const block_t& block);

/// {"file"}, for PEM with "line".
json_t json_source(const std::string& input, const block_t& block);

/// What an argument may be that names no file.
enum class arguments_t {
    files,       // nothing: the file is missing
    files_or_hex // the input itself, in hex digits
};

/// Works on every file, standard input when there is none. A failure of one is reported under the name of its input and
/// the others are still worked on. The worst code is the answer.
exit_code_t for_each_input(const std::vector<std::string>& files, json_array_t& json,
                           const std::function<exit_code_t(const std::string& name, std::string_view bytes)>& work,
                           arguments_t arguments = arguments_t::files);

/// Works on every readable block of every file in the same way; a faulty block is reported.
exit_code_t for_each_block(const std::vector<std::string>& files, input_form_t form, json_array_t& json,
                           const std::function<exit_code_t(const std::string& name, const block_t& block)>& work,
                           arguments_t arguments = arguments_t::files);

} // namespace tool
