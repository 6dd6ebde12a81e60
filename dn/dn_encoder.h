// A line of text to the DER of a Name (X.501 RDNSequence).
#pragma once

#include <pkider/dn.h>

#include <string>

namespace pkider {

/// printable_to_asn_dn, with the fault it found: DN_FAULT_TYPE_SYNTAX to DN_FAULT_UNESCAPED_SPECIAL.
///
/// The position of a fault inside a quoted or "#" value is one before the fault.
/// Required: DnEncoderFault.IsReported/RequiredHexAndQuotedPositionsAreOneBeforeTheFault.
asn_dn_result_t printable_to_asn_dn_r(const char* dn, std::string& der, oid_map_handle_t map);

} // namespace pkider
