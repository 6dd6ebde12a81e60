// What a command reads: files or standard input, as PEM, DER, hex or base64.
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
