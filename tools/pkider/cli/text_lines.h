// Lines of text that a command works on: its arguments, with the lines of standard input in place of `-`.
//
// Lines of standard input end with LF or CR LF. A line that holds a NUL is refused: the library reads up to the first
// one. Every line is worked on: a failure is reported, in JSON it is also a result, and the worst code is the answer.
#pragma once

#include "tools/pkider/base/exit_codes.h"
#include "tools/pkider/io/output.h"

#include <functional>
#include <string>
#include <vector>

namespace tool {

using line_work_t = std::function<exit_code_t(const std::string& line)>;

/// Works on every line, on those of standard input when there is no argument. Lines are long, so a failure names their
/// place: `argument:1`, `standard input:7`. In JSON it is {"line", "fault"}.
exit_code_t for_each_line(const std::vector<std::string>& arguments, json_array_t& json, const line_work_t& work);

/// Works on every value. Values are short, so a failure names the value itself, after its place if that is a line of
/// standard input: `3.1`, `standard input:7: 3.1`. In JSON it is {"input", "fault"}.
exit_code_t for_each_value(const std::vector<std::string>& arguments, json_array_t& json, const line_work_t& work);

} // namespace tool
