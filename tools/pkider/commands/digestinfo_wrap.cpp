// pkider digestinfo wrap: a hash value into a DigestInfo.
#include "tools/pkider/base/count_text.h"
#include "tools/pkider/base/failure.h"
#include "tools/pkider/cli/faults.h"
#include "tools/pkider/cli/input.h"
#include "tools/pkider/cli/output_options.h"
#include "tools/pkider/commands/commands.h"
#include "tools/pkider/explain/faithful_lengths.h"
#include "tools/pkider/facts/alg_names.h"
#include "tools/pkider/formats/encodings.h"
#include "tools/pkider/io/output.h"

#include <memory>
#include <optional>

namespace tool {
namespace {

struct options_t {
    std::string hash;
    std::string file = "-";
    std::optional<std::string> digest_hex;
    bool any_size = false;
    input_form_t form = input_form_t::guess;
    output_form_t output = output_form_t::text;
};

pki_alg_t read_hash_name(const std::string& name) {
    const alg_row_t* const row = find_alg(name);
    if (row == nullptr || hash_field(row->alg) == PKI_ALG_NONE || key_field(row->alg) != PKI_ALG_NONE) {
        throw usage_fault_t(name + ": no hash of this name; pkider alg --list shows all");
    }
    // The library writes an empty OID for a hash without one; that is of no use to anybody.
    if (PKI_HASH_ALG_TO_OID(row->alg).len == 0) throw usage_fault_t(name + ": it has no object identifier");
    return row->alg;
}

std::string read_digest(const options_t& options) {
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

exit_code_t wrap(const options_t& options) {
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

} // namespace

void register_digestinfo_wrap(CLI::App& digestinfo, chosen_command_t& chosen) {
    CLI::App& command =
        add_command(digestinfo, "wrap", "Wraps a hash value",
                    "  pkider digestinfo wrap SHA1 --digest DA39A3EE5E6B4B0D3255BFEF95601890AFD80709\n"
                    "  sha256sum < file | cut -c 1-64 | pkider digestinfo wrap SHA256 --der > info.der\n");
    const auto options = std::make_shared<options_t>();
    command.add_option("HASH", options->hash, "Name of the hash")->required()->type_name("");
    CLI::Option& file =
        *command.add_option("FILE", options->file, "The hash value; - or none is standard input")->type_name("");
    command.add_option("--digest", options->digest_hex, "The hash value in hex")->type_name("HEX")->excludes(&file);
    command.add_flag("--any-size", options->any_size, "Also wrap a value that is not as long as the hash gives");
    add_input_option(command, options->form);
    add_output_options(command, options->output, true);
    when_chosen(command, chosen, [options] { return wrap(*options); });
}

} // namespace tool
