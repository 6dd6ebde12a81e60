#include <pkider/alg.h>

#include "der/asn_constant.h"
#include "der/element_steps.h"

namespace pkider {
namespace {

// What an empty BIT STRING leaves as the length of the key: "no key bits".
constexpr uint32_t no_key_bits = 0xFFFFFFFF;

// Computed as a number, because after empty contents it may be past the end of the input.
const uint8_t* next_address(const uint8_t* at) {
    // NOLINTNEXTLINE(performance-no-int-to-ptr)
    return reinterpret_cast<const uint8_t*>(reinterpret_cast<uintptr_t>(at) + 1);
}

constexpr auto rsa_encryption = asn_oid<"1.2.840.113549.1.1.1">;
constexpr auto rsa_algorithm = asn_constant_sequence(rsa_encryption, asn_null);

// SEQUENCE { algorithm OBJECT IDENTIFIER, parameters ANY DEFINED BY algorithm OPTIONAL }
bool read_algorithm(asn_element_t& info, asn_element_t& oid, asn_element_t& params) {
    const uint8_t* const start = info.content;
    if (asn_skip_constant(info, rsa_algorithm)) { // most keys. Bench: alg/public_key
        oid = asn_contents(start + 4, rsa_encryption.size() - 2);
        params = asn_contents(start + 2 + rsa_encryption.size(), asn_null.size());
        return true;
    }
    return asn_next_element(asn_tag_t::SEQUENCE, info, params) &&
           asn_next_element(asn_tag_t::OBJECT_IDENTIFIER, params, oid);
}

// The key bits as input of a reader; empty when the BIT STRING was empty, since its key must not be read.
asn_element_t key_bits(const asn_pubkey_t& pk) {
    return asn_contents(pk.key, pk.key_len == no_key_bits ? 0 : pk.key_len);
}

// Leading zero bytes go while another byte is left, so a zero keeps one.
void drop_leading_zeros(uint32_t& len, const uint8_t*& number) {
    while (len > 1 && number[0] == 0) {
        ++number;
        --len;
    }
}

} // namespace
} // namespace pkider

// SubjectPublicKeyInfo ::= SEQUENCE {
//     algorithm         SEQUENCE { algorithm OBJECT IDENTIFIER, parameters ANY DEFINED BY algorithm OPTIONAL },
//     subjectPublicKey  BIT STRING }                                     (RFC 5280 4.1)
bool asn_read_pubkey(const uint8_t* der, int32_t len, asn_pubkey_t& out) {
    using namespace pkider;

    // A negative length is a very large bound. Required: Pubkey.RequiredNegativeLengthIsALargeBound.
    const asn_element_t input = asn_contents(der, static_cast<uint32_t>(len));
    asn_element_t rest = input, info, oid, params, bits;
    if (!asn_next_element(asn_tag_t::SEQUENCE, rest, info)) return false;
    if (!read_algorithm(info, oid, params)) return false;
    asn_store_contents(oid, out.alg_oid_len, out.alg_oid);
    asn_store_contents(params, out.params_len, out.params);

    // Bounded by the input, not by the SEQUENCE. Required: Pubkey.RequiredBitStringMayRunPastTheSequence.
    rest = asn_from_place(input, info.content);
    if (!asn_next_element(asn_tag_t::BIT_STRING, rest, bits)) return false;

    // Without the count of unused bits, present or not: an empty BIT STRING gives no_key_bits.
    // Required: Pubkey.RequiredEmptyBitStringGivesLengthFFFFFFFF.
    out.key_len = static_cast<uint32_t>(bits.length - 1);
    out.key = next_address(bits.content);
    return true;
}

// RSAPublicKey ::= SEQUENCE { modulus INTEGER, publicExponent INTEGER }   (RFC 8017 A.1.1)
bool asn_read_rsa_pubkey(const asn_pubkey_t& pk, asn_rsa_pubkey_t& out) {
    using namespace pkider;

    const asn_element_t input = key_bits(pk);
    asn_element_t rest = input, numbers;
    if (!asn_next_element(asn_tag_t::SEQUENCE, rest, numbers)) return false;
    if (!asn_next_contents_or_null(asn_tag_t::INTEGER, numbers, out.modulus_len, out.modulus)) return false;

    // Bounded by the key bits, not by the SEQUENCE. Required: RsaPubkey.RequiredExponentMayRunPastTheSequence.
    rest = asn_from_place(input, numbers.content);
    if (!asn_next_contents(asn_tag_t::INTEGER, rest, out.exponent_len, out.exponent)) return false;

    drop_leading_zeros(out.modulus_len, out.modulus);
    return true;
}

// GostR3410-PublicKeyParameters ::= SEQUENCE {
//     publicKeyParamSet   OBJECT IDENTIFIER,
//     digestParamSet      OBJECT IDENTIFIER,
//     encryptionParamSet  OBJECT IDENTIFIER OPTIONAL }                    (RFC 4491 2.3)
// The key itself is an OCTET STRING inside the BIT STRING.
bool asn_read_gost_pubkey(const asn_pubkey_t& pk, asn_gost_pubkey_t& out) {
    using namespace pkider;

    asn_element_t input = asn_contents(pk.params, pk.params_len);
    asn_element_t sets, set;
    if (!asn_next_element(asn_tag_t::SEQUENCE, input, sets)) return false;
    if (!asn_next_element(asn_tag_t::OBJECT_IDENTIFIER, sets, set)) return false;
    asn_store_element(set, out.public_key_param_set_len, out.public_key_param_set);
    if (!asn_next_element(asn_tag_t::OBJECT_IDENTIFIER, sets, set)) return false;
    asn_store_element(set, out.digest_param_set_len, out.digest_param_set);
    if (!asn_next_element(asn_tag_t::OBJECT_IDENTIFIER, sets, set)) set = {};
    asn_store_element(set, out.encryption_param_set_len, out.encryption_param_set);

    asn_element_t key = key_bits(pk);
    return asn_next_contents(asn_tag_t::OCTET_STRING, key, out.key_len, out.key);
}
