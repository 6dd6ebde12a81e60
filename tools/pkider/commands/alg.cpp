// pkider alg: an algorithm by name, OID or value, and the list of all.
#include "tools/pkider/base/failure.h"
#include "tools/pkider/cli/output_options.h"
#include "tools/pkider/cli/text_lines.h"
#include "tools/pkider/commands/commands.h"
#include "tools/pkider/facts/alg_names.h"
#include "tools/pkider/facts/oid_names.h"
#include "tools/pkider/formats/encodings.h"
#include "tools/pkider/io/output.h"
#include "tools/pkider/text/padded_text.h"

#include <charconv>
#include <memory>
#include <vector>

namespace tool {
namespace {

struct options_t {
    std::vector<std::string> queries;
    bool list = false;
    output_form_t output = output_form_t::text;
};

std::string dotted_text(const PKI_OID& oid) {
    return oid.len == 0 ? "" : describe_oid({oid.data, oid.len}, {}).dotted;
}

/// Everything that the library knows about one value.
struct algorithm_t {
    explicit algorithm_t(pki_alg_t value)
        : alg(value),
          hash_oid(PKI_HASH_ALG_TO_OID(value)),
          key_oid(PKI_KEY_ALG_TO_OID(value)),
          signature_oid(PKI_CERT_SIGN_ALG_TO_OID(value)),
          identifier(asn_form_ike_signalg(value)) {}

    /// The one of the three tables that has the value.
    const PKI_OID& oid() const {
        if (hash_oid.len != 0) return hash_oid;
        return key_oid.len != 0 ? key_oid : signature_oid;
    }

