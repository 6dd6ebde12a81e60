// Certificate signature algorithms and their object identifiers (RFC 3279 2.2, RFC 4055 3 and 5, RFC 4491 2.2,
// RFC 9215).
#pragma once

#include "alg/alg_row.h"

namespace pkider {

// Both directions take the first row that matches: SHA-1 with RSA is written with the first of its two object
// identifiers and read from both, and the one object identifier of RSASSA-PSS goes back to the value without a hash.
// Required: OidToAlg.GivesTheFirstRow/RequiredPssNamesNoHash.
// clang-format off
inline constexpr alg_row_t cert_sign_rows[] = {
    {PKI_ALG_SHA1_RSA,                            oid<"1.2.840.113549.1.1.5">},
    {PKI_ALG_SHA1_RSA,                            oid<"1.3.14.3.2.29">},
    {PKI_ALG_SHA224_RSA,                          oid<"1.2.840.113549.1.1.14">},
    {PKI_ALG_SHA256_RSA,                          oid<"1.2.840.113549.1.1.11">},
    {PKI_ALG_SHA384_RSA,                          oid<"1.2.840.113549.1.1.12">},
    {PKI_ALG_SHA512_RSA,                          oid<"1.2.840.113549.1.1.13">},
    {PKI_ALG_MD2_RSA,                             oid<"1.2.840.113549.1.1.2">},
    {PKI_ALG_MD5_RSA,                             oid<"1.2.840.113549.1.1.4">},
    {PKI_ALG_SHA1_DSA,                            oid<"1.2.840.10040.4.3">},
    {PKI_ALG_RSASSA_PSS,                          oid<"1.2.840.113549.1.1.10">},
    {PKI_ALG_RSASSA_PSS_SHA1,                     oid<"1.2.840.113549.1.1.10">},
    {PKI_ALG_RSASSA_PSS_SHA224,                   oid<"1.2.840.113549.1.1.10">},
    {PKI_ALG_RSASSA_PSS_SHA256,                   oid<"1.2.840.113549.1.1.10">},
    {PKI_ALG_RSASSA_PSS_SHA384,                   oid<"1.2.840.113549.1.1.10">},
    {PKI_ALG_RSASSA_PSS_SHA512,                   oid<"1.2.840.113549.1.1.10">},
    {PKI_ALG_GOST3411_94_GOST3410_94,             oid<"1.2.643.2.2.4">},
    {PKI_ALG_GOST3411_94_GOST3410_94_CPRO,        oid<"1.2.643.2.2.4">},
    {PKI_ALG_GOST3411_94_GOST3410_94_TIK,         oid<"1.3.6.1.4.1.3670.1.6">},
    {PKI_ALG_GOST3411_94_GOST3410_94_SIGNALCOM,   oid<"1.3.6.1.4.1.5849.1.3.1">},
    {PKI_ALG_GOST3411_94_GOST3410_2001,           oid<"1.2.643.2.2.3">},
    {PKI_ALG_GOST3411_94_GOST3410_2001_CPRO,      oid<"1.2.643.2.2.3">},
    {PKI_ALG_GOST3411_94_GOST3410_2001_SIGNALCOM, oid<"1.3.6.1.4.1.5849.1.3.2">},
    {PKI_ALG_GOST3411_2012_256_GOST3410_2012_256, oid<"1.2.643.7.1.1.3.2">},
    {PKI_ALG_GOST3411_2012_512_GOST3410_2012_512, oid<"1.2.643.7.1.1.3.3">},
};
// clang-format on

} // namespace pkider
