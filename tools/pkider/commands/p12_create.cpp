// pkider p12 create: a file from keys and certificates.
#include "tools/pkider/base/failure.h"
#include "tools/pkider/cli/faults.h"
#include "tools/pkider/cli/file_options.h"
#include "tools/pkider/cli/input.h"
#include "tools/pkider/cli/option_checks.h"
#include "tools/pkider/cli/pbe_options.h"
#include "tools/pkider/commands/commands.h"
#include "tools/pkider/facts/p12_item.h"
#include "tools/pkider/facts/p12_reading.h"
#include "tools/pkider/facts/private_key.h"
#include "tools/pkider/formats/encodings.h"
#include "tools/pkider/formats/utf16.h"

#include <algorithm>
#include <memory>

namespace tool {
namespace {

/// A file of the command line, with what follows it there.
struct source_t {
    pkcs12_item_type_t type;
    std::string path;
    std::string friendly_name; // UTF-16, as it is stored
    std::string local_key_id;
};

struct options_t {
    std::vector<source_t> sources; // in the order of the command line
    std::string path;
    bool force = false;
    bool plain_certs = false;
    uint32_t iterations = default_iterations;
    password_options_t password;
};

/// Keys and certificates that were read, and the record that points into them.
struct items_t {
    std::list<secret_t> data;
    pkcs12_easy_t content;
};

void check_item(pkcs12_item_type_t type, const block_t& block) {
    if (!block.fault.empty()) throw data_fault_t(block.fault);
    if (type == PKCS12_ITEM_CERT) {
        certificate_subject(block.der, {});
        return;
    }
    if (block.label == "ENCRYPTED PRIVATE KEY")
        throw data_fault_t("the key is encrypted; 'pkider key decrypt' opens it");
    read_private_key(block.der);
}

/// Whether a block of a file belongs to what is taken from it: a PEM file may hold both kinds.
bool is_of_type(pkcs12_item_type_t type, const block_t& block) {
    if (block.line == 0) return true;
    return block.label.ends_with("PRIVATE KEY") == (type == PKCS12_ITEM_KEY);
}

void add_item(const source_t& source, bool first, secret_t der, const options_t& options, items_t& items) {
    items.data.push_back(std::move(der));
    const bytes_t data = items.data.back().view();
    pkcs12_item_t item;
    item.type = source.type;
    item.data = data.data();
    item.data_len = data.size();
    if (first) { // the names are the options': they outlive the record
        item.friendly_name = as_bytes(source.friendly_name).data();
        item.friendly_name_len = source.friendly_name.size();
        item.local_key_id = as_bytes(source.local_key_id).data();
        item.local_key_id_len = source.local_key_id.size();
    }
    const bool plain = source.type == PKCS12_ITEM_CERT && options.plain_certs;
    (plain ? items.content.plain_items : items.content.protected_items).push_back(item);
}

void add_source(const source_t& source, const options_t& options, items_t& items) {
    std::size_t added = 0;
    for_each_block(source.path, {}, [&](block_t& block) {
        if (!is_of_type(source.type, block)) return;
        check_item(source.type, block);
        block.detach();
        add_item(source, added++ == 0, std::move(block.decoded), options, items);
    });
    if (added == 0)
        throw data_fault_t(source.type == PKCS12_ITEM_KEY ? "no private key in it" : "no certificate in it");
}

bool equal_spans(const uint8_t* left, uint64_t left_len, const uint8_t* right, uint64_t right_len) {
    return std::ranges::equal(bytes_t(left, left_len), bytes_t(right, right_len));
}

bool equal_items(const std::list<pkcs12_item_t>& left, const std::list<pkcs12_item_t>& right) {
    return std::ranges::equal(left, right, [](const pkcs12_item_t& a, const pkcs12_item_t& b) {
        return a.type == b.type && equal_spans(a.data, a.data_len, b.data, b.data_len) &&
               equal_spans(a.friendly_name, a.friendly_name_len, b.friendly_name, b.friendly_name_len) &&
               equal_spans(a.local_key_id, a.local_key_id_len, b.local_key_id, b.local_key_id_len);
    });
}

/// The library shortens lengths of 65,536 and more that have a zero byte: such a file would open nowhere.
[[noreturn]] void refuse_unreadable() {
    throw data_fault_t("not written: it would not read back, because a part of it that is 65536 bytes long or more has "
                       "a length that cannot be stored; another friendly name, or a certificate more or less, changes "
                       "the length");
}

std::string build(const pkcs12_easy_t& content, gost_pbe_t& crypto) {
    std::string pfx;
    try {
        asn_write_pkcs12_easy(content, &crypto, pfx);
    } catch (const pbe_error_t& error) {
        if (error.fault == pbe_fault_t::malformed) refuse_unreadable(); // an inner length was shortened already
        throw;
    }
    return pfx;
}

void compare(const pkcs12_easy_t& meant, bytes_t on_disk, gost_pbe_t& crypto) {
    bool equal = false;
    try {
        const p12_reading_t reading = read_p12(on_disk, crypto);
        equal = reading.complete && equal_items(reading.content.plain_items, meant.plain_items) &&
                equal_items(reading.content.protected_items, meant.protected_items);
    } catch (const failure_t&) {
    }
    if (!equal) refuse_unreadable();
}

exit_code_t run(const options_t& options) {
    if (options.sources.empty()) throw usage_fault_t("nothing to put into the file: give --key or --cert");
    check_iteration_count(options.password, options.iterations, 2); // cipher and MAC
    check_output_file(options.path, options.force);
    items_t items;
    exit_code_t worst = exit_code_t::done;
    for (const source_t& source : options.sources) {
        worst = worse(worst, guarded(input_name(source.path), [&] {
                          add_source(source, options, items);
                          return exit_code_t::done;
                      }));
    }
    if (worst != exit_code_t::done) return worst; // nothing is written with a part missing

    secret_t password = read_password(options.password, "New password of " + options.path, password_use_t::make_new);
    gost_pbe_t crypto = make_pbe(options.password, std::move(password), options.iterations);
    write_file({options.path, file_mode_t::secret, options.force}, build(items.content, crypto),
               [&](bytes_t on_disk) { compare(items.content, on_disk, crypto); });
    return exit_code_t::done;
}

source_t& latest(options_t& options, const char* option) {
    if (options.sources.empty())
        throw CLI::ValidationError(option, "must follow the --key or --cert that it belongs to");
    return options.sources.back();
}

void add_source_options(CLI::App& command, options_t& options) {
    const auto add = [&](const char* name, const char* type, const char* help,
                         const std::function<void(const std::string&)>& take) {
        command.add_option_function<std::string>(name, take, help)->type_name(type)->trigger_on_parse();
    };
    add("--key", "FILE", "Private key, PEM or DER (PKCS#8, not encrypted)", [&](const std::string& path) {
        options.sources.push_back({PKCS12_ITEM_KEY, path, {}, {}});
    });
    add("--cert", "FILE", "Certificates, PEM or DER", [&](const std::string& path) {
        options.sources.push_back({PKCS12_ITEM_CERT, path, {}, {}});
    });
    add("--name", "TEXT", "Friendly name of the key or (first) certificate before it", [&](const std::string& text) {
        std::string utf16;
        if (!append_utf16be(text, utf16)) throw CLI::ValidationError("--name", "is not UTF-8");
        latest(options, "--name").friendly_name = utf16;
    });
    add("--id", "HEX", "Local key id of the key or (first) certificate before it", [&](const std::string& text) {
        const auto id = from_hex(text);
        if (!id || id->empty()) throw CLI::ValidationError("--id", "is not hex digits");
        latest(options, "--id").local_key_id = id->text();
    });
}

} // namespace

void register_p12_create(CLI::App& p12, chosen_command_t& chosen) {
    CLI::App& command =
        add_command(p12, "create", "Builds a file from keys and certificates; keys are always protected",
                    "  pkider p12 create -o key.p12 --key key.pem --name 'My key' --id 01 --cert cert.pem --id 01\n"
                    "  pkider p12 create -o certs.p12 --cert chain.pem --plain-certs --password-file secret.txt\n");
    const auto options = std::make_shared<options_t>();
    add_source_options(command, *options);
    command.add_option("-o,--out", options->path, "File to write")->check(not_empty())->type_name("FILE")->required();
    command.add_flag("--force", options->force, "Replace the file if it is there");
    command.add_flag("--plain-certs", options->plain_certs, "Leave certificates unencrypted");
    add_iterations_option(command, options->iterations);
    add_password_options(command, options->password);
    when_chosen(command, chosen, [options] { return run(*options); });
}

} // namespace tool
