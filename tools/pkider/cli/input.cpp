#include "tools/pkider/cli/input.h"

#include "tools/pkider/base/failure.h"
#include "tools/pkider/cli/faults.h"
#include "tools/pkider/formats/encodings.h"
#include "tools/pkider/io/file_view.h"
#include "tools/pkider/io/path_kind.h"
#include "tools/pkider/text/terminal_text.h"

#include <CLI/CLI.hpp>

#include <map>

namespace tool {
namespace {

const std::map<std::string, input_form_t> form_names = {{"pem", input_form_t::pem},
                                                        {"der", input_form_t::der},
                                                        {"hex", input_form_t::hex},
                                                        {"base64", input_form_t::base64}};

using block_work_t = std::function<void(block_t&)>;

bool is_hex_and_no_file(const std::string& argument) {
    const auto bytes = from_hex(argument);
    return bytes && !bytes->empty() && !file_exists(argument);
}

void visit_blocks(std::string_view bytes, const input_rules_t& rules, const block_work_t& work) {
    block_reader_t blocks(bytes, rules.form, rules.other_text);
    block_t block;
    while (blocks.next(block)) work(block);
}

template <typename Work>
exit_code_t guarded_file(const std::string& file, json_array_t& json, const Work& work) {
    const std::string name = input_name(file);
    return guarded(name, json, {{"file", json_text(name)}}, work);
}

/// The only one of the blocks whose label has this end. A block without a label may be anything.
block_t read_only(const std::string& file, input_form_t form, std::string_view label, const std::string& what) {
    block_t only;
    std::size_t found = 0;
    for_each_block(file, {.form = form}, [&](block_t& block) {
        if (block.line != 0 && !std::string_view(block.label).ends_with(label)) return;
        if (++found != 1) return;
        only = std::move(block);
        only.detach();
    });
    if (found == 0) throw data_fault_t("no " + what + " in it");
    if (found != 1) throw data_fault_t("more than one " + what + " in it");
    if (!only.fault.empty()) throw data_fault_t(only.fault);
    return only;
}

} // namespace

CLI::Option& add_file_arguments(CLI::App& command, std::vector<std::string>& files, const std::string& what) {
    return *command.add_option("FILE", files, what + "; - or none is standard input")->type_name("");
}

void add_file_argument(CLI::App& command, std::string& file, const std::string& what) {
    command.add_option("FILE", file, what + "; - is standard input")->required()->type_name("");
}

void add_input_option(CLI::App& command, input_form_t& form) {
    command
        .add_option_function<std::string>(
            "--in", [&form](const std::string& name) { form = form_names.at(name); },
            "Form of the input: pem, der, hex or base64; guessed without")
        ->check(CLI::IsMember(form_names))
        ->type_name("FORM");
}

input_t::input_t(const std::string& its_file, const block_t& block)
    : file(its_file),
      name(block_name(input_name(its_file), block)),
      label(block.label),
      line(block.line),
      form(block.form),
      der(block.der) {}

json_t json_source(const input_t& input) {
    json_t source = {{"file", json_text(input_name(input.file))}};
    if (input.line != 0) source["line"] = input.line;
    return source;
}

void print_heading(const input_t& input, std::size_t num_files) {
    if (num_files <= 1 && input.label.empty()) return;
    const std::string label = input.label.empty() ? "" : " " + input.label;
    print("# " + printable(input.name + label) + "\n");
}

exit_code_t for_each_file(const std::vector<std::string>& files, json_array_t& json,
                          const std::function<exit_code_t(const std::string&)>& work) {
    exit_code_t worst = exit_code_t::done;
    for (const std::string& file : or_standard_input(files)) {
        worst = worse(worst, guarded_file(file, json, [&] { return work(file); }));
    }
    return worst;
}

exit_code_t for_each_input(const std::vector<std::string>& files, const input_rules_t& rules, json_array_t& json,
                           const std::function<exit_code_t(const input_t&)>& work) {
    exit_code_t worst = exit_code_t::done;
    for (const std::string& file : or_standard_input(files)) {
        const bool is_hex = rules.arguments == arguments_t::files_or_hex && is_hex_and_no_file(file);
        const std::string source = is_hex ? "argument" : file;
        const auto work_on_block = [&](const block_t& block) {
            const input_t input(source, block);
            const exit_code_t code = guarded(input.name, json, json_source(input), [&] {
                if (!block.fault.empty()) throw data_fault_t(block.fault);
                return work(input);
            });
            worst = worse(worst, code);
        };
        const exit_code_t code = guarded_file(source, json, [&] {
            is_hex ? visit_blocks(file, rules, work_on_block) : for_each_block(file, rules, work_on_block);
            return exit_code_t::done;
        });
        worst = worse(worst, code);
    }
    return worst;
}

void for_each_block(const std::string& file, const input_rules_t& rules, const block_work_t& work) {
    const file_view_t view(file);
    visit_blocks(as_text(view.bytes()), rules, work);
}

block_t read_only_block(const std::string& file, input_form_t form) {
    return read_only(file, form, "", "block");
}

block_t read_only_key(const std::string& file, input_form_t form, std::string_view label) {
    return read_only(file, form, label, "private key");
}

} // namespace tool
