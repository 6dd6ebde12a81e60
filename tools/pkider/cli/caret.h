// Shows a fault in a line of text in the manner of a compiler:
//
//     pkider: argument:1:5: ';' is not escaped in an unquoted value [code 10]
//       CN=a;b
//           ^
//       write '\;' or put the value in double quotes
#pragma once

#include "tools/pkider/explain/dn_fault.h"
#include "tools/pkider/io/output.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace tool {

/// Column on a terminal, from 1, of the character at a byte offset of a line that is shown with printable_name().
std::size_t column_of(std::string_view line, std::size_t offset);

/// The two lines with text and caret. Of a long line only the surroundings of the caret are shown.
std::string show_caret(std::string_view line, std::size_t offset);

/// `source` names where the line comes from: `argument:1`, `standard input:7`.
std::string show_line_fault(const std::string& source, std::string_view line, const line_fault_t& fault);

/// {"code", "position" (the library's), "offset", "column", "message", "advice"}
json_t json_line_fault(std::string_view line, const line_fault_t& fault);

} // namespace tool
