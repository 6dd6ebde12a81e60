#include "tools/pkider/facts/public_key.h"

#include "tools/pkider/base/count_text.h"
#include "tools/pkider/facts/alg_names.h"
#include "tools/pkider/facts/fact_names.h"
#include "tools/pkider/formats/der_integer.h"
#include "tools/pkider/formats/encodings.h"
#include "tools/pkider/formats/oid_constant.h"

#include <algorithm>

namespace tool {
namespace {

constexpr std::uint32_t no_key_bits = 0xFFFFFFFF; // an empty BIT STRING, see asn_pubkey_t

constexpr bytes_t pss_key = oid<"1.2.840.113549.1.1.10">;
constexpr bytes_t ec_key = oid<"1.2.840.10045.2.1">;

bool is_gost(pki_alg_t alg) {
    const pki_alg_t key = key_field(alg);
    return key == PKI_ALG_GOST3410_94 || key == PKI_ALG_GOST3410_2001 || key == PKI_ALG_GOST3410_2012_256 ||
           key == PKI_ALG_GOST3410_2012_512;
}

/// Describes a whole OBJECT IDENTIFIER element, as asn_gost_pubkey_t holds its parameter sets.
std::optional<oid_text_t> describe_element(const std::uint8_t* element, std::uint32_t len, oid_map_handle_t map) {
    if (len == 0) return std::nullopt;
    const auto oid = der_cursor_t({element, len}).take(asn_tag_t::OBJECT_IDENTIFIER);
    return oid ? std::optional(describe_oid(oid->contents, map)) : std::nullopt;
}

std::optional<rsa_key_t> read_rsa(const asn_pubkey_t& raw) {
    asn_rsa_pubkey_t rsa;
    if (!asn_read_rsa_pubkey(raw, rsa)) return std::nullopt;
    return rsa_key_t{{rsa.modulus, rsa.modulus_len}, without_leading_zeros({rsa.exponent, rsa.exponent_len})};
}

std::optional<gost_key_t> read_gost(const asn_pubkey_t& raw, oid_map_handle_t map) {
    asn_gost_pubkey_t gost;
    // Keys on the newer curves name no digest (RFC 9215 4.2), and then the reader stops after the first set.
    const bool complete = asn_read_gost_pubkey(raw, gost);
    const auto public_key_set = describe_element(gost.public_key_param_set, gost.public_key_param_set_len, map);
    if (!public_key_set) return std::nullopt;

    gost_key_t key;
    key.public_key_set = *public_key_set;
    key.digest_set = describe_element(gost.digest_param_set, gost.digest_param_set_len, map);
    key.encryption_set = describe_element(gost.encryption_param_set, gost.encryption_param_set_len, map);
    if (complete) {
        key.key = {gost.key, gost.key_len};
    } else if (raw.key_len != no_key_bits) {
        const auto octets = der_cursor_t({raw.key, raw.key_len}).take(asn_tag_t::OCTET_STRING);
        if (octets) key.key = octets->contents;
    }
    return key;
}

// Dss-Parms ::= SEQUENCE { p INTEGER, q INTEGER, g INTEGER }           (RFC 3279 2.3.2)
std::optional<bytes_t> read_dsa_prime(const asn_pubkey_t& raw) {
    const auto parameters = der_cursor_t({raw.params, raw.params_len}).take(asn_tag_t::SEQUENCE);
    if (!parameters) return std::nullopt;
    const auto p = der_cursor_t(parameters->contents).take(asn_tag_t::INTEGER);
    return p ? std::optional(without_leading_zeros(p->contents)) : std::nullopt;
}

/// The size by which the algorithm is called: of the modulus, or of one of the two coordinates.
std::uint64_t gost_bits(const public_key_t& key) {
    const std::uint64_t bits = 8 * key.gost->key.size();
    return key_field(key.alg) == PKI_ALG_GOST3410_94 ? bits : bits / 2;
}

json_t optional_oid_json(const std::optional<oid_text_t>& oid) {
    return oid ? oid_json(*oid) : json_t();
}

} // namespace

std::optional<public_key_t> read_public_key(bytes_t spki, oid_map_handle_t map) {
    asn_pubkey_t raw;
    if (spki.size() > INT32_MAX) return std::nullopt;
    if (!asn_read_pubkey(spki.data(), static_cast<int32_t>(spki.size()), raw)) return std::nullopt;

    const bytes_t oid(raw.alg_oid, raw.alg_oid_len);
    public_key_t key;
    key.algorithm = describe_oid(oid, map);
    key.alg = PKI_OID_TO_KEY_ALG(raw.alg_oid, raw.alg_oid_len);
    if (raw.key_len != no_key_bits) key.bits = {raw.key, raw.key_len};

    if (key.alg == PKI_ALG_RSA || std::ranges::equal(oid, pss_key)) {
        key.rsa = read_rsa(raw);
    } else if (is_gost(key.alg)) {
        key.gost = read_gost(raw, map);
    } else if (key.alg == PKI_ALG_DSA) {
        key.prime = read_dsa_prime(raw);
    } else if (std::ranges::equal(oid, ec_key)) {
        key.curve = describe_element(raw.params, raw.params_len, map);
    }
    return key;
}

std::string public_key_line(const public_key_t& key) {
    std::string line = oid_name(key.algorithm);
    if (key.rsa) {
        line += ", " + count_text(bit_length(key.rsa->modulus), "bit") + ", exponent " + number_text(key.rsa->exponent);
    }
    if (key.prime) line += ", " + count_text(bit_length(*key.prime), "bit");
    if (key.curve) line += ", " + oid_label(*key.curve);
    if (key.gost) line += ", " + count_text(gost_bits(key), "bit");
    return line;
}

facts_t public_key_details(const public_key_t& key) {
    facts_t lines;
    if (!key.gost) return lines;
    lines.push_back({fact::parameters, oid_label(key.gost->public_key_set)});
    if (key.gost->digest_set) lines.push_back({fact::digest_set, oid_label(*key.gost->digest_set)});
    if (key.gost->encryption_set) lines.push_back({fact::cipher_set, oid_label(*key.gost->encryption_set)});
    return lines;
}

void add_public_key_lines(const public_key_t& key, facts_t& facts) {
    facts.push_back({fact::key, public_key_line(key)});
    for (const auto& line : public_key_details(key)) facts.push_back(line);
}

json_t public_key_json(const public_key_t& key) {
    json_t json;
    json["algorithm"] = oid_json(key.algorithm);
    if (key.rsa) {
        json["bits"] = bit_length(key.rsa->modulus);
        json["exponent"] = number_text(key.rsa->exponent);
    }
    if (key.prime) json["bits"] = bit_length(*key.prime);
    if (key.curve) json["curve"] = oid_json(*key.curve);
    if (key.gost) {
        json["bits"] = gost_bits(key);
        json["parameter_sets"] = {{"public_key", oid_json(key.gost->public_key_set)},
                                  {"digest", optional_oid_json(key.gost->digest_set)},
                                  {"encryption", optional_oid_json(key.gost->encryption_set)}};
    }
    return json;
}

} // namespace tool
