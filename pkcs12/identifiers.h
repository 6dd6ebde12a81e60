// The identifiers of PKCS#7 content types, PKCS#12 bags and their attributes (RFC 2315 14, RFC 7292 appendix D,
// RFC 2985 appendix A).
#pragma once

#include "der/asn_constant.h"

namespace pkider::pkcs12_oid {

// 1.2.840.113549.1 ...
template <uint8_t... Last>
inline constexpr auto pkcs = asn_oid<0x2A, 0x86, 0x48, 0x86, 0xF7, 0x0D, 0x01, Last...>;

inline constexpr auto data = pkcs<0x07, 0x01>;                                    // 1.2.840.113549.1.7.1
inline constexpr auto encrypted_data = pkcs<0x07, 0x06>;                          // 1.2.840.113549.1.7.6
inline constexpr auto key_bag = pkcs<0x0C, 0x0A, 0x01, 0x01>;                     // 1.2.840.113549.1.12.10.1.1
inline constexpr auto shrouded_key_bag = pkcs<0x0C, 0x0A, 0x01, 0x02>;            // 1.2.840.113549.1.12.10.1.2
inline constexpr auto cert_bag = pkcs<0x0C, 0x0A, 0x01, 0x03>;                    // 1.2.840.113549.1.12.10.1.3
inline constexpr auto x509_certificate = pkcs<0x09, 0x16, 0x01>;                  // 1.2.840.113549.1.9.22.1
inline constexpr auto friendly_name = pkcs<0x09, 0x14>;                           // 1.2.840.113549.1.9.20
inline constexpr auto local_key_id = pkcs<0x09, 0x15>;                            // 1.2.840.113549.1.9.21
inline constexpr auto gost_3411_94 = asn_oid<0x2A, 0x85, 0x03, 0x02, 0x02, 0x09>; // 1.2.643.2.2.9

} // namespace pkider::pkcs12_oid
