// Identifier octets of PKCS#12 that der.h does not name.
#pragma once

#include <pkider/der.h>

namespace pkider::pkcs12_tag {

inline constexpr auto bmp_string = static_cast<asn_tag_t::Type>(0x1E);
inline constexpr auto primitive_0 = static_cast<asn_tag_t::Type>(0x80); ///< [0] IMPLICIT OCTET STRING, RFC 2315 10.1.

} // namespace pkider::pkcs12_tag
