#include "pkcs8/encrypted_gost_key.h"

#include "der/asn_block.h"
#include "der/asn_constant.h"
#include "der/element_steps.h"
#include "der/uint32_content.h"

// EncryptedPrivateKeyInfo ::= SEQUENCE {                                                              (RFC 5208 6)
//     encryptionAlgorithm  SEQUENCE { PBES2, SEQUENCE {                                               (RFC 8018 A.4)
//         keyDerivationFunc  SEQUENCE { PBKDF2, SEQUENCE {                                            (RFC 8018 A.2)
//             salt            OCTET STRING,
//             iterationCount  INTEGER,
//             keyLength       INTEGER OPTIONAL,
//             prf             SEQUENCE { HMAC GOST R 34.11-94, parameter ANY } } },
//         encryptionScheme   SEQUENCE { GOST 28147-89, SEQUENCE { iv OCTET STRING, paramSet OBJECT IDENTIFIER } } } },
//     encryptedData        OCTET STRING }

namespace pkider {
namespace {

// clang-format off
constexpr auto pbes2       = asn_oid<"1.2.840.113549.1.5.13">;
constexpr auto pbkdf2      = asn_oid<"1.2.840.113549.1.5.12">;
constexpr auto hmac_gost94 = asn_oid<"1.2.643.2.2.10">;
constexpr auto gost_28147  = asn_oid<"1.2.643.2.2.21">;
constexpr auto param_set_a = asn_oid<"1.2.643.2.2.31.1">;
// clang-format on

constexpr auto prf = asn_constant_sequence(hmac_gost94, asn_null);

// The contents sizes of the AlgorithmIdentifier, counted from the inside out. None is larger than the last one, which
// is checked for all of them.
//
// The count loses its zero bytes. Required: EncryptedGostKey.RequiredZeroBytesOfTheCountAreDropped.
class algorithm_writer_t {
  public:
    explicit algorithm_writer_t(const pkcs8_encrypted_pki_gost_t& key)
        : m_key(key),
          m_count_size(static_cast<uint64_t>(asn_put_uint32_content(m_count.data(), key.iterations) - m_count.data())),
          m_pbkdf2_params_size(asn_checked_element_size(key.salt_len) + asn_element_size(m_count_size) + prf.size()),
          m_derivation_size(pbkdf2.size() + asn_element_size(m_pbkdf2_params_size)),
          m_cipher_params_size(asn_checked_element_size(key.iv_len) + param_set_a.size()),
          m_scheme_size(gost_28147.size() + asn_element_size(m_cipher_params_size)),
          m_pbes2_params_size(asn_element_size(m_derivation_size) + asn_element_size(m_scheme_size)),
          m_algorithm_size(pbes2.size() + asn_element_size(m_pbes2_params_size)),
          m_size(asn_checked_element_size(m_algorithm_size)) {}

    uint64_t size() const { return m_size; }

    /// Writes size() bytes at `at` and returns the place after them.
    uint8_t* put(uint8_t* at) const {
        at = asn_put_header(at, asn_tag_t::SEQUENCE, m_algorithm_size);
        at = asn_put_constant(at, pbes2);
        at = asn_put_header(at, asn_tag_t::SEQUENCE, m_pbes2_params_size);
        at = put_derivation(at);
        return put_scheme(at);
    }

  private:
    uint8_t* put_derivation(uint8_t* at) const {
        at = asn_put_header(at, asn_tag_t::SEQUENCE, m_derivation_size);
        at = asn_put_constant(at, pbkdf2);
        at = asn_put_header(at, asn_tag_t::SEQUENCE, m_pbkdf2_params_size);
        at = asn_put_header(at, asn_tag_t::OCTET_STRING, m_key.salt_len);
        at = asn_put_bytes(at, m_key.salt, m_key.salt_len);
        at = asn_put_header(at, asn_tag_t::INTEGER, m_count_size);
        asn_put_constant(at, m_count); // all of it; prf covers the rest. Bench: pkcs8/encrypted_write
        return asn_put_constant(at + m_count_size, prf);
    }

    uint8_t* put_scheme(uint8_t* at) const {
        at = asn_put_header(at, asn_tag_t::SEQUENCE, m_scheme_size);
        at = asn_put_constant(at, gost_28147);
        at = asn_put_header(at, asn_tag_t::SEQUENCE, m_cipher_params_size);
        at = asn_put_header(at, asn_tag_t::OCTET_STRING, m_key.iv_len);
        at = asn_put_bytes(at, m_key.iv, m_key.iv_len);
        return asn_put_constant(at, param_set_a);
    }

