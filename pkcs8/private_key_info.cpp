#include "pkcs8/private_key_info.h"

#include "der/element_steps.h"

#include <pkider/pkcs8.h>

// PrivateKeyInfo ::= SEQUENCE {                                                                       (RFC 5208 5)
//     version              INTEGER,
//     privateKeyAlgorithm  SEQUENCE { algorithm OBJECT IDENTIFIER, parameters ANY },
//     privateKey           OCTET STRING,
//     attributes           [0] OPTIONAL }
//
// The parameters are not optional here, and everything after the privateKey is ignored.
bool asn_read_pkcs8_priv_key_info(const uint8_t* der, uint32_t len, asn_pkcs8_priv_key_info_t& out) {
    using namespace pkider;

    asn_element_t input = asn_contents(der, len);
    asn_element_t info, algorithm, oid, parameters;
    if (!asn_next_element(asn_tag_t::SEQUENCE, input, info)) return false;
    if (!read_key_algorithm(info, algorithm, oid)) return false;
    asn_store_contents(oid, out.alg_oid_len, out.alg_oid);
    if (!asn_next_element(asn_tag_t::ANY, algorithm, parameters)) return false;

    asn_element_t key;
    if (!asn_next_element(asn_tag_t::OCTET_STRING, info, key)) return false;
    asn_store_contents(key, out.private_key_len, out.private_key);
    return true;
}
