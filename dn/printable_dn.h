// The printable form of a distinguished name, split into its type=value pairs. docs/dn_syntax.md describes the
// form.
#pragma once

#include "dn/value_decoder.h"

#include <pkider/dn.h>

#include <vector>

namespace pkider {

/// printable_dn_parse, with the fault it found.
asn_dn_result_t printable_dn_split(const char* dn, std::vector<RDNdescr_t>& out);

} // namespace pkider
