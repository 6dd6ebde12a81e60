// pkider digestinfo read: hash and value of a DigestInfo.
#include "tools/pkider/base/count_text.h"
#include "tools/pkider/base/failure.h"
#include "tools/pkider/cli/input.h"
#include "tools/pkider/cli/output_options.h"
#include "tools/pkider/commands/commands.h"
#include "tools/pkider/facts/alg_names.h"
#include "tools/pkider/facts/oid_names.h"
#include "tools/pkider/formats/encodings.h"
#include "tools/pkider/io/output.h"
#include "tools/pkider/io/report.h"

#include <memory>

namespace tool {
namespace {

struct options_t {
    std::vector<std::string> files;
    input_form_t form = input_form_t::guess;
    output_form_t output = output_form_t::text;
};

/// The digest, found by the same steps as the library's reader takes; throws where those fail.
bytes_t find_digest(bytes_t der) {
    der_cursor_t top(der);
    der_cursor_t info(top.next(asn_tag_t::SEQUENCE, "a DigestInfo"));
    der_cursor_t algorithm(info.next(asn_tag_t::SEQUENCE, "the hash algorithm"));
    algorithm.next(asn_tag_t::OBJECT_IDENTIFIER, "the hash");
    algorithm.next(asn_tag_t::ANY, "the parameters of the hash (a NULL)");
    return info.next(asn_tag_t::OCTET_STRING, "the digest").contents;
}

exit_code_t read_one(const input_t& input, const options_t& options, json_array_t& results) {
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

exit_code_t read(const options_t& options) {
    json_array_t results(options.output);
    const exit_code_t worst = for_each_input(options.files, {.form = options.form}, results,
                                             [&](const input_t& input) { return read_one(input, options, results); });
    results.end();
    return worst;
}

} // namespace

void register_digestinfo_read(CLI::App& digestinfo, chosen_command_t& chosen) {
    CLI::App& command =
        add_command(digestinfo, "read", "Shows hash and value of a DigestInfo", "  pkider digestinfo read info.der\n");
    const auto options = std::make_shared<options_t>();
    add_file_arguments(command, options->files, "Files");
    add_input_option(command, options->form);
    add_output_options(command, options->output, false);
    when_chosen(command, chosen, [options] { return read(*options); });
}

} // namespace tool
