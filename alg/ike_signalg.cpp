#include <pkider/alg.h>

#include "alg/oid_index.h"
#include "alg/pss_params.h"
#include "der/element_steps.h"

// AlgorithmIdentifier ::= SEQUENCE { algorithm OBJECT IDENTIFIER, parameters ANY DEFINED BY algorithm OPTIONAL }
bool asn_read_ike_signalg(const uint8_t* der, uint32_t len, asn_ike_signalg_t& out) {
    using namespace pkider;

    const asn_element_t input = asn_contents(der, len);
    asn_element_t rest = input, algorithm;
    if (!asn_next_element(asn_tag_t::SEQUENCE, rest, algorithm)) return false;
    if (!asn_next_contents_or_null(asn_tag_t::OBJECT_IDENTIFIER, algorithm, out.oid_len, out.oid)) return false;

    // Up to the end of the input, not of the SEQUENCE. Required: IkeSignalg.RequiredBytesAfterTheElementAreParameters.
    asn_store_contents(asn_from_place(input, algorithm.content), out.params_len, out.params);
    return true;
}

pki_alg_t asn_ike_signalg_t::to_pki_alg() const {
    using namespace pkider;

    // The index itself: exported functions are called through a table. RSASSA-PSS apart: only it needs a guard of the
    // stack. Bench: alg/ike_algorithm.
    const pki_alg_t alg = find_alg(oid, oid_len, &known_oid_t::cert_sign);
    return alg == PKI_ALG_RSASSA_PSS ? asn_pss_params_to_alg(params, params_len) : alg;
}
