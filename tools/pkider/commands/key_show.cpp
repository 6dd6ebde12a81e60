// pkider key show: a public key, alone or in a certificate or request, with all its numbers; private keys in
// key_show_private.cpp.
#include "tools/pkider/base/count_text.h"
#include "tools/pkider/base/failure.h"
#include "tools/pkider/cli/show_inputs.h"
#include "tools/pkider/commands/commands.h"
#include "tools/pkider/commands/key_show_private.h"
#include "tools/pkider/facts/certificate.h"
#include "tools/pkider/facts/file_kind.h"
#include "tools/pkider/facts/public_key.h"
#include "tools/pkider/facts/request.h"
#include "tools/pkider/formats/encodings.h"
#include "tools/pkider/io/output.h"
#include "tools/pkider/text/padded_text.h"
#include "tools/pkider/text/terminal_text.h"

#include <algorithm>
#include <memory>
#include <optional>

namespace tool {
namespace {

struct options_t : named_show_options_t {
    private_show_options_t private_keys;
};

/// The public key in what was given; none when a private key or no key at all was.
std::optional<public_key_t> find_public_key(bytes_t der, file_kind_t kind, oid_map_handle_t map) {
    der_cursor_t bytes(der);
    switch (kind) {
    case file_kind_t::public_key:
        return read_public_key(der, map);
    case file_kind_t::certificate:
        return read_public_key(read_certificate(bytes).public_key.whole, map);
    case file_kind_t::request:
        return read_public_key(read_request(bytes).public_key.whole, map);
    default:
        return std::nullopt;
    }
}

/// A long number or string in lines of hex, under its name.
std::string hex_block(const char* name, bytes_t bytes) {
    constexpr std::size_t bytes_a_line = 32;
    std::string text = "  " + std::string(name) + ", " + count_text(bytes.size(), "byte") + "\n";
    for (std::size_t at = 0; at < bytes.size(); at += bytes_a_line) {
        text += "    " + to_hex(as_text(bytes.subspan(at, std::min(bytes_a_line, bytes.size() - at)))) + "\n";
    }
    return text;
}

std::string key_text(const input_t& input, const public_key_t& key) {
    std::string text = printable(input.name) + ": " + printable(public_key_line(key)) + "\n";
    const auto add = [&text](const std::string& label, const std::string& value) {
        constexpr std::size_t label_width = 12;
        text += "  " + padded(label, label_width) + printable(value) + "\n";
    };
    add("algorithm", oid_label(key.algorithm));
    for (const fact_t& fact : public_key_details(key)) add(fact.name.label, fact.text);
    if (key.rsa) return text + hex_block("modulus", key.rsa->modulus);
    if (key.gost) return text + hex_block("key", key.gost->key);
    return text + hex_block("key", key.bits);
}

json_t key_json(const input_t& input, const public_key_t& key) {
    json_t json = json_source(input);
    json.update(public_key_json(key));
    if (key.rsa) {
        json["modulus"] = to_hex(as_text(key.rsa->modulus));
    } else {
        json["key"] = to_hex(as_text(key.gost ? key.gost->key : key.bits));
    }
    return json;
}

exit_code_t show(const input_t& input, const options_t& options, oid_map_handle_t map, json_array_t& results) {
    const file_kind_t kind = recognise(input.der);
    if (is_private_key(kind)) {
        if (options.output == output_form_t::json) {
            results.add(private_key_json(input, options.private_keys));
        } else {
            print(private_key_text(input, options.private_keys));
        }
        return exit_code_t::done;
    }
    const auto key = find_public_key(input.der, kind, map);
    if (!key) throw data_fault_t(std::string("no public key in it: ") + kind_name(kind));
    if (options.output == output_form_t::json) {
        results.add(key_json(input, *key));
    } else {
        print(key_text(input, *key));
    }
    return exit_code_t::done;
}

exit_code_t run(const options_t& options) {
    const map_in_force_t map(options.map);
    return show_each(options, [&](const input_t& input, json_array_t& results) {
        return show(input, options, map.handle(), results);
    });
}

} // namespace

void register_key_show(CLI::App& key, chosen_command_t& chosen) {
    CLI::App& command =
        add_command(key, "show", "Shows a public key, the one in a certificate or request, or a private key",
                    "  pkider key show public.pem\n"
                    "  pkider key show --json server.pem\n"
                    "  pkider key show --reveal --password-file secret.txt encrypted.pem\n");
    const auto options = std::make_shared<options_t>();
    add_named_show_options(command, *options, "Files");
    add_private_show_options(command, options->private_keys);
    when_chosen(command, chosen, [options] { return run(*options); });
}

} // namespace tool
