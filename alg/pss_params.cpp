#include "alg/pss_params.h"

#include "der/element_span.h"

namespace pkider {
namespace {

enum class field_t : uint8_t { hash_algorithm = 0, mask_gen_algorithm = 1, salt_length = 2, trailer_field = 3 };

bool next_is(field_t field, const asn_element_t& params) {
    return params.length != 0 && params.content[0] == (asn_tag_t::CONTEXT_0 | static_cast<uint8_t>(field));
}

// Reads the element that an explicitly tagged field holds.
bool next_field(field_t field, asn_tag_t::Type tag, asn_element_t& params, asn_element_t& value) {
    asn_element_t wrapper;
    return asn_next_context_element(static_cast<uint8_t>(field), params, wrapper) &&
           asn_next_element(tag, wrapper, value);
}

// Absent, or of the given form.
bool skip_field(field_t field, asn_tag_t::Type tag, asn_element_t& params) {
    asn_element_t value;
    return !next_is(field, params) || next_field(field, tag, params, value);
}

// HashAlgorithm ::= AlgorithmIdentifier, with or without parameters
bool read_hash_algorithm(asn_element_t& params, asn_algorid_t& out) {
    if (!next_is(field_t::hash_algorithm, params)) return true;
    asn_element_t algorithm, hash_params;
    if (!next_field(field_t::hash_algorithm, asn_tag_t::SEQUENCE, params, algorithm)) return false;
    if (!asn_read_contents(asn_tag_t::OBJECT_IDENTIFIER, algorithm, out.oid_len, out.oid)) return false;
    return algorithm.length == 0 || asn_next_element(asn_tag_t::ANY, algorithm, hash_params);
}

} // namespace

// RSASSA-PSS-params ::= SEQUENCE {
//     hashAlgorithm     [0] HashAlgorithm     DEFAULT sha1Identifier,
//     maskGenAlgorithm  [1] MaskGenAlgorithm  DEFAULT mgf1SHA1Identifier,
//     saltLength        [2] INTEGER           DEFAULT 20,
//     trailerField      [3] INTEGER           DEFAULT 1 }                 (RFC 4055 3.1)
bool asn_read_pss_params(const uint8_t* der, uint32_t len, asn_algorid_t& out) {
    out = {};
    asn_element_t input{nullptr, der, len}, params;
    if (!asn_next_element(asn_tag_t::SEQUENCE, input, params)) return false;
    return read_hash_algorithm(params, out) && skip_field(field_t::mask_gen_algorithm, asn_tag_t::SEQUENCE, params) &&
           skip_field(field_t::salt_length, asn_tag_t::INTEGER, params) &&
           skip_field(field_t::trailer_field, asn_tag_t::INTEGER, params);
}

} // namespace pkider
