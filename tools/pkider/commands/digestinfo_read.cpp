// pkider digestinfo read: hash and value of a DigestInfo.
#include "tools/pkider/base/count_text.h"
#include "tools/pkider/base/failure.h"
#include "tools/pkider/cli/show_inputs.h"
#include "tools/pkider/commands/commands.h"
#include "tools/pkider/facts/alg_names.h"
#include "tools/pkider/facts/oid_names.h"
#include "tools/pkider/formats/encodings.h"
#include "tools/pkider/io/report.h"

#include <memory>

namespace tool {
namespace {

/// The digest, found by the same steps as the library's reader takes; throws where those fail.
bytes_t find_digest(bytes_t der) {
    der_cursor_t top(der);
    der_cursor_t info(top.next(asn_tag_t::SEQUENCE, "a DigestInfo"));
    der_cursor_t algorithm(info.next(asn_tag_t::SEQUENCE, "the hash algorithm"));
    algorithm.next(asn_tag_t::OBJECT_IDENTIFIER, "the hash");
    algorithm.next(asn_tag_t::ANY, "the parameters of the hash (a NULL)");
    return info.next(asn_tag_t::OCTET_STRING, "the digest").contents;
}

exit_code_t read(const input_t& input, const show_options_t& options, json_array_t& results) {
    asn_algorid_t algorithm;
    const std::string whole(as_text(input.der));
    const bytes_t digest = find_digest(as_bytes(whole));
    if (!asn_read_alg_from_digest(&algorithm, whole)) throw data_fault_t("not a DigestInfo");

    const oid_text_t hash = describe_oid({algorithm.oid, algorithm.oid_len}, {});
    const std::uint32_t expected_size = hash_size(PKI_OID_TO_HASH_ALG(algorithm.oid, algorithm.oid_len));
    const std::string digits = to_hex(as_text(digest));
    show_result(options, input, results, "hash    " + oid_label(hash) + "\ndigest  " + digits + "\n",
                {{"hash", oid_json(hash)}, {"digest", digits}});
    if (expected_size != 0 && digest.size() != expected_size) {
        report_note(input.name + ": the digest has " + count_text(digest.size(), "byte") + ", " + hash.name + " has " +
                    std::to_string(expected_size));
    }
    return exit_code_t::done;
}

} // namespace

void register_digestinfo_read(CLI::App& digestinfo, chosen_command_t& chosen) {
    CLI::App& command =
        add_command(digestinfo, "read", "Shows hash and value of a DigestInfo", "  pkider digestinfo read info.der\n");
    const auto options = std::make_shared<show_options_t>();
    add_show_options(command, *options, "Files");
    when_chosen(command, chosen, [options] {
        return show_each(*options,
                         [&](const input_t& input, json_array_t& results) { return read(input, *options, results); });
    });
}

} // namespace tool
