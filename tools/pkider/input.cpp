#include "tools/pkider/input.h"

#include "tools/pkider/encodings.h"
#include "tools/pkider/failure.h"
#include "tools/pkider/faults.h"
#include "tools/pkider/utf8.h"

#include <CLI/CLI.hpp>

#include <unistd.h>

#include <map>
#include <optional>

namespace tool {
namespace {

const std::map<std::string, input_form_t> form_names = {{"pem", input_form_t::pem},
                                                        {"der", input_form_t::der},
                                                        {"hex", input_form_t::hex},
                                                        {"base64", input_form_t::base64}};

bool is_text(std::string_view bytes) {
    for (const char c : bytes) {
        const bool graphic = c >= 0x20 && c < 0x7F;
        if (!graphic && c != '\t' && c != '\r' && c != '\n') return false;
    }
    return true;
}

secret_t decode(std::optional<secret_t> decoded, const char* form) {
    if (!decoded) throw data_fault_t(std::string("not ") + form);
    if (decoded->empty()) throw data_fault_t("empty input");
    return std::move(*decoded);
}

std::vector<block_t> one_block(secret_t der) {
    std::vector<block_t> blocks(1);
    blocks[0].der = std::move(der);
    return blocks;
}

bool is_hex_and_no_file(const std::string& argument) {
    const auto bytes = from_hex(argument);
    return bytes && !bytes->empty() && access(argument.c_str(), F_OK) != 0;
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

input_form_t guess_form(std::string_view bytes) {
    // No text has a byte of the form 10xxxxxx behind a character of one byte, and so a long form of length shows DER
    // without a look at the rest of a file that may be large.
    if (bytes.size() >= 2 && static_cast<unsigned char>(bytes[0]) < 0x80 && (bytes[1] & 0xC0) == 0x80)
        return input_form_t::der;
    const std::string_view text = without_byte_order_mark(bytes);
    if (looks_like_pem(text)) return input_form_t::pem;
    if (!is_text(text)) return input_form_t::der;
    return from_hex(text) ? input_form_t::hex : input_form_t::base64;
}

std::vector<block_t> read_blocks(std::string_view bytes, input_form_t form) {
    if (bytes.empty()) throw data_fault_t("empty input");
    const bool guessed = form == input_form_t::guess;
    if (guessed) form = guess_form(bytes);
    const std::string_view text = without_byte_order_mark(bytes);
    switch (form) {
    case input_form_t::pem: {
        std::vector<block_t> blocks = read_pem(text);
        if (blocks.empty()) throw data_fault_t("no PEM block in it");
        return blocks;
    }
    case input_form_t::hex:
        return one_block(decode(from_hex(text), "hex"));
    case input_form_t::base64:
        return one_block(decode(from_base64(text), guessed ? "PEM, DER, hex or base64" : "base64"));
    default:
        return one_block(secret_t(bytes));
    }
}

block_t read_only_block(std::string_view bytes, input_form_t form) {
    std::vector<block_t> blocks = read_blocks(bytes, form);
    if (blocks.size() != 1) throw data_fault_t("more than one block in it");
    if (!blocks[0].fault.empty()) throw data_fault_t(blocks[0].fault);
    return std::move(blocks[0]);
}

std::string block_name(const std::string& input, const block_t& block) {
    return block.line == 0 ? input : input + ":" + std::to_string(block.line);
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
