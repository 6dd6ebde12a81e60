#include "tools/pkider/cli/input.h"

#include "tools/pkider/base/failure.h"
#include "tools/pkider/cli/faults.h"
#include "tools/pkider/formats/encodings.h"

#include <CLI/CLI.hpp>

#include <map>

namespace tool {
namespace {

const std::map<std::string, input_form_t> form_names = {{"pem", input_form_t::pem},
                                                        {"der", input_form_t::der},
                                                        {"hex", input_form_t::hex},
                                                        {"base64", input_form_t::base64}};

bool is_hex_and_no_file(const std::string& argument) {
    const auto bytes = from_hex(argument);
    return bytes && !bytes->empty() && !file_exists(argument);
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

json_t json_source(const std::string& input, const block_t& block) {
    json_t source = {{"file", json_text(input)}};
    if (block.line != 0) source["line"] = block.line;
    return source;
}

exit_code_t for_each_input(const std::vector<std::string>& files, json_array_t& json,
                           const std::function<exit_code_t(const std::string&, std::string_view)>& work,
                           arguments_t arguments) {
    exit_code_t worst = exit_code_t::done;
    for (const std::string& file : or_standard_input(files)) {
        if (arguments == arguments_t::files_or_hex && is_hex_and_no_file(file)) {
            worst =
                worse(worst, guarded("argument", json, {{"file", "argument"}}, [&] { return work("argument", file); }));
            continue;
        }
        const std::string name = input_name(file);
        worst = worse(worst, guarded(name, json, {{"file", json_text(name)}},
                                     [&] { return work(name, read_file(file).text()); }));
    }
    return worst;
}

exit_code_t for_each_block(const std::vector<std::string>& files, input_form_t form, json_array_t& json,
                           const std::function<exit_code_t(const std::string&, const block_t&)>& work,
                           arguments_t arguments) {
    const auto work_on_blocks = [&](const std::string& name, std::string_view bytes) {
        exit_code_t worst = exit_code_t::done;
        for (const block_t& block : read_blocks(bytes, form)) {
            const exit_code_t code = guarded(block_name(name, block), json, json_source(name, block), [&] {
                if (!block.fault.empty()) throw data_fault_t(block.fault);
                return work(name, block);
            });
            worst = worse(worst, code);
        }
        return worst;
    };
    return for_each_input(files, json, work_on_blocks, arguments);
}

} // namespace tool
