// Lines of text that a command works on: its arguments, or the lines of standard input.
#pragma once

#include "tools/pkider/exit_codes.h"
#include "tools/pkider/output.h"

#include <functional>
#include <string>
#include <vector>

namespace tool {

/// Works on every argument, or, when there is none or the only one is `-`, on every line of standard input. Lines end
/// with LF or CR LF. A line that holds a NUL is refused: the library reads up to the first one.
///
/// A failure is reported under the line's source (`argument:1`, `standard input:7`); in JSON it is also a result,
/// {"line", "fault"}. The worst code is the answer.
exit_code_t for_each_line(const std::vector<std::string>& arguments, json_array_t& json,
                          const std::function<exit_code_t(const std::string& line)>& work);

} // namespace tool
