#include <pkider/alg.h>

#include "alg/ike_rows.h"
#include "alg/oid_index.h"

namespace pkider {
namespace {

template <std::size_t Size>
const PKI_OID& find_oid(const alg_row_t (&rows)[Size], pki_alg_t alg) {
    const alg_row_t* const row = find_row(rows, alg);
    return row != nullptr ? row->oid : empty_oid;
}

} // namespace
} // namespace pkider

const PKI_OID& PKI_HASH_ALG_TO_OID(pki_alg_t alg) {
    return pkider::find_oid(pkider::hash_rows, alg);
}

const PKI_OID& PKI_KEY_ALG_TO_OID(pki_alg_t alg) {
    return pkider::find_oid(pkider::key_rows, alg);
}

const PKI_OID& PKI_CERT_SIGN_ALG_TO_OID(pki_alg_t alg) {
    return pkider::find_oid(pkider::cert_sign_rows, alg);
}

const PKI_OID& asn_form_ike_signalg(pki_alg_t alg) {
    return pkider::find_oid(pkider::ike_rows, alg);
}

pki_alg_t PKI_OID_TO_ALG(const uint8_t* oid, uint32_t len) {
    const pkider::known_oid_t* const known = pkider::oid_index.find(oid, len);
    return known != nullptr ? known->first : PKI_ALG_NONE;
}

pki_alg_t PKI_OID_TO_HASH_ALG(const uint8_t* oid, uint32_t len) {
    return pkider::find_alg(oid, len, &pkider::known_oid_t::hash);
}

pki_alg_t PKI_OID_TO_KEY_ALG(const uint8_t* oid, uint32_t len) {
    return pkider::find_alg(oid, len, &pkider::known_oid_t::key);
}

pki_alg_t PKI_OID_TO_CERT_SIGN_ALG(const uint8_t* oid, uint32_t len) {
    return pkider::find_alg(oid, len, &pkider::known_oid_t::cert_sign);
}