    pki_alg_t alg;
    const PKI_OID& hash_oid;
    const PKI_OID& key_oid;
    const PKI_OID& signature_oid;
    const PKI_OID& identifier;
};

const char* variant_name(pki_alg_t alg) {
    switch (alg >> 24) {
    case 0:
        return "";
    case 1:
        return "TIK";
    case 2:
        return "CryptoPro";
    case 4:
        return "SignalCOM";
    default:
        return "unknown";
    }
}

/// What may surprise whoever uses the value.
std::vector<std::string> notes_on(const algorithm_t& algorithm) {
    std::vector<std::string> notes;
    const PKI_OID& oid = algorithm.oid();
    if (oid.len == 0) notes.emplace_back("it has no object identifier");
    const pki_alg_t read_back = PKI_OID_TO_ALG(oid.data, oid.len);
    if (oid.len != 0 && read_back != algorithm.alg) {
        notes.push_back("the object identifier alone is read as " + std::string(alg_name(read_back)) + " (" +
                        alg_value_text(read_back) + ")");
    }
    if (algorithm.alg == PKI_ALG_SHA1_RSA) notes.emplace_back("1.3.14.3.2.29 is read as this, too");
    if (algorithm.alg == PKI_ALG_RSASSA_PSS) {
        notes.emplace_back(
            "the ready-made identifier has no parameters: SHA-1, MGF1 with SHA-1 and a salt of 20 bytes hold");
    } else if (key_field(algorithm.alg) == PKI_ALG_RSASSA_PSS && algorithm.identifier.len != 0) {
        notes.emplace_back(
            "the ready-made identifier names at most the hash: MGF1 with SHA-1 and a salt of 20 bytes hold "
            "by default (RFC 4055 3.1); a peer that means MGF1 with the same hash needs its own identifier");
    }
    return notes;
}

std::string spaced_hex(const PKI_OID& bytes) {
    std::string text;
    for (std::uint32_t i = 0; i < bytes.len; ++i) {
        if (i != 0) text += ' ';
        append_hex(text, as_text({bytes.data + i, 1}));
    }
    return text;
}

void print_algorithm(const algorithm_t& algorithm) {
    std::string text = std::string(alg_name(algorithm.alg)) + "\n";
    const auto add = [&text](const char* label, const std::string& value) {
        constexpr std::size_t label_width = 12;
        if (!value.empty()) text += "  " + padded(label, label_width) + value + "\n";
    };
    const auto part = [&algorithm](pki_alg_t field) {
        if (field == PKI_ALG_NONE || field == algorithm.alg) return std::string();
        return std::string(alg_name(field)) + " (" + alg_value_text(field) + ")";
    };
    const alg_row_t* const row = find_alg(algorithm.alg);
    add("value", alg_value_text(algorithm.alg));
    add("in code", row == nullptr ? "" : row->enumerator);
    add("hash", part(hash_field(algorithm.alg)));
    add("key", part(key_field(algorithm.alg)));
    add("variant", variant_name(algorithm.alg));
    add("OID", dotted_text(algorithm.oid()));
    add("contents", spaced_hex(algorithm.oid()));
    add("identifier", spaced_hex(algorithm.identifier));
    for (const std::string& note : notes_on(algorithm)) add("note", note);
    print(text);
}

json_t algorithm_json(const algorithm_t& algorithm) {
    const auto or_null = [](const std::string& text) { return text.empty() ? json_t() : json_t(text); };
    const auto part = [](pki_alg_t field) { return field == PKI_ALG_NONE ? json_t() : json_t(alg_name(field)); };
    const alg_row_t* const row = find_alg(algorithm.alg);
    return {{"name", alg_name(algorithm.alg)},
            {"value", alg_value_text(algorithm.alg)},
            {"enumerator", row == nullptr ? json_t() : json_t(row->enumerator)},
            {"hash", part(hash_field(algorithm.alg))},
            {"key", part(key_field(algorithm.alg))},
            {"variant", or_null(variant_name(algorithm.alg))},
            {"hash_oid", or_null(dotted_text(algorithm.hash_oid))},
            {"key_oid", or_null(dotted_text(algorithm.key_oid))},
            {"signature_oid", or_null(dotted_text(algorithm.signature_oid))},
            {"identifier", or_null(to_hex(as_text({algorithm.identifier.data, algorithm.identifier.len})))},
            {"notes", notes_on(algorithm)}};
}

/// The value that a query means; PKI_ALG_NONE when the library knows none.
pki_alg_t find_query(const std::string& query) {
    if (const alg_row_t* const row = find_alg(query)) return row->alg;

    std::uint8_t contents[512];
    const std::uint64_t len = oid_str_to_asn_(query.data(), query.data() + query.size(), contents);
    if (len != 0) return PKI_OID_TO_ALG(contents, static_cast<std::uint32_t>(len));

    const bool is_hex = query.starts_with("0x") || query.starts_with("0X");
    const char* const begin = query.data() + (is_hex ? 2 : 0);
    const char* const end = query.data() + query.size();
    std::uint32_t value = 0;
    const auto [stopped, error] = std::from_chars(begin, end, value, is_hex ? 16 : 10);
    if (error != std::errc() || stopped != end || begin == end) return PKI_ALG_NONE;
    const auto alg = static_cast<pki_alg_t>(value);
    return find_alg(alg) == nullptr ? PKI_ALG_NONE : alg;
}

/// "0x00040001  sha256RSA                          1.2.840.113549.1.1.11"
void print_row(const algorithm_t& algorithm) {
    constexpr std::size_t name_width = 36;
    const std::string name = alg_name(algorithm.alg);
    const std::string oid = dotted_text(algorithm.oid());
    print(alg_value_text(algorithm.alg) + "  " + (oid.empty() ? name : padded(name + " ", name_width) + oid) + "\n");
}

void show(const algorithm_t& algorithm, const options_t& options, json_array_t& results) {
    if (options.output == output_form_t::json) {
        results.add(algorithm_json(algorithm));
    } else if (options.list) {
        print_row(algorithm);
    } else {
        print_algorithm(algorithm);
    }
}

exit_code_t list(const options_t& options, json_array_t& results) {
    for (const alg_row_t& row : alg_rows()) show(algorithm_t(row.alg), options, results);
    results.end();
    return exit_code_t::done;
}

exit_code_t run(const options_t& options) {
    if (options.list == !options.queries.empty()) throw usage_fault_t("give algorithms, or --list");
    json_array_t results(options.output);
    if (options.list) return list(options, results);
    return for_each_value(options.queries, results, [&](const std::string& query) {
        const pki_alg_t alg = find_query(query);
        if (alg == PKI_ALG_NONE) {
            throw failure_t(exit_code_t::answer_is_no,
                            "no algorithm of this name, OID or value; pkider alg --list shows all");
        }
        show(algorithm_t(alg), options, results);
        return exit_code_t::done;
    });
}

} // namespace

void register_alg(CLI::App& app, chosen_command_t& chosen) {
    CLI::App& command = add_command(app, "alg", "Explains algorithms by name, OID or value",
                                    "  pkider alg sha256RSASSA-PSS\n"
                                    "  pkider alg 1.2.643.7.1.1.3.2\n"
                                    "  pkider alg 0x00040001\n"
                                    "  pkider alg - < names.txt\n"
                                    "  pkider alg --list\n");
    const auto options = std::make_shared<options_t>();
    command
        .add_option("ALGORITHM", options->queries,
                    "Display name, name in code, dotted OID, or value; - is the lines of standard input")
        ->type_name("");
    command.add_flag("--list", options->list, "List all algorithms with value, name and OID");
    add_output_options(command, options->output, false);
    when_chosen(command, chosen, [options] { return run(*options); });
}

} // namespace tool
