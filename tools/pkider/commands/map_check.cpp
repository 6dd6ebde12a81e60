// pkider map check: how the library reads every line of a configuration file; the library itself reports nothing.
#include "tools/pkider/cli/input.h"
#include "tools/pkider/cli/output_options.h"
#include "tools/pkider/commands/commands.h"
#include "tools/pkider/explain/map_reach.h"
#include "tools/pkider/facts/builtin_map.h"
#include "tools/pkider/formats/encodings.h"
#include "tools/pkider/io/output.h"
#include "tools/pkider/text/terminal_text.h"

#include <memory>

namespace tool {
namespace {

struct options_t {
    std::vector<std::string> files;
    output_form_t form = output_form_t::text;
    bool alone = false;
};

struct counts_t {
    std::size_t kept = 0, shadowed = 0, dropped = 0, other = 0;
};

struct verdict_t {
    const char* state;
    std::vector<std::string> words;
};

std::vector<std::string> joined(std::vector<std::string> first, const std::vector<std::string>& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

verdict_t judge(const map_line_t& line, const map_reach_t& reach, counts_t& counts) {
    verdict_t verdict{nullptr, line.notes};
    switch (line.kind) {
    case map_line_kind_t::other:
        ++counts.other;
        verdict.state = "no entry";
        break;
    case map_line_kind_t::dropped:
        ++counts.dropped;
        verdict.state = "dropped";
        verdict.words = joined({line.reason}, line.notes);
        break;
    case map_line_kind_t::entry:
        const bool shadowed = reach.is_shadowed(line);
        ++(shadowed ? counts.shadowed : counts.kept);
        verdict.state = shadowed ? "shadowed" : "kept";
        if (shadowed) verdict.words = joined(reach.explain(line), line.notes);
        break;
    }
    return verdict;
}

json_t json_verdict(const map_line_t& line, const verdict_t& verdict) {
    json_t result = {{"file", json_text(line.source)},
                     {"line", line.number},
                     {"text", json_text(line.text)},
                     {"state", verdict.state}};
    if (line.kind == map_line_kind_t::entry) {
        result["oid"] = json_text(line.oid);
        result["short_name"] = json_text(line.short_name);
        result["long_name"] = json_text(line.long_name);
        result["contents"] = to_hex(line.contents);
    }
    result["notes"] = json_t::array();
    for (const std::string& words : verdict.words) result["notes"].push_back(json_text(words));
    return result;
}

exit_code_t check_file(const std::string& file, std::string_view text, const options_t& options, json_array_t& json) {
    const std::vector<map_line_t> builtin =
        read_map_lines("built-in", options.alone ? std::string_view() : builtin_map_text);
    const std::vector<map_line_t> lines = read_map_lines(file, text);
    map_reach_t reach;
    reach.add(builtin);
    reach.add(lines);

    counts_t counts;
    for (const map_line_t& line : lines) {
        const verdict_t verdict = judge(line, reach, counts);
        json.add(json_verdict(line, verdict));
        if (options.form != output_form_t::text) continue;
        print(printable(file) + ":" + std::to_string(line.number) + ": " + verdict.state + ": " + printable(line.text) +
              "\n");
        for (const std::string& words : verdict.words) print("  " + printable(words) + "\n");
    }
    if (options.form == output_form_t::text) {
        print("lines: " + std::to_string(lines.size()) + ", kept: " + std::to_string(counts.kept) +
              ", shadowed: " + std::to_string(counts.shadowed) + ", dropped: " + std::to_string(counts.dropped) +
              ", no entry: " + std::to_string(counts.other) + "\n");
    }
    return counts.shadowed + counts.dropped == 0 ? exit_code_t::done : exit_code_t::answer_is_no;
}

exit_code_t check(const options_t& options) {
    json_array_t json(options.form);
    const exit_code_t code = for_each_file(options.files, json, [&](const std::string& file) {
        return check_file(input_name(file), read_file(file).text(), options, json);
    });
    json.end();
    return code;
}

} // namespace

void register_map_check(CLI::App& map, chosen_command_t& chosen) {
    CLI::App& command = add_command(map, "check",
                                    "Says of every line of a configuration file what becomes of it: kept, shadowed,\n"
                                    "dropped, no entry. Exit 1 when a line is shadowed or dropped",
                                    "  pkider map check /etc/vpn/vpnoids.cfg\n"
                                    "  pkider map check --alone names.txt\n");
    const auto options = std::make_shared<options_t>();
    add_file_arguments(command, options->files, "Files to check");
    command.add_flag("--alone", options->alone, "Check the file for --map, not as an addition to the built-in names");
    add_output_options(command, options->form, false);
    when_chosen(command, chosen, [options] { return check(*options); });
}

} // namespace tool
