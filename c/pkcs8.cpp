#include <pkider/pkcs8.h>

#include "c/border.h"
#include "c/encrypted_gost_key.h"
#include "c/output.h"
#include "c/spans.h"
#include "c/wiping.h"

#include <string>

using namespace pkider::c;

pkider_status_t pkider_private_key_info_read(const uint8_t* der, uint64_t size, pkider_private_key_info_t* out) {
    if (out == nullptr) return PKIDER_ARGUMENT;
    *out = {};
    if (is_missing(der, size)) return PKIDER_ARGUMENT;
    if (!fits_32_bits(size)) return PKIDER_TOO_LONG;
    asn_pkcs8_priv_key_info_t info;
    if (!asn_read_pkcs8_priv_key_info(der, static_cast<uint32_t>(size), info)) return PKIDER_MALFORMED;
    out->alg_oid = span_of(info.alg_oid_len, info.alg_oid);
    out->key = span_of(info.private_key_len, info.private_key);
    return PKIDER_OK;
}

pkider_status_t pkider_gost_private_key_read(const uint8_t* der, uint64_t size, pkider_gost_private_key_t* out) {
    if (out == nullptr) return PKIDER_ARGUMENT;
    *out = {};
    if (is_missing(der, size)) return PKIDER_ARGUMENT;
    if (!fits_32_bits(size)) return PKIDER_TOO_LONG;
    pkcs8_pki_gost_t key;
    if (!asn_read_pkcs8_pki_gost(der, size, key)) return PKIDER_MALFORMED;
    *out = {key.key_type, span_of(key.key_len, key.key)};
    return PKIDER_OK;
}

pkider_status_t pkider_gost_private_key_write(const pkider_gost_private_key_t* key, pkider_output_t* out) {
    clear(out);
    if (key == nullptr || out == nullptr) return PKIDER_ARGUMENT;
    return at_border([&] {
        pkcs8_pki_gost_t record;
        record.key_type = key->key_type;
        store(key->key, record.key_len, record.key);
        std::string der;
        asn_write_pkcs8_pki_gost(record, der);
        const pkider_status_t status = deliver(der, *out);
        wipe(der);
        return status;
    });
}

pkider_status_t pkider_encrypted_gost_key_read(const uint8_t* der, uint64_t size, pkider_encrypted_gost_key_t* out) {
    if (out == nullptr) return PKIDER_ARGUMENT;
    *out = {};
    if (is_missing(der, size)) return PKIDER_ARGUMENT;
    pkcs8_encrypted_pki_gost_t key;
    if (!asn_read_pkcs8_encrypted_pki_gost(der, size, key)) return PKIDER_MALFORMED;
    *out = shown(key);
    return PKIDER_OK;
}

pkider_status_t pkider_encrypted_gost_key_write(const pkider_encrypted_gost_key_t* key, pkider_output_t* out) {
    clear(out);
    if (key == nullptr || out == nullptr) return PKIDER_ARGUMENT;
    return at_border([&] {
        std::string der;
        asn_write_pkcs8_encrypted_pki_gost(record_of(*key), der);
        return deliver(der, *out);
    });
}
