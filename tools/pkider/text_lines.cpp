#include "tools/pkider/dn_lines.h"

#include "tools/pkider/failure.h"
#include "tools/pkider/faults.h"
#include "tools/pkider/input.h"

namespace tool {
namespace {

struct line_t {
    std::string source;
    std::string text;
};

std::vector<line_t> lines_of_standard_input() {
    const std::string text = read_file("-");
    std::vector<line_t> lines;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        const bool carriage_return = end < text.size() && end > begin && text[end - 1] == '\r';
        lines.push_back({input_name("-") + ":" + std::to_string(lines.size() + 1),
                         text.substr(begin, end - begin - (carriage_return ? 1 : 0))});
        begin = end + 1;
    }
    return lines;
}

std::vector<line_t> collect_lines(const std::vector<std::string>& arguments) {
    if (arguments.empty() || (arguments.size() == 1 && arguments.front() == "-")) return lines_of_standard_input();
    std::vector<line_t> lines;
    for (const std::string& argument : arguments) {
        lines.push_back({"argument:" + std::to_string(lines.size() + 1), argument});
    }
    return lines;
}

void refuse_nul(const std::string& line) {
    const std::size_t nul = line.find('\0');
    if (nul != std::string::npos) throw data_fault_t("a NUL byte at offset " + std::to_string(nul) + " of the line");
}

} // namespace

exit_code_t for_each_line(const std::vector<std::string>& arguments, json_array_t& json,
                          const std::function<exit_code_t(const std::string&)>& work) {
    exit_code_t worst = exit_code_t::done;
    for (const line_t& line : collect_lines(arguments)) {
        const exit_code_t code = guarded(line.source, json, {{"line", json_text(line.text)}}, [&] {
            refuse_nul(line.text);
            return work(line.text);
        });
        worst = worse(worst, code);
    }
    json.end();
    return worst;
}

} // namespace tool
