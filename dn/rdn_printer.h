// The attributes of any RDN as text: `CN=a+OU=b`.
#pragma once

#include "der/element_reader.h"
#include "dn/text_sink.h"

#include <pkider/dn.h>

#include <cstdint>

namespace pkider {

/// Prints an RDN. An empty one prints as nothing.
///
/// @param der  The beginning of the Name, from which the position of a fault is counted.
/// @param rdn  A cursor over the contents of the SET; walked to their end, or to the fault.
/// @param out  After a fault it keeps what was printed before.
/// @return     DN_FAULT_NOT_A_SEQUENCE to DN_FAULT_NUMERIC_STRING.
asn_dn_result_t dn_print_rdn(const uint8_t* der, asn_element_t& rdn, oid_map_handle_t map, text_sink_t& out);

/// Prints an attribute type and "=": the short name where `map` has one, else dotted text.
///
/// @return  False when neither can be had; the arcs that could be read have then been printed.
bool dn_attr_type_to_printable(const uint8_t* oid, uint64_t length, text_sink_t& out, oid_map_handle_t map);

} // namespace pkider
