// pkider p12 extract: keys and certificates out of the file, as PEM or DER.
#include "tools/pkider/base/failure.h"
#include "tools/pkider/cli/faults.h"
#include "tools/pkider/cli/file_options.h"
#include "tools/pkider/cli/input.h"
#include "tools/pkider/cli/option_checks.h"
#include "tools/pkider/cli/pbe_options.h"
#include "tools/pkider/commands/commands.h"
#include "tools/pkider/facts/p12_item.h"
#include "tools/pkider/facts/p12_outline.h"
#include "tools/pkider/facts/p12_reading.h"
#include "tools/pkider/io/report.h"

#include <algorithm>
#include <memory>

namespace tool {
namespace {

struct options_t : conversion_options_t {
    password_options_t password;
    bool keys = false, certs = false; // neither: both
    std::vector<std::size_t> items;   // by their numbers in the list; empty: all
};

bool is_wanted(const options_t& options, const p12_bag_t& bag) {
    if (!options.items.empty() && std::ranges::find(options.items, bag.number) == options.items.end()) return false;
    if (options.keys == options.certs) return true;
    return bag.item->type == PKCS12_ITEM_KEY ? options.keys : options.certs;
}

/// Says what is missing from the output because it could not be read.
void note_skipped(const p12_outline_t& outline) {
    std::size_t number = 0;
    for (const p12_content_t& content : outline.contents) {
        ++number;
        if (!content.skipped.empty()) report_note("content " + std::to_string(number) + " skipped: " + content.skipped);
        for (const p12_bag_t& bag : content.bags) {
            if (!bag.skipped.empty()) {
                report_note(std::string(bag_kind_text(bag.kind)) + " in content " + std::to_string(number) +
                            " skipped: " + bag.skipped);
            }
        }
    }
}

bool has_item(const p12_outline_t& outline, std::size_t number) {
    return std::ranges::any_of(outline.contents, [&](const p12_content_t& content) {
        return std::ranges::any_of(content.bags,
                                   [&](const p12_bag_t& bag) { return bag.item != nullptr && bag.number == number; });
    });
}

std::vector<written_block_t> choose(const options_t& options, const p12_outline_t& outline) {
    for (const std::size_t number : options.items) {
        if (!has_item(outline, number)) throw data_fault_t("there is no item " + std::to_string(number));
    }
    std::vector<written_block_t> chosen;
    for (const p12_content_t& content : outline.contents) {
        for (const p12_bag_t& bag : content.bags) {
            if (bag.item == nullptr || !is_wanted(options, bag)) continue;
            const bool is_key = bag.item->type == PKCS12_ITEM_KEY;
            chosen.push_back({is_key ? "PRIVATE KEY" : "CERTIFICATE", as_text(item_data(*bag.item))});
        }
    }
    return chosen;
}

exit_code_t extract(const options_t& options, const std::string& name, bytes_t file) {
    read_pfx(file); // before a password is asked for
    gost_pbe_t crypto = make_pbe(options.password, read_password(options.password, "Password of " + name));
    const p12_reading_t reading = read_p12(file, crypto);
    const p12_outline_t outline = outline_p12(file, reading);
    if (outline.fault) throw data_fault_t(*outline.fault);

    note_skipped(outline);
    const std::vector<written_block_t> chosen = choose(options, outline);
    if (chosen.empty()) throw data_fault_t("nothing in it to extract");
    check_destination(options.output, std::ranges::any_of(chosen, is_secret));
    write_blocks(options.output, chosen);
    return exit_code_t::done;
}

exit_code_t run(const options_t& options) {
    if (!options.output.path.empty()) check_output_file(options.output.path, options.output.force);
    const std::string name = input_name(options.file);
    return guarded(name, [&] { return extract(options, name, read_only_block(options.file, options.form).der); });
}

} // namespace

void register_p12_extract(CLI::App& p12, chosen_command_t& chosen) {
    CLI::App& command = add_command(p12, "extract", "Writes keys and certificates as PEM or DER",
                                    "  pkider p12 extract key.p12 --certs\n"
                                    "  pkider p12 extract key.p12 -o key-and-certs.pem\n"
                                    "  pkider p12 extract key.p12 --item 2 --form der -o cert.der\n");
    const auto options = std::make_shared<options_t>();
    add_file_argument(command, options->file, "PKCS#12 file");
    command.add_flag("--keys", options->keys, "Private keys");
    command.add_flag("--certs", options->certs, "Certificates");
    command.add_option("--item", options->items, "Items with these numbers, as 'pkider p12 list' shows them")
        ->check(not_negative())
        ->type_name("N");
    add_file_options(command, options->output);
    add_reveal_option(command, options->output);
    add_input_option(command, options->form);
    add_password_options(command, options->password);
    when_chosen(command, chosen, [options] { return run(*options); });
}

} // namespace tool
