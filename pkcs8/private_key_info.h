// The beginning of a PrivateKeyInfo, which its two readers share.
#pragma once

#include "der/element_reader.h"

namespace pkider {

/// Steps over version and privateKeyAlgorithm. The parameters, of which nothing is read here, are next in `algorithm`.
inline bool read_key_algorithm(asn_element_t& info, asn_element_t& algorithm, asn_element_t& oid) {
    asn_element_t version;
    return asn_next_element(asn_tag_t::INTEGER, info, version) &&
           asn_next_element(asn_tag_t::SEQUENCE, info, algorithm) &&
           asn_next_element(asn_tag_t::OBJECT_IDENTIFIER, algorithm, oid);
}

} // namespace pkider
