// The identifiers of PKCS#7 content types, PKCS#12 bags and their attributes (RFC 2315 14, RFC 7292 appendix D,
// RFC 2985 appendix A).
#pragma once

#include "der/asn_constant.h"

namespace pkider::pkcs12_oid {

// clang-format off
inline constexpr auto data             = asn_oid<"1.2.840.113549.1.7.1">;
inline constexpr auto encrypted_data   = asn_oid<"1.2.840.113549.1.7.6">;
inline constexpr auto key_bag          = asn_oid<"1.2.840.113549.1.12.10.1.1">;
inline constexpr auto shrouded_key_bag = asn_oid<"1.2.840.113549.1.12.10.1.2">;
inline constexpr auto cert_bag         = asn_oid<"1.2.840.113549.1.12.10.1.3">;
inline constexpr auto x509_certificate = asn_oid<"1.2.840.113549.1.9.22.1">;
inline constexpr auto friendly_name    = asn_oid<"1.2.840.113549.1.9.20">;
inline constexpr auto local_key_id     = asn_oid<"1.2.840.113549.1.9.21">;
inline constexpr auto gost_3411_94     = asn_oid<"1.2.643.2.2.9">;
// clang-format on

} // namespace pkider::pkcs12_oid
