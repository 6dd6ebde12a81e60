// pkider dn reverse, get, has, order: what can be done with a name without encoding it.
#include "tools/pkider/cli/output_options.h"
#include "tools/pkider/cli/text_lines.h"
#include "tools/pkider/commands/dn_command.h"
#include "tools/pkider/explain/name_encoding.h"
#include "tools/pkider/text/terminal_text.h"

#include <pkider/dn.h>

#include <memory>

namespace tool {
namespace {

struct text_options_t {
    std::vector<std::string> lines;
    output_form_t form = output_form_t::text;
    std::string subject; // the type of `get`, the attributes of `has`
    bool pair = false;
};

const oid_map_handle_t no_map{};

// Prints `text`, or {"line", member: value}.
void print_result(const text_options_t& options, json_array_t& json, const std::string& line, const char* member,
                  const json_t& value, const std::string& text) {
    if (options.form == output_form_t::json) {
        json.add({{"line", json_text(line)}, {member, value}});
    } else {
        print(text);
    }
}

exit_code_t reverse(const text_options_t& options) {
    json_array_t json(options.form);
    return for_each_line(options.lines, json, [&](const std::string& line) {
        check_splits(line, no_map);
        std::string reversed = line;
        printable_dn_reverse(reversed.data());
        print_result(options, json, line, "name", json_text(reversed), printable_name(reversed) + "\n");
        return exit_code_t::done;
    });
}

exit_code_t get(const text_options_t& options) {
    json_array_t json(options.form);
    return for_each_line(options.lines, json, [&](const std::string& line) {
        check_splits(line, no_map);
        std::string value;
        const PrintableDnGetAttr mode = options.pair ? DN_GET_ATTR_PAIR : DN_GET_ATTR_VALUE;
        const bool found = printable_dn_get_attr(line.c_str(), options.subject.c_str(), value, mode);
        print_result(options, json, line, options.pair ? "pair" : "value", found ? json_text(value) : json_t(),
                     found ? printable_name(value) + "\n" : "");
        return found ? exit_code_t::done : exit_code_t::answer_is_no;
    });
}

exit_code_t answer(const text_options_t& options, json_array_t& json, const std::string& line, bool yes) {
    print_result(options, json, line, "answer", yes, yes ? "yes\n" : "no\n");
    return yes ? exit_code_t::done : exit_code_t::answer_is_no;
}

// The library compares the raw text, so a line that does not split is looked at too.
exit_code_t has(const text_options_t& options) {
    json_array_t json(options.form);
    return for_each_line(options.lines, json, [&](const std::string& line) {
        return answer(options, json, line, printable_dn_contain_attrs(line.c_str(), options.subject.c_str()));
    });
}

exit_code_t order(const text_options_t& options) {
    json_array_t json(options.form);
    return for_each_line(options.lines, json, [&](const std::string& line) {
        check_splits(line, no_map);
        return answer(options, json, line, printable_dn_C_before_CN(line.c_str()));
    });
}

void finish(CLI::App& command, chosen_command_t& chosen, const std::shared_ptr<text_options_t>& options,
            exit_code_t (*run)(const text_options_t&)) {
    add_line_arguments(command, options->lines);
    add_output_options(command, options->form, false);
    when_chosen(command, chosen, [options, run] { return run(*options); });
}

} // namespace

void register_dn_reverse(CLI::App& dn, chosen_command_t& chosen) {
    CLI::App& command = add_command(dn, "reverse", "Turns the order of the RDNs round, each as it is written",
                                    "  pkider dn reverse 'C=RU,O=Example,CN=Server'\n");
    finish(command, chosen, std::make_shared<text_options_t>(), reverse);
}

void register_dn_get(CLI::App& dn, chosen_command_t& chosen) {
    CLI::App& command =
        add_command(dn, "get", "Prints the first attribute of a type, as it is written; exit 1 when there is none",
                    "  pkider dn get O 'CN=Server,O=Example'\n"
                    "  pkider dn get --pair CN < names.txt\n");
    const auto options = std::make_shared<text_options_t>();
    command.add_option("TYPE", options->subject, "Attribute type, exactly as the line writes it")
        ->required()
        ->type_name("");
    command.add_flag("--pair", options->pair, "Print TYPE=value, not the value alone");
    finish(command, chosen, options, get);
}

void register_dn_has(CLI::App& dn, chosen_command_t& chosen) {
    CLI::App& command = add_command(dn, "has",
                                    "Says whether a name holds these RDNs in this order; exit 1 when not.\n"
                                    "The text is compared as it stands: not for access decisions",
                                    "  pkider dn has 'O=Example,C=RU' 'CN=Server,O=Example,C=RU'\n");
    const auto options = std::make_shared<text_options_t>();
    command.add_option("ATTRIBUTES", options->subject, "RDNs separated by ','")->required()->type_name("");
    finish(command, chosen, options, has);
}

void register_dn_order(CLI::App& dn, chosen_command_t& chosen) {
    CLI::App& command = add_command(dn, "order", "Says whether C stands before CN; exit 1 when not",
                                    "  pkider dn order 'C=RU,O=Example,CN=Server'\n");
    finish(command, chosen, std::make_shared<text_options_t>(), order);
}

} // namespace tool
