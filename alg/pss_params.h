// The parameters of an RSASSA-PSS AlgorithmIdentifier, of which the library needs the hash (RFC 4055 3.1).
#pragma once

#include <pkider/alg.h>

#include <cstdint>

namespace pkider {

/// Reads RSASSA-PSS-params. Absent fields are skipped; the others are checked for their form, in order, and the first
/// element out of order ends the reading with success, as bytes after the parameters do.
///
/// @param der  First byte of the element.
/// @param len  Bytes available from `der`.
/// @param out  Receives the span of the hash's object identifier; 0 and null when the parameters leave it at its
///             default, SHA-1. A failure after the object identifier leaves its span there.
/// @return     False when the parameters are not a SEQUENCE or one of their fields is malformed.
bool asn_read_pss_params(const uint8_t* der, uint32_t len, asn_algorid_t& out);

/// RSASSA-PSS with the hash of its parameters; with SHA-1 when `params_len` is 0.
///
/// @return  PKI_ALG_NONE when the parameters are malformed or the hash is unknown.
pki_alg_t asn_pss_params_to_alg(const uint8_t* params, uint32_t params_len);

} // namespace pkider
