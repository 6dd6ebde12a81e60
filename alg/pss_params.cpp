#include "alg/pss_params.h"

#include "alg/oid_index.h"
#include "der/element_steps.h"

namespace pkider {
namespace {

enum field_t : uint8_t { HASH_ALGORITHM = 0, MASK_GEN_ALGORITHM = 1, SALT_LENGTH = 2, TRAILER_FIELD = 3 };

bool is_next(field_t field, const asn_element_t& params) {
    return asn_is_next(asn_context_tag(field), params);
}

// Reads the element that an explicitly tagged field holds.
bool read_field(field_t field, asn_tag_t::Type tag, asn_element_t& params, asn_element_t& value) {
    asn_element_t wrapper;
    return asn_next_context_element(field, params, wrapper) && asn_next_element(tag, wrapper, value);
}

// Absent, or of the given form.
bool skip_field(field_t field, asn_tag_t::Type tag, asn_element_t& params) {
    asn_element_t value;
    return !is_next(field, params) || read_field(field, tag, params, value);
}

// HashAlgorithm ::= AlgorithmIdentifier, with or without parameters
bool read_hash_algorithm(asn_element_t& params, asn_algorid_t& out) {
    if (!is_next(HASH_ALGORITHM, params)) return true;
    asn_element_t algorithm, hash_params;
    if (!read_field(HASH_ALGORITHM, asn_tag_t::SEQUENCE, params, algorithm)) return false;
    if (!asn_next_contents_or_null(asn_tag_t::OBJECT_IDENTIFIER, algorithm, out.oid_len, out.oid)) return false;
    return algorithm.length == 0 || asn_next_element(asn_tag_t::ANY, algorithm, hash_params);
}

} // namespace

// RSASSA-PSS-params ::= SEQUENCE {
//     hashAlgorithm     [0] HashAlgorithm     DEFAULT sha1Identifier,
//     maskGenAlgorithm  [1] MaskGenAlgorithm  DEFAULT mgf1SHA1Identifier,
//     saltLength        [2] INTEGER           DEFAULT 20,
//     trailerField      [3] INTEGER           DEFAULT 1 }                 (RFC 4055 3.1)
//
// Bytes after it are ignored. Required: PssParams.RequiredTrailingElementsAreIgnored.
bool asn_read_pss_params(const uint8_t* der, uint32_t len, asn_algorid_t& out) {
    out = {};
    asn_element_t input = asn_contents(der, len), params;
    if (!asn_next_element(asn_tag_t::SEQUENCE, input, params)) return false;
    return read_hash_algorithm(params, out) && skip_field(MASK_GEN_ALGORITHM, asn_tag_t::SEQUENCE, params) &&
           skip_field(SALT_LENGTH, asn_tag_t::INTEGER, params) && skip_field(TRAILER_FIELD, asn_tag_t::INTEGER, params);
}

pki_alg_t asn_pss_params_to_alg(const uint8_t* params, uint32_t params_len) {
    constexpr uint32_t hash_field = 0x00FF0000;

    if (params_len == 0) return PKI_ALG_RSASSA_PSS_SHA1;

    asn_algorid_t hash;
    if (!asn_read_pss_params(params, params_len, hash)) return PKI_ALG_NONE;
    // Absent or empty. Required: IkeSignalgToPkiAlg.Names/RequiredPssEmptyHashOid.
    if (hash.oid_len == 0) return PKI_ALG_RSASSA_PSS_SHA1;

    const pki_alg_t hash_alg = find_alg(hash.oid, hash.oid_len, &known_oid_t::hash);
    if (hash_alg == PKI_ALG_NONE) return PKI_ALG_NONE;
    // Without the variant field. Required: IkeSignalgToPkiAlg.RequiredVariantOfTheHashIsDropped.
    return static_cast<pki_alg_t>((hash_alg & hash_field) | PKI_ALG_RSASSA_PSS);
}

} // namespace pkider
