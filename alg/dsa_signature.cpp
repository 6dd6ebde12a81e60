#include <pkider/alg.h>

#include "der/element_steps.h"

// Dss-Sig-Value ::= SEQUENCE { r INTEGER, s INTEGER }                   (RFC 3279 2.2.2)
bool asn_read_dsa_certsign(const uint8_t* der, uint32_t len, asn_dsa_certsign_t& out) {
    using namespace pkider;

    const asn_element_t input = asn_contents(der, len);
    asn_element_t rest = input, numbers;
    if (!asn_next_element(asn_tag_t::SEQUENCE, rest, numbers)) return false;
    if (!asn_next_contents_or_null(asn_tag_t::INTEGER, numbers, out.r_len, out.r)) return false;

    // Bounded by the input, not by the SEQUENCE. Required: DsaCertsign.RequiredSecondNumberMayRunPastTheSequence.
    rest = asn_from_place(input, numbers.content);
    return asn_next_contents(asn_tag_t::INTEGER, rest, out.s_len, out.s);
}
