#include "tools/pkider/cli/text_lines.h"

#include "tools/pkider/base/failure.h"
#include "tools/pkider/cli/faults.h"
#include "tools/pkider/io/file_input.h"

#include <algorithm>

namespace tool {
namespace {

struct line_t {
    std::string text;
    std::string place; // `standard input:7`; empty for an argument
};

void add_standard_input(std::vector<line_t>& lines) {
    const secret_t input = read_file("-");
    const std::string_view text = input.text();
    std::size_t number = 0;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        const bool carriage_return = end < text.size() && end > begin && text[end - 1] == '\r';
        lines.push_back({std::string(text.substr(begin, end - begin - (carriage_return ? 1 : 0))),
                         input_name("-") + ":" + std::to_string(++number)});
        begin = end + 1;
    }
}

std::vector<line_t> collect_lines(const std::vector<std::string>& arguments) {
    std::vector<line_t> lines;
    for (const std::string& argument : arguments) {
        if (argument == "-") {
            add_standard_input(lines);
        } else {
            lines.push_back({argument, {}});
        }
    }
    return lines;
}

void refuse_nul(const std::string& line) {
    const std::size_t nul = line.find('\0');
    if (nul != std::string::npos) throw data_fault_t("a NUL byte at offset " + std::to_string(nul) + " of the line");
}

exit_code_t work_on_line(const std::string& source, const std::string& line, const char* member, json_array_t& json,
                         const line_work_t& work) {
    return guarded(source, json, {{member, json_text(line)}}, [&] {
        refuse_nul(line);
        return work(line);
    });
}

} // namespace

exit_code_t for_each_line(const std::vector<std::string>& arguments, json_array_t& json, const line_work_t& work) {
    exit_code_t worst = exit_code_t::done;
    std::size_t number = 0;
    for (const line_t& line : collect_lines(or_standard_input(arguments))) {
        const std::string source = line.place.empty() ? "argument:" + std::to_string(++number) : line.place;
        worst = worse(worst, work_on_line(source, line.text, "line", json, work));
    }
    json.end();
    return worst;
}

exit_code_t for_each_value(const std::vector<std::string>& arguments, json_array_t& json, const line_work_t& work) {
    exit_code_t worst = exit_code_t::done;
    for (const line_t& line : collect_lines(arguments)) {
        const std::string value = line.text.empty() ? "''" : line.text;
        const std::string source = line.place.empty() ? value : line.place + ": " + value;
        worst = worse(worst, work_on_line(source, line.text, "input", json, work));
    }
    json.end();
    return worst;
}

} // namespace tool
