// Object identifiers in dotted text, encoded by the compiler as those of the library are.
//
//     if (type.holds(oid<"1.2.840.113549.1.7.1">)) ...
#pragma once

#include "der/oid_contents.h"
#include "tools/pkider/formats/der_cursor.h"

namespace tool {

/// The contents octets of an object identifier.
template <pkider::literal_t Dotted>
inline constexpr bytes_t oid{pkider::oid_contents<Dotted>};

} // namespace tool
