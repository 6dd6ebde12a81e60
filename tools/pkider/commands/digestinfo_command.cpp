// pkider digestinfo: the DigestInfo around a hash value (RFC 8017 9.2).
#include "tools/pkider/base/count_text.h"
#include "tools/pkider/base/failure.h"
#include "tools/pkider/cli/command.h"
#include "tools/pkider/cli/faults.h"
#include "tools/pkider/cli/input.h"
#include "tools/pkider/cli/output_options.h"
#include "tools/pkider/explain/faithful_lengths.h"
#include "tools/pkider/facts/alg_names.h"
#include "tools/pkider/facts/oid_names.h"
#include "tools/pkider/formats/encodings.h"
#include "tools/pkider/io/output.h"
#include "tools/pkider/io/report.h"
#include "tools/pkider/text/terminal_text.h"

#include <memory>
#include <optional>

namespace tool {
namespace {

struct wrap_options_t {
    std::string hash;
    std::string file = "-";
    std::optional<std::string> digest_hex;
    bool any_size = false;
    input_form_t form = input_form_t::guess;
    output_form_t output = output_form_t::text;
};

struct read_options_t {
    std::vector<std::string> files;
    input_form_t form = input_form_t::guess;
    output_form_t output = output_form_t::text;
};

pki_alg_t read_hash_name(const std::string& name) {
    const alg_row_t* const row = find_alg(name);
    if (row == nullptr || hash_field(row->alg) == PKI_ALG_NONE || key_field(row->alg) != PKI_ALG_NONE) {
        throw usage_fault_t(name + ": no hash of this name; pkider alg --list shows all");
    }
    // The library writes an empty OID for a hash without one; that is of no use to anybody.
    if (PKI_HASH_ALG_TO_OID(row->alg).len == 0) throw usage_fault_t(name + ": no object identifier stands for it");
    return row->alg;
}

std::string read_digest(const wrap_options_t& options) {
    if (options.digest_hex) {
        const auto digest = from_hex(*options.digest_hex);
        if (!digest) throw usage_fault_t("not hex");
        return std::string(digest->text());
    }
    return std::string(as_text(read_only_block(options.file, options.form).der));
}

std::string wrap_digest(std::string digest, pki_alg_t hash, bool any_size) {
    if (digest.size() != hash_size(hash) && !any_size) {
        throw data_fault_t("the digest has " + count_text(digest.size(), "byte") + ", " + alg_name(hash) + " has " +
                           std::to_string(hash_size(hash)) + " (--any-size wraps it all the same)");
    }
    asn_add_alg_to_digest(digest, hash);
    check_faithful_lengths(digest, "the digest info");
    return digest;
}

exit_code_t wrap(const wrap_options_t& options) {
    const pki_alg_t hash = read_hash_name(options.hash);
    const std::string source = options.digest_hex ? "--digest" : input_name(options.file);
    json_t head = {{"file", json_text(source)}};
    json_array_t results(options.output);
    const exit_code_t code = guarded(source, results, head, [&] {
        const std::string info = wrap_digest(read_digest(options), hash, options.any_size);
        if (options.output == output_form_t::json) {
            head["hash"] = alg_name(hash);
            head["der"] = to_hex(info);
            results.add(head);
        } else {
            print_bytes(info, options.output == output_form_t::text ? output_form_t::hex : options.output);
        }
        return exit_code_t::done;
    });
    results.end();
    return code;
}

/// The digest, found by the same steps as the library's reader takes; throws where those fail.
bytes_t find_digest(bytes_t der) {
    der_cursor_t top(der);
    der_cursor_t info(top.next(asn_tag_t::SEQUENCE, "a DigestInfo"));
    der_cursor_t algorithm(info.next(asn_tag_t::SEQUENCE, "the hash algorithm"));
    algorithm.next(asn_tag_t::OBJECT_IDENTIFIER, "the hash");
    algorithm.next(asn_tag_t::ANY, "the parameters of the hash (a NULL)");
    return info.next(asn_tag_t::OCTET_STRING, "the digest").contents;
}

exit_code_t read_one(const input_t& input, const read_options_t& options, json_array_t& results) {
    asn_algorid_t algorithm;
    const std::string whole(as_text(input.der));
    const bytes_t digest = find_digest(as_bytes(whole));
    if (!asn_read_alg_from_digest(&algorithm, whole)) throw data_fault_t("not a DigestInfo");

    const oid_text_t hash = describe_oid({algorithm.oid, algorithm.oid_len}, {});
    const std::uint32_t expected_size = hash_size(PKI_OID_TO_HASH_ALG(algorithm.oid, algorithm.oid_len));
    if (options.output == output_form_t::json) {
        json_t json = json_source(input);
        json["hash"] = oid_json(hash);
        json["digest"] = to_hex(as_text(digest));
        results.add(json);
    } else {
        print_heading(input, options.files.size());
        print("hash    " + oid_label(hash) + "\ndigest  " + to_hex(as_text(digest)) + "\n");
    }
    if (expected_size != 0 && digest.size() != expected_size) {
        report_note(input.name + ": the digest has " + count_text(digest.size(), "byte") + ", " + hash.name + " has " +
                    std::to_string(expected_size));
    }
    return exit_code_t::done;
}

exit_code_t read(const read_options_t& options) {
    json_array_t results(options.output);
    const exit_code_t worst = for_each_input(options.files, {.form = options.form}, results,
                                             [&](const input_t& input) { return read_one(input, options, results); });
    results.end();
    return worst;
}

void register_wrap(CLI::App& app, chosen_command_t& chosen) {
    CLI::App& command =
        add_command(app, "wrap", "Wraps a hash value",
                    "  pkider digestinfo wrap SHA1 --digest DA39A3EE5E6B4B0D3255BFEF95601890AFD80709\n"
                    "  sha256sum < file | cut -c 1-64 | pkider digestinfo wrap SHA256 --der > info.der\n");
    const auto options = std::make_shared<wrap_options_t>();
    command.add_option("HASH", options->hash, "Name of the hash")->required()->type_name("");
    CLI::Option& file =
        *command.add_option("FILE", options->file, "The hash value; - or none is standard input")->type_name("");
    command.add_option("--digest", options->digest_hex, "The hash value in hex")->type_name("HEX")->excludes(&file);
    command.add_flag("--any-size", options->any_size, "Also wrap a value that is not as long as the hash gives");
    add_input_option(command, options->form);
    add_output_options(command, options->output, true);
    when_chosen(command, chosen, [options] { return wrap(*options); });
}

void register_read(CLI::App& app, chosen_command_t& chosen) {
    CLI::App& command =
        add_command(app, "read", "Shows hash and value of a DigestInfo", "  pkider digestinfo read info.der\n");
    const auto options = std::make_shared<read_options_t>();
    add_file_arguments(command, options->files, "Files");
    add_input_option(command, options->form);
    add_output_options(command, options->output, false);
    when_chosen(command, chosen, [options] { return read(*options); });
}

} // namespace

void register_digestinfo(CLI::App& app, chosen_command_t& chosen) {
    CLI::App& command = add_command(app, "digestinfo", "Wraps hash values, and reads them",
                                    "  pkider digestinfo wrap SHA256 digest.bin --der\n"
                                    "  pkider digestinfo read info.der\n");
    command.require_subcommand(1);
    register_wrap(command, chosen);
    register_read(command, chosen);
}

} // namespace tool
