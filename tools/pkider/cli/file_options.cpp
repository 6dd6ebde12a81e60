#include "tools/pkider/cli/file_options.h"

#include "tools/pkider/base/failure.h"
#include "tools/pkider/base/secret.h"
#include "tools/pkider/cli/input.h"
#include "tools/pkider/cli/option_checks.h"
#include "tools/pkider/formats/blocks.h"
#include "tools/pkider/formats/encodings.h"
#include "tools/pkider/io/output.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <map>

namespace tool {
namespace {

const std::map<std::string, written_form_t> form_names = {{"pem", written_form_t::pem}, {"der", written_form_t::der}};

void append_pem(std::string& out, const written_block_t& block) {
    const std::string label(block.label);
    std::string digits = to_base64(block.der, 64);
    const wipe_guard_t wipe_digits(digits);
    out.append("-----BEGIN " + label + "-----\n").append(digits).append("\n-----END " + label + "-----\n");
}

std::string encoded(const file_options_t& options, std::span<const written_block_t> blocks) {
    if (options.form == written_form_t::der) {
        if (blocks.size() != 1) {
            throw usage_fault_t(std::to_string(blocks.size()) +
                                " of them do not fit into one file of DER: choose one, or write PEM");
        }
        return std::string(blocks[0].der);
    }
    std::string text;
    std::size_t size = 0;
    for (const written_block_t& block : blocks) size += block.der.size() * 3 / 2 + 128;
    text.reserve(size); // a key must not remain in a buffer that was outgrown
    for (const written_block_t& block : blocks) append_pem(text, block);
    return text;
}

} // namespace

void add_file_options(CLI::App& command, file_options_t& options) {
    command.add_option("-o,--out", options.path, "File to write; standard output without")
        ->check(not_empty())
        ->type_name("FILE");
    command.add_flag("--force", options.force, "Replace the file if it is there");
    command
        .add_option_function<std::string>(
            "--form", [&options](const std::string& name) { options.form = form_names.at(name); },
            "Form of the output: pem or der; pem without")
        ->check(CLI::IsMember(form_names))
        ->type_name("FORM");
}

void add_reveal_option(CLI::App& command, file_options_t& options) {
    command.add_flag("--reveal", options.reveal, "Print private keys on standard output");
}

void add_conversion_options(CLI::App& command, conversion_options_t& options, const std::string& file) {
    add_file_argument(command, options.file, file);
    add_input_option(command, options.form);
    add_file_options(command, options.output);
}

bool is_secret(const written_block_t& block) {
    return std::string_view(block.label).ends_with("PRIVATE KEY");
}

void check_destination(const file_options_t& options, bool has_plain_key) {
    if (!options.path.empty()) return check_output_file(options.path, options.force);
    if (has_plain_key && !options.reveal)
        throw usage_fault_t("a private key is not printed: write it to a file with -o, or say --reveal");
}

void write_blocks(const file_options_t& options, std::span<const written_block_t> blocks,
                  const std::function<void(std::string_view der)>& look) {
    std::string bytes = encoded(options, blocks);
    const wipe_guard_t wipe_bytes(bytes);
    const auto read_back = [&](std::string_view on_disk) {
        const input_form_t form = options.form == written_form_t::pem ? input_form_t::pem : input_form_t::der;
        block_reader_t reader(on_disk, form);
        block_t read;
        bool equal = true;
        for (const written_block_t& block : blocks) {
            equal = equal && reader.next(read) && as_text(read.der) == block.der &&
                    (form == input_form_t::der || read.label == block.label);
            if (equal && look) look(as_text(read.der));
        }
        if (!equal || reader.next(read)) throw failure_t(exit_code_t::internal, "what was written does not read back");
    };

    if (options.path.empty()) {
        read_back(bytes);
        return options.form == written_form_t::der ? print_bytes(bytes, output_form_t::der) : print(bytes);
    }
    const bool secret = std::ranges::any_of(blocks, is_secret);
    write_file({options.path, secret ? file_mode_t::secret : file_mode_t::ordinary, options.force}, bytes,
               [&](std::span<const uint8_t> on_disk) {
                   read_back({reinterpret_cast<const char*>(on_disk.data()), on_disk.size()});
               });
}

} // namespace tool
