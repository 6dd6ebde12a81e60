// How failures are reported: on standard error in the form of a compiler, and as members of JSON results.
#pragma once

#include "tools/pkider/base/failure.h"
#include "tools/pkider/io/output.h"

#include <string>

namespace tool {

/// One line, `pkider: SOURCE: words`; a fault in a line of text is shown with the line, a caret and advice.
void report_failure(const std::string& source, const failure_t& failure);

/// {"message"}, for a fault in DER with "offset", "expected" and "found", for one in a name with "code" too; for a
/// fault in a line what json_line_fault gives.
json_t json_fault(const failure_t& failure);

/// Runs one piece of work among several: a failure is reported under its source and turned into its code.
template <typename Work>
exit_code_t guarded(const std::string& source, const Work& work) {
    try {
        return work();
    } catch (const failure_t& failure) {
        report_failure(source, failure);
        return failure.exit_code;
    }
}

/// The same, and in JSON the failure is a result: the members of `head`, which say what was worked on, and "fault".
template <typename Work>
exit_code_t guarded(const std::string& source, json_array_t& json, json_t head, const Work& work) {
    try {
        return work();
    } catch (const failure_t& failure) {
        report_failure(source, failure);
        head["fault"] = json_fault(failure);
        json.add(head);
        return failure.exit_code;
    }
}

} // namespace tool
