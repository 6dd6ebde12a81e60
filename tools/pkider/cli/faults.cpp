#include "tools/pkider/cli/faults.h"

#include "tools/pkider/cli/caret.h"
#include "tools/pkider/explain/dn_fault.h"
#include "tools/pkider/explain/name_fault.h"
#include "tools/pkider/io/report.h"

namespace tool {

void report_failure(const std::string& source, const failure_t& failure) {
    if (const auto* const bad_line = dynamic_cast<const bad_line_t*>(&failure)) {
        write_to_stderr(show_line_fault(source, bad_line->line, bad_line->fault));
    } else if (const auto* const name = dynamic_cast<const name_fault_t*>(&failure)) {
        report_error(source + ": " + name->what() + " [code " + std::to_string(name->code) + "]");
    } else if (dynamic_cast<const file_trouble_t*>(&failure) != nullptr) {
        report_error(failure.what());
    } else {
        report_error(source + ": " + failure.what());
    }
}

json_t json_fault(const failure_t& failure) {
    if (const auto* const bad_line = dynamic_cast<const bad_line_t*>(&failure)) {
        return json_line_fault(bad_line->line, bad_line->fault);
    }
    json_t fault = json_t::object();
    if (const auto* const name = dynamic_cast<const name_fault_t*>(&failure)) fault["code"] = name->code;
    if (const auto* const der = dynamic_cast<const der_fault_t*>(&failure)) {
        fault["offset"] = der->offset;
        fault["expected"] = json_text(der->expected);
        if (!der->found.empty()) fault["found"] = json_text(der->found);
    }
    fault["message"] = json_text(failure.what());
    return fault;
}

} // namespace tool
