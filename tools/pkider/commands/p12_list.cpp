// pkider p12 list: the contents of the file, content by content and item by item.
#include "tools/pkider/base/count_text.h"
#include "tools/pkider/base/failure.h"
#include "tools/pkider/cli/p12_files.h"
#include "tools/pkider/cli/show_inputs.h"
#include "tools/pkider/commands/commands.h"
#include "tools/pkider/facts/p12_item.h"
#include "tools/pkider/facts/p12_outline.h"
#include "tools/pkider/facts/p12_reading.h"
#include "tools/pkider/formats/encodings.h"
#include "tools/pkider/io/output.h"
#include "tools/pkider/text/padded_text.h"
#include "tools/pkider/text/terminal_text.h"

#include <memory>

namespace tool {
namespace {

struct options_t : named_show_options_t {
    password_options_t password;
};

/// `shown`: ready to be shown.
void print_field(const char* label, const std::string& shown) {
    constexpr std::size_t label_width = 16;
    if (!shown.empty()) print("       " + padded(label, label_width) + shown + "\n");
}

void print_bag(const p12_bag_t& bag, oid_map_handle_t map) {
    const std::string number = bag.item == nullptr ? "-" : std::to_string(bag.number);
    std::string line =
        std::string(number.size() < 3 ? 3 - number.size() : 0, ' ') + number + "  " + bag_kind_text(bag.kind);
    line += bag.is_protected ? ", protected" : ", plain";
    if (bag.item == nullptr) {
        print(line + ", skipped: " + printable(bag.skipped) + "\n");
        return;
    }
    print(line + ", " + count_text(bag.item->data_len, "byte") + "\n");
    const p12_item_text_t text = describe_item(*bag.item, map);
    print_field(text.is_key ? "key" : "subject", text.is_key ? printable(text.what) : printable_name(text.what));
    print_field("friendly name", printable(text.friendly_name));
    print_field("local key id", text.local_key_id);
    print_field("encrypted by", printable(bag.protection));
}

void print_outline(const p12_outline_t& outline, oid_map_handle_t map) {
    std::size_t number = 0;
    for (const p12_content_t& content : outline.contents) {
        std::string line = "content " + std::to_string(++number) + (content.encrypted ? ", encrypted" : ", plain");
        if (!content.protection.empty()) line += " by " + content.protection;
        if (!content.skipped.empty()) line += ", skipped: " + content.skipped;
        print(printable(line) + "\n");
        for (const p12_bag_t& bag : content.bags) print_bag(bag, map);
    }
}

json_t json_or_null(const std::string& text) {
    return text.empty() ? json_t() : json_text(text);
}

json_t bag_json(const p12_bag_t& bag, oid_map_handle_t map) {
    json_t json = {{"kind", bag_kind_text(bag.kind)}, {"protected", bag.is_protected}};
    if (bag.item == nullptr) {
        json["skipped"] = json_text(bag.skipped);
        return json;
    }
    const p12_item_text_t text = describe_item(*bag.item, map);
    json["item"] = bag.number;
    json["size"] = bag.item->data_len;
    json[text.is_key ? "key" : "subject"] = json_or_null(text.what);
    json["friendly_name"] = json_or_null(text.friendly_name);
    json["local_key_id"] = json_or_null(text.local_key_id);
    json["encrypted_by"] = json_or_null(bag.protection);
    return json;
}

json_t outline_json(const p12_outline_t& outline, oid_map_handle_t map) {
    json_t contents = json_t::array();
    for (const p12_content_t& content : outline.contents) {
        json_t bags = json_t::array();
        for (const p12_bag_t& bag : content.bags) bags.push_back(bag_json(bag, map));
        contents.push_back({{"encrypted", content.encrypted},
                            {"encrypted_by", json_or_null(content.protection)},
                            {"skipped", json_or_null(content.skipped)},
                            {"bags", std::move(bags)}});
    }
    return contents;
}

exit_code_t run(const options_t& options) {
    const map_in_force_t map(options.map);
    password_once_t password(options.password);
    file_budget_t budget(options.password);
    return show_each(options, [&](const input_t& input, json_array_t& results) {
        const std::string name = input_name(input.file);
        const pfx_t pfx = read_pfx(input.der);
        gost_pbe_t crypto = make_pbe(options.password, password.get(name), default_iterations, &budget.of(input));
        const p12_reading_t reading = read_p12(input.der, crypto);
        const p12_outline_t outline = outline_p12(input.der, reading);
        const std::string mac = mac_text(pfx.mac, crypto.mac_form());
        if (options.output == output_form_t::json) {
            json_t json = json_source(input);
            json["mac"] = json_text(mac);
            json["contents"] = outline_json(outline, map.handle());
            results.add(json);
        } else {
            print(printable(name) + ": MAC " + mac + "\n");
            print_outline(outline, map.handle());
        }
        if (outline.fault) throw data_fault_t(*outline.fault); // the parts before it have been shown
        return exit_code_t::done;
    });
}

} // namespace

void register_p12_list(CLI::App& p12, chosen_command_t& chosen) {
    CLI::App& command = add_command(p12, "list", "Shows every key and certificate, and what was skipped and why",
                                    "  pkider p12 list key.p12\n"
                                    "  pkider p12 list --json --password-fd 3 key.p12 3< secret.txt\n");
    const auto options = std::make_shared<options_t>();
    add_named_show_options(command, *options, "PKCS#12 files");
    add_password_options(command, options->password);
    when_chosen(command, chosen, [options] { return run(*options); });
}

} // namespace tool
