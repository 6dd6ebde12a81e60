#include "c/border.h"
#include "c/output.h"
#include "c/spans.h"

#include <pkider/alg.h>

#include <limits>
#include <string>

using namespace pkider::c;

namespace {

pkider_status_t show(const PKI_OID& found, pkider_bytes_t* out) {
    if (out == nullptr) return PKIDER_ARGUMENT;
    *out = span_of(found.len, found.data);
    return found.len == 0 ? PKIDER_NOT_FOUND : PKIDER_OK;
}

pkider_status_t show(pki_alg_t found, pkider_alg_t& out) {
    out = found;
    return found == PKI_ALG_NONE ? PKIDER_NOT_FOUND : PKIDER_OK;
}

// An object identifier of 4 GiB is not one of the library.
template <pki_alg_t find(const uint8_t*, uint32_t)>
pkider_status_t find_alg(const uint8_t* oid, uint64_t size, pkider_alg_t* out) {
    if (out == nullptr) return PKIDER_ARGUMENT;
    *out = PKIDER_ALG_NONE;
    if (is_missing(oid, size)) return PKIDER_ARGUMENT;
    return fits_32_bits(size) ? show(find(oid, static_cast<uint32_t>(size)), *out) : PKIDER_NOT_FOUND;
}

// Reads one structure into a record of the library, and shows all of it or nothing.
template <typename Read, typename Show, typename Record>
pkider_status_t read_der(const uint8_t* der, uint64_t size, Record* out, const Read& read, const Show& show_record) {
    if (out == nullptr) return PKIDER_ARGUMENT;
    *out = {};
    if (is_missing(der, size)) return PKIDER_ARGUMENT;
    if (!fits_32_bits(size)) return PKIDER_TOO_LONG;
    if (!read(static_cast<uint32_t>(size))) return PKIDER_MALFORMED;
    show_record(*out);
    return PKIDER_OK;
}

// What asn_read_pubkey gives as the length of a BIT STRING without contents: "no key bits".
constexpr uint32_t no_key_bits = std::numeric_limits<uint32_t>::max();

bool fits(const pkider_public_key_t& key) {
    return fits_32_bits(key.alg_oid.size) && fits_32_bits(key.params.size) && key.key.size < no_key_bits;
}

asn_pubkey_t public_key_of(const pkider_public_key_t& key) {
    asn_pubkey_t out;
    store(key.alg_oid, out.alg_oid_len, out.alg_oid);
    store(key.params, out.params_len, out.params);
    store(key.key, out.key_len, out.key);
    if (key.key.data == nullptr) out.key_len = no_key_bits;
    return out;
}

bool is_missing_span(const pkider_bytes_t& span) {
    return is_missing(span.data, span.size);
}

} // namespace

pkider_status_t pkider_alg_find_hash_oid(pkider_alg_t alg, pkider_bytes_t* out) {
    return show(PKI_HASH_ALG_TO_OID(static_cast<pki_alg_t>(alg)), out);
}

pkider_status_t pkider_alg_find_key_oid(pkider_alg_t alg, pkider_bytes_t* out) {
    return show(PKI_KEY_ALG_TO_OID(static_cast<pki_alg_t>(alg)), out);
}

pkider_status_t pkider_alg_find_signature_oid(pkider_alg_t alg, pkider_bytes_t* out) {
    return show(PKI_CERT_SIGN_ALG_TO_OID(static_cast<pki_alg_t>(alg)), out);
}

pkider_status_t pkider_alg_find_ike_identifier(pkider_alg_t alg, pkider_bytes_t* out) {
    return show(asn_form_ike_signalg(static_cast<pki_alg_t>(alg)), out);
}

pkider_status_t pkider_alg_find(const uint8_t* oid, uint64_t size, pkider_alg_t* out) {
    return find_alg<PKI_OID_TO_ALG>(oid, size, out);
}

pkider_status_t pkider_alg_find_hash(const uint8_t* oid, uint64_t size, pkider_alg_t* out) {
    return find_alg<PKI_OID_TO_HASH_ALG>(oid, size, out);
}

pkider_status_t pkider_alg_find_key(const uint8_t* oid, uint64_t size, pkider_alg_t* out) {
    return find_alg<PKI_OID_TO_KEY_ALG>(oid, size, out);
}

pkider_status_t pkider_alg_find_signature(const uint8_t* oid, uint64_t size, pkider_alg_t* out) {
    return find_alg<PKI_OID_TO_CERT_SIGN_ALG>(oid, size, out);
}

pkider_status_t pkider_digest_info_write(pkider_alg_t hash, const uint8_t* digest, uint64_t size,
                                         pkider_output_t* out) {
    clear(out);
    if (out == nullptr || is_missing(digest, size)) return PKIDER_ARGUMENT;
    return at_border([&] {
        std::string der(text_of(reinterpret_cast<const char*>(digest), size));
        asn_add_alg_to_digest(der, static_cast<pki_alg_t>(hash));
        return deliver(der, *out);
    });
}