    const pkcs8_encrypted_pki_gost_t& m_key;
    std::array<uint8_t, asn_max_uint32_content_size> m_count{};
    uint64_t m_count_size;
    uint64_t m_pbkdf2_params_size;
    uint64_t m_derivation_size;
    uint64_t m_cipher_params_size;
    uint64_t m_scheme_size;
    uint64_t m_pbes2_params_size;
    uint64_t m_algorithm_size;
    uint64_t m_size;
};

} // namespace

bool asn_read_pbkdf2_gost_params(const uint8_t* content, uint64_t length, pkcs8_encrypted_pki_gost_t& out) {
    asn_element_t derivation = asn_contents(content, length);
    asn_element_t oid, params;
    if (!asn_next_element(asn_tag_t::OBJECT_IDENTIFIER, derivation, oid)) return false;
    if (!asn_next_element(asn_tag_t::SEQUENCE, derivation, params)) return false;

    asn_element_t count, key_length;
    if (!asn_next_contents(asn_tag_t::OCTET_STRING, params, out.salt_len, out.salt)) return false;
    if (!asn_next_element(asn_tag_t::INTEGER, params, count)) return false;
    if (asn_is_next(asn_tag_t::INTEGER, params) && !asn_next_element(asn_tag_t::INTEGER, params, key_length))
        return false;

    // The function is not optional here, though RFC 8018 lets it default, and neither is its parameter.
    // Required: EncryptedGostKey.RequiredPrfMayNotBeLeftOut.
    asn_element_t function, function_oid, function_param;
    if (!asn_next_element(asn_tag_t::SEQUENCE, params, function)) return false;
    if (!asn_next_element(asn_tag_t::OBJECT_IDENTIFIER, function, function_oid)) return false;
    if (!asn_next_element(asn_tag_t::ANY, function, function_param)) return false;

    if (!asn_is_oid(oid, pbkdf2) || !asn_is_oid(function_oid, hmac_gost94)) return false;
    // Five significant bytes are accepted, and empty contents leave the field unchanged.
    // Required: EncryptedGostKey.RequiredFiveByteCountLosesItsHighByte,
    // EncryptedGostKey.RequiredEmptyCountKeepsWhatTheCallerHad.
    return asn_read_uint32(count.content, count.length, &out.iterations);
}

bool asn_read_pkcs8_encrypted_alg(const uint8_t* content, uint64_t length, pkcs8_encrypted_pki_gost_t& out) {
    asn_element_t algorithm = asn_contents(content, length);
    asn_element_t oid, params;
    if (!asn_next_element(asn_tag_t::OBJECT_IDENTIFIER, algorithm, oid)) return false;
    if (!asn_next_element(asn_tag_t::SEQUENCE, algorithm, params)) return false;

    asn_element_t derivation, scheme;
    if (!asn_next_element(asn_tag_t::SEQUENCE, params, derivation)) return false;
    if (!asn_next_element(asn_tag_t::SEQUENCE, params, scheme)) return false;

    asn_element_t scheme_oid, scheme_params, param_set;
    if (!asn_next_element(asn_tag_t::OBJECT_IDENTIFIER, scheme, scheme_oid)) return false;
    if (!asn_next_element(asn_tag_t::SEQUENCE, scheme, scheme_params)) return false;
    if (!asn_next_contents(asn_tag_t::OCTET_STRING, scheme_params, out.iv_len, out.iv)) return false;
    // Any set passes. Required: EncryptedGostKey.RequiredEveryCipherParameterSetIsAccepted.
    if (!asn_next_element(asn_tag_t::OBJECT_IDENTIFIER, scheme_params, param_set)) return false;

    if (!asn_is_oid(oid, pbes2) || !asn_is_oid(scheme_oid, gost_28147)) return false;
    return asn_read_pbkdf2_gost_params(derivation.content, derivation.length, out);
}

void asn_write_pkcs8_encrypted_alg(const pkcs8_encrypted_pki_gost_t& key, std::string& out) {
    const algorithm_writer_t algorithm(key);
    asn_replace_by_block(out, algorithm.size(), {key.salt, key.iv}, [&](uint8_t* at) { algorithm.put(at); });
}

} // namespace pkider

bool asn_read_pkcs8_encrypted_pki_gost(const uint8_t* der, uint64_t len, pkcs8_encrypted_pki_gost_t& out) {
    using namespace pkider;

    asn_element_t input = asn_contents(der, len);
    asn_element_t info, algorithm;
    if (!asn_next_element(asn_tag_t::SEQUENCE, input, info)) return false;
    if (!asn_next_element(asn_tag_t::SEQUENCE, info, algorithm)) return false;
    if (!asn_next_contents(asn_tag_t::OCTET_STRING, info, out.encrypted_len, out.encrypted)) return false;
    return asn_read_pkcs8_encrypted_alg(algorithm.content, algorithm.length, out);
}

void asn_write_pkcs8_encrypted_pki_gost(const pkcs8_encrypted_pki_gost_t& key, std::string& out) {
    using namespace pkider;

    const algorithm_writer_t algorithm(key);
    const uint64_t info_size = algorithm.size() + asn_checked_element_size(key.encrypted_len);
    const std::initializer_list<const uint8_t*> inputs = {key.salt, key.iv, key.encrypted};
    asn_replace_by_block(out, asn_checked_element_size(info_size), inputs, [&](uint8_t* at) {
        at = asn_put_header(at, asn_tag_t::SEQUENCE, info_size);
        at = algorithm.put(at);
        at = asn_put_header(at, asn_tag_t::OCTET_STRING, key.encrypted_len);
        asn_put_bytes(at, key.encrypted, key.encrypted_len);
    });
}
