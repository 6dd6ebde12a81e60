// The DER of a Name (X.501 RDNSequence) to a line of text.
#pragma once

#include <pkider/dn.h>

#include <cstdint>
#include <string>

namespace pkider {

/// asn_dn_to_printable, with the fault it found: DN_FAULT_NOT_A_NAME to DN_FAULT_NUMERIC_STRING, at a byte of the DER.
asn_dn_result_t asn_dn_to_printable_r(const uint8_t* der, uint32_t length, std::string& out, PrintableDnOrder order,
                                      oid_map_handle_t map);

} // namespace pkider