pkider_status_t pkider_digest_info_read(const uint8_t* der, uint64_t size, pkider_bytes_t* oid) {
    return at_border([&] {
        std::string copy;
        asn_algorid_t found;
        return read_der(
            der, size, oid,
            [&](uint32_t len) {
                copy = text_of(reinterpret_cast<const char*>(der), len);
                return asn_read_alg_from_digest(&found, copy);
            },
            [&](pkider_bytes_t& out) {
                const auto* const start = reinterpret_cast<const uint8_t*>(copy.data());
                out = span_of(found.oid_len, der + (found.oid - start));
            });
    });
}

pkider_status_t pkider_public_key_read(const uint8_t* der, uint64_t size, pkider_public_key_t* out) {
    asn_pubkey_t key;
    return read_der(
        der, size, out, [&](uint32_t len) { return asn_read_pubkey(der, static_cast<int32_t>(len), key); },
        [&](pkider_public_key_t& record) {
            record.alg_oid = span_of(key.alg_oid_len, key.alg_oid);
            record.params = span_of(key.params_len, key.params);
            if (key.key_len != no_key_bits) record.key = span_of(key.key_len, key.key);
        });
}

pkider_status_t pkider_rsa_public_key_read(const pkider_public_key_t* key, pkider_rsa_public_key_t* out) {
    if (out == nullptr) return PKIDER_ARGUMENT;
    *out = {};
    if (key == nullptr || is_missing_span(key->key)) return PKIDER_ARGUMENT;
    if (!fits(*key)) return PKIDER_TOO_LONG;
    asn_rsa_pubkey_t rsa;
    if (!asn_read_rsa_pubkey(public_key_of(*key), rsa)) return PKIDER_MALFORMED;
    out->modulus = span_of(rsa.modulus_len, rsa.modulus);
    out->exponent = span_of(rsa.exponent_len, rsa.exponent);
    return PKIDER_OK;
}

pkider_status_t pkider_gost_public_key_read(const pkider_public_key_t* key, pkider_gost_public_key_t* out) {
    if (out == nullptr) return PKIDER_ARGUMENT;
    *out = {};
    if (key == nullptr || is_missing_span(key->key) || is_missing_span(key->params)) return PKIDER_ARGUMENT;
    if (!fits(*key)) return PKIDER_TOO_LONG;
    asn_gost_pubkey_t gost;
    if (!asn_read_gost_pubkey(public_key_of(*key), gost)) return PKIDER_MALFORMED;
    out->public_key_param_set = span_of(gost.public_key_param_set_len, gost.public_key_param_set);
    out->digest_param_set = span_of(gost.digest_param_set_len, gost.digest_param_set);
    out->encryption_param_set = span_of(gost.encryption_param_set_len, gost.encryption_param_set);
    out->key = span_of(gost.key_len, gost.key);
    return PKIDER_OK;
}

pkider_status_t pkider_dsa_signature_read(const uint8_t* der, uint64_t size, pkider_dsa_signature_t* out) {
    asn_dsa_certsign_t signature;
    return read_der(
        der, size, out, [&](uint32_t len) { return asn_read_dsa_certsign(der, len, signature); },
        [&](pkider_dsa_signature_t& record) {
            record.r = span_of(signature.r_len, signature.r);
            record.s = span_of(signature.s_len, signature.s);
        });
}

pkider_status_t pkider_ike_signature_read(const uint8_t* der, uint64_t size, pkider_ike_signature_t* out) {
    asn_ike_signalg_t signature;
    return read_der(
        der, size, out, [&](uint32_t len) { return asn_read_ike_signalg(der, len, signature); },
        [&](pkider_ike_signature_t& record) {
            record.oid = span_of(signature.oid_len, signature.oid);
            record.params = span_of(signature.params_len, signature.params);
        });
}

pkider_status_t pkider_ike_signature_find_alg(const pkider_ike_signature_t* signature, pkider_alg_t* out) {
    if (out == nullptr) return PKIDER_ARGUMENT;
    *out = PKIDER_ALG_NONE;
    if (signature == nullptr) return PKIDER_ARGUMENT;
    if (is_missing_span(signature->oid) || is_missing_span(signature->params)) return PKIDER_ARGUMENT;
    if (!fits_32_bits(signature->oid.size) || !fits_32_bits(signature->params.size)) return PKIDER_TOO_LONG;
    asn_ike_signalg_t record;
    store(signature->oid, record.oid_len, record.oid);
    store(signature->params, record.params_len, record.params);
    return show(record.to_pki_alg(), *out);
}
