// pkider map list: the entries of the map in force, in the order in which they take their keys.
#include "tools/pkider/cli/map_options.h"
#include "tools/pkider/cli/output_options.h"
#include "tools/pkider/commands/commands.h"
#include "tools/pkider/explain/map_reach.h"
#include "tools/pkider/facts/builtin_map.h"
#include "tools/pkider/formats/encodings.h"
#include "tools/pkider/io/file_input.h"
#include "tools/pkider/io/output.h"
#include "tools/pkider/text/terminal_text.h"

#include <algorithm>
#include <list>
#include <memory>

namespace tool {
namespace {

struct options_t {
    output_form_t form = output_form_t::text;
    map_options_t map;
};

struct map_text_t {
    std::string source;
    std::string text;
};

std::list<map_text_t> texts_in_force(const map_options_t& options) {
    const map_text_t builtin{"built-in", std::string(builtin_map_text)};
    if (options.none) return {};
    if (!options.map_file.empty())
        return {{input_name(options.map_file), std::string(read_file(options.map_file).text())}};
    if (options.config_dir.empty()) return {builtin};
    const std::string file = config_file_path(options.config_dir);
    return {builtin, {file, std::string(read_file(file).text())}};
}

std::string pad(const std::string& text, std::size_t width) {
    const std::size_t used = printable_width(text);
    return printable(text) + std::string(used < width ? width - used : 0, ' ');
}

std::string joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) text += (text.empty() ? "" : "; ") + word;
    return text;
}

exit_code_t list(const options_t& options) {
    const std::list<map_text_t> texts = texts_in_force(options.map);
    std::list<std::vector<map_line_t>> parts;
    map_reach_t reach;
    std::size_t oid_width = 0;
    std::size_t name_width = 0;
    for (const map_text_t& text : texts) {
        parts.push_back(read_map_lines(text.source, text.text));
        reach.add(parts.back());
        for (const map_line_t& line : parts.back()) {
            oid_width = std::max(oid_width, line.oid.size());
            name_width = std::max(name_width, printable_width(line.short_name));
        }
    }

    json_array_t json(options.form);
    for (const std::vector<map_line_t>& lines : parts) {
        for (const map_line_t& line : lines) {
            if (line.kind != map_line_kind_t::entry) continue;
            const std::vector<std::string> hidden =
                reach.is_shadowed(line) ? reach.explain(line) : std::vector<std::string>{};
            json.add({{"oid", json_text(line.oid)},
                      {"short_name", json_text(line.short_name)},
                      {"long_name", json_text(line.long_name)},
                      {"contents", to_hex(line.contents)},
                      {"source", json_text(line.source)},
                      {"line", line.number},
                      {"shadowed", !hidden.empty()}});
            if (options.form != output_form_t::text) continue;
            print(pad(std::string(line.oid), oid_width) + "  " + pad(line.short_name, name_width) + "  " +
                  printable(line.long_name) + (hidden.empty() ? "" : "  [" + printable(joined(hidden)) + "]") + "\n");
        }
    }
    json.end();
    return exit_code_t::done;
}

} // namespace

void register_map_list(CLI::App& map, chosen_command_t& chosen) {
    CLI::App& command = add_command(map, "list", "Lists the map in force: OID, short name, long name",
                                    "  pkider map list\n"
                                    "  pkider map list --config-dir /etc/vpn\n");
    const auto options = std::make_shared<options_t>();
    add_output_options(command, options->form, false);
    add_map_options(command, options->map);
    when_chosen(command, chosen, [options] { return list(*options); });
}

} // namespace tool
