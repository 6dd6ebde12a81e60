// Signature algorithms as IKE sends them: complete AlgorithmIdentifiers, ready-made (RFC 7427 3).
//
// RSA carries an explicit NULL; DSA and GOST carry no parameters. RSASSA-PSS carries the hash at most: the mask
// generation function, the salt length and the trailer stay at their defaults (RFC 4055 3.1), also where RFC 7427 A.4
// spells out others. docs/ike_signature_identifiers.md compares the two. Wanted:
// IkeRows.RequiredPssNamesNothingButTheHash.
#pragma once

#include "alg/alg_row.h"

namespace pkider {

template <hex_text_t Hex>
inline constexpr PKI_OID der = oid<Hex>;

// The values and the order of cert_sign_rows.
// clang-format off
inline constexpr alg_row_t ike_rows[] = {
    {PKI_ALG_SHA1_RSA,                            der<"30 0D 06 09 2A 86 48 86 F7 0D 01 01 05 05 00">},
    {PKI_ALG_SHA1_RSA,                            der<"30 09 06 05 2B 0E 03 02 1D 05 00">},
    {PKI_ALG_SHA224_RSA,                          der<"30 0D 06 09 2A 86 48 86 F7 0D 01 01 0E 05 00">},
    {PKI_ALG_SHA256_RSA,                          der<"30 0D 06 09 2A 86 48 86 F7 0D 01 01 0B 05 00">},
    {PKI_ALG_SHA384_RSA,                          der<"30 0D 06 09 2A 86 48 86 F7 0D 01 01 0C 05 00">},
    {PKI_ALG_SHA512_RSA,                          der<"30 0D 06 09 2A 86 48 86 F7 0D 01 01 0D 05 00">},
    {PKI_ALG_MD2_RSA,                             der<"30 0D 06 09 2A 86 48 86 F7 0D 01 01 02 05 00">},
    {PKI_ALG_MD5_RSA,                             der<"30 0D 06 09 2A 86 48 86 F7 0D 01 01 04 05 00">},
    {PKI_ALG_SHA1_DSA,                            der<"30 09 06 07 2A 86 48 CE 38 04 03">},
    {PKI_ALG_RSASSA_PSS,                          der<"30 0B 06 09 2A 86 48 86 F7 0D 01 01 0A">},
    {PKI_ALG_RSASSA_PSS_SHA1,                     der<"30 0D 06 09 2A 86 48 86 F7 0D 01 01 0A 30 00">},
    {PKI_ALG_RSASSA_PSS_SHA224,                   der<"30 1E 06 09 2A 86 48 86 F7 0D 01 01 0A "
                                                      "30 11 A0 0F 30 0D 06 09 60 86 48 01 65 03 04 02 04 05 00">},
    {PKI_ALG_RSASSA_PSS_SHA256,                   der<"30 1E 06 09 2A 86 48 86 F7 0D 01 01 0A "
                                                      "30 11 A0 0F 30 0D 06 09 60 86 48 01 65 03 04 02 01 05 00">},
    {PKI_ALG_RSASSA_PSS_SHA384,                   der<"30 1E 06 09 2A 86 48 86 F7 0D 01 01 0A "
                                                      "30 11 A0 0F 30 0D 06 09 60 86 48 01 65 03 04 02 02 05 00">},
    {PKI_ALG_RSASSA_PSS_SHA512,                   der<"30 1E 06 09 2A 86 48 86 F7 0D 01 01 0A "
                                                      "30 11 A0 0F 30 0D 06 09 60 86 48 01 65 03 04 02 03 05 00">},
    {PKI_ALG_GOST3411_94_GOST3410_94,             der<"30 08 06 06 2A 85 03 02 02 04">},
    {PKI_ALG_GOST3411_94_GOST3410_94_CPRO,        der<"30 08 06 06 2A 85 03 02 02 04">},
    {PKI_ALG_GOST3411_94_GOST3410_94_TIK,         der<"30 0B 06 09 2B 06 01 04 01 9C 56 01 06">},
    {PKI_ALG_GOST3411_94_GOST3410_94_SIGNALCOM,   der<"30 0C 06 0A 2B 06 01 04 01 AD 59 01 03 01">},
    {PKI_ALG_GOST3411_94_GOST3410_2001,           der<"30 08 06 06 2A 85 03 02 02 03">},
    {PKI_ALG_GOST3411_94_GOST3410_2001_CPRO,      der<"30 08 06 06 2A 85 03 02 02 03">},
    {PKI_ALG_GOST3411_94_GOST3410_2001_SIGNALCOM, der<"30 0C 06 0A 2B 06 01 04 01 AD 59 01 03 02">},
    {PKI_ALG_GOST3411_2012_256_GOST3410_2012_256, der<"30 0A 06 08 2A 85 03 07 01 01 03 02">},
    {PKI_ALG_GOST3411_2012_512_GOST3410_2012_512, der<"30 0A 06 08 2A 85 03 07 01 01 03 03">},
};
// clang-format on

} // namespace pkider
