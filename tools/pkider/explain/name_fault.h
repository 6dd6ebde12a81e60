// Why a Name cannot be printed. The library's exported printer answers yes or no; this finds the place.
#pragma once

#include "tools/pkider/base/failure.h"
#include "tools/pkider/formats/der_cursor.h"

#include <pkider/dn.h>
#include <pkider/oid.h>

#include <string>

namespace tool {

/// A fault in a Name with the library's code for it, a fault of DER.
struct name_fault_t : der_fault_t {
    name_fault_t(asn_dn_fault_t library_code, const der_fault_t& fault) : der_fault_t(fault), code(library_code) {}
    asn_dn_fault_t code;
};

/// The Name at the start of the bytes as one line of text, as the library prints it. Throws name_fault_t; its offset
/// counts from the start of the bytes, to which `offset` is added.
std::string print_name(bytes_t der, oid_map_handle_t map, bool reversed = false, std::uint64_t offset = 0);

} // namespace tool
