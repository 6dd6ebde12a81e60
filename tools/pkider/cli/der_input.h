// The DER of files without a copy of it: a file that holds DER is mapped, so that only the pages that are looked at are
// ever read. Other forms are decoded as input.h does it.
#pragma once

#include "tools/pkider/base/exit_codes.h"
#include "tools/pkider/cli/input.h"
#include "tools/pkider/formats/der_cursor.h"
#include "tools/pkider/io/file_view.h"

#include <functional>
#include <string>
#include <vector>

namespace tool {

/// One DER encoding out of a file.
struct der_input_t {
    std::string name;     ///< In messages: the file, for PEM with the line where the block begins.
    std::string file;     ///< As given on the command line.
    std::size_t line = 0; ///< Of the BEGIN line of a PEM block; 0 for any other form.
    std::string label;    ///< Of a PEM block.
    input_form_t form = input_form_t::der;
    bytes_t der;
};

/// {"file"}, for PEM with "line": the members in front of every result.
json_t json_source(const der_input_t& input);

/// Prints "# NAME LABEL" where results of several inputs follow one another: of several files, of PEM blocks.
void print_heading(const der_input_t& input, std::size_t num_files);

/// The size for the functions that take 32 bits of it. Throws data_fault_t when there is more.
std::uint32_t size32(bytes_t bytes);

/// What becomes of a text that is not PEM, hex or base64 when the form is guessed.
enum class other_text_t {
    fails, ///< It is a failure.
    passes ///< It is handed over as it stands.
};

/// Works on every file, standard input when there is none, and in PEM on every readable block. Failures are reported
/// under the input's name and as results in `json`, the others are still worked on; the worst code is the answer.
exit_code_t for_each_der(const std::vector<std::string>& files, input_form_t form, json_array_t& json,
                         const std::function<exit_code_t(const der_input_t&)>& work,
                         other_text_t other_text = other_text_t::fails);

} // namespace tool
