#include "tools/pkider/facts/signature_algorithm.h"

#include "tools/pkider/base/count_text.h"
#include "tools/pkider/facts/alg_names.h"
#include "tools/pkider/facts/fact_names.h"
#include "tools/pkider/formats/der_cursor.h"
#include "tools/pkider/formats/der_integer.h"
#include "tools/pkider/formats/tags.h"

namespace tool {
namespace {

/// AlgorithmIdentifier: its OID, and what follows it.
bool read_identifier(bytes_t whole, bytes_t& oid, bytes_t& parameters) {
    const auto sequence = der_cursor_t(whole).take(asn_tag_t::SEQUENCE);
    if (!sequence) return false;
    der_cursor_t inside(sequence->contents);
    const auto found = inside.take(asn_tag_t::OBJECT_IDENTIFIER);
    if (!found) return false;
    oid = found->contents;
    parameters = inside.remaining();
    return true;
}

bool read_field(der_cursor_t& fields, std::uint8_t number, bytes_t& contents) {
    const auto field = fields.take(context_tag(number));
    if (!field) return false;
    contents = field->contents;
    return true;
}

bool read_number(bytes_t field, std::uint32_t& out) {
    const auto integer = der_cursor_t(field).take(asn_tag_t::INTEGER);
    if (!integer || integer->contents.empty() || integer->contents[0] >= 0x80) return false;
    const bytes_t number = without_leading_zeros(integer->contents);
    if (number.size() > sizeof out) return false;
    out = 0;
    for (const std::uint8_t byte : number) out = out << 8 | byte;
    return true;
}

// RSASSA-PSS-params ::= SEQUENCE {
//     hashAlgorithm    [0] HashAlgorithm    DEFAULT sha1Identifier,
//     maskGenAlgorithm [1] MaskGenAlgorithm DEFAULT mgf1SHA1Identifier,
//     saltLength       [2] INTEGER          DEFAULT 20,
//     trailerField     [3] INTEGER          DEFAULT 1 }
std::optional<pss_parameters_t> read_pss(bytes_t parameters, oid_map_handle_t map) {
    const PKI_OID& sha1 = PKI_HASH_ALG_TO_OID(PKI_ALG_SHA1);
    pss_parameters_t pss;
    pss.hash = pss.mask_hash = describe_oid({sha1.data, sha1.len}, map);
    if (parameters.empty()) return pss;

    const auto sequence = der_cursor_t(parameters).take(asn_tag_t::SEQUENCE);
    if (!sequence) return std::nullopt;
    der_cursor_t fields(sequence->contents);
    bytes_t field, oid, inner;
    if (read_field(fields, 0, field)) {
        if (!read_identifier(field, oid, inner)) return std::nullopt;
        pss.hash = describe_oid(oid, map);
        pss.hash_is_default = false;
    }
    if (read_field(fields, 1, field)) {
        bytes_t mask_oid;
        if (!read_identifier(field, mask_oid, inner) || !read_identifier(inner, oid, inner)) return std::nullopt;
        pss.mask_hash = describe_oid(oid, map);
        pss.mask_is_default = false;
    }
    if (read_field(fields, 2, field)) {
        if (!read_number(field, pss.salt_length)) return std::nullopt;
        pss.salt_is_default = false;
    }
    if (read_field(fields, 3, field)) {
        if (!read_number(field, pss.trailer_field)) return std::nullopt;
    }
    return pss;
}

std::string default_mark(bool is_default) {
    return is_default ? " (default)" : "";
}

} // namespace

std::optional<signature_algorithm_t> read_signature_algorithm(bytes_t identifier, oid_map_handle_t map) {
    asn_ike_signalg_t raw;
    const auto len = static_cast<std::uint32_t>(identifier.size());
    if (identifier.size() > UINT32_MAX || !asn_read_ike_signalg(identifier.data(), len, raw)) return std::nullopt;

    const bytes_t oid(raw.oid, raw.oid_len);
    signature_algorithm_t algorithm;
    algorithm.oid = describe_oid(oid, map);
    algorithm.alg = raw.to_pki_alg();
    if (PKI_OID_TO_CERT_SIGN_ALG(raw.oid, raw.oid_len) == PKI_ALG_RSASSA_PSS) {
        bytes_t again, parameters;
        if (read_identifier(identifier, again, parameters)) algorithm.pss = read_pss(parameters, map);
    }
    return algorithm;
}

std::string signature_algorithm_name(const signature_algorithm_t& algorithm) {
    const alg_row_t* const row = find_alg(algorithm.alg);
    return row == nullptr ? oid_name(algorithm.oid) : row->name;
}

std::string pss_line(const pss_parameters_t& pss) {
    return "hash " + oid_name(pss.hash) + default_mark(pss.hash_is_default) + ", mask MGF1 with " +
           oid_name(pss.mask_hash) + default_mark(pss.mask_is_default) + ", salt " +
           count_text(pss.salt_length, "byte") + default_mark(pss.salt_is_default);
}

void add_signature_lines(const signature_algorithm_t& algorithm, facts_t& facts) {
    facts.push_back({fact::signature, signature_algorithm_name(algorithm)});
    if (algorithm.pss) facts.push_back({fact::pss, pss_line(*algorithm.pss)});
}

json_t signature_algorithm_json(const signature_algorithm_t& algorithm) {
    json_t json = oid_json(algorithm.oid);
    json["name"] = json_text(signature_algorithm_name(algorithm));
    json["value"] = nullptr;
    if (algorithm.alg != PKI_ALG_NONE) json["value"] = alg_value_text(algorithm.alg);
    if (algorithm.pss) {
        json["pss"] = {{"hash", oid_json(algorithm.pss->hash)},
                       {"mask_hash", oid_json(algorithm.pss->mask_hash)},
                       {"salt_length", algorithm.pss->salt_length},
                       {"trailer_field", algorithm.pss->trailer_field}};
    }
    return json;
}

} // namespace tool
