// Public-key algorithms and their object identifiers (RFC 3279 2.3, RFC 4491 2.3, RFC 9215).
#pragma once

#include "alg/alg_row.h"

namespace pkider {

// Both directions take the first row that matches, so an object identifier that a variant shares gives
// the standard value above it. Required: OidToAlg.GivesTheFirstRow/RequiredGostKeyIsStandard.
// clang-format off
inline constexpr alg_row_t key_rows[] = {
    {PKI_ALG_RSA,                     oid<"1.2.840.113549.1.1.1">},
    {PKI_ALG_DSA,                     oid<"1.2.840.10040.4.1">},
    {PKI_ALG_GOST3410_94,             oid<"1.2.643.2.2.20">},
    {PKI_ALG_GOST3410_94_CPRO,        oid<"1.2.643.2.2.20">},
    {PKI_ALG_GOST3410_94_TIK,         oid<"1.3.6.1.4.1.3670.1.10">},
    {PKI_ALG_GOST3410_94_SIGNALCOM,   oid<"1.3.6.1.4.1.5849.1.1.5">},
    {PKI_ALG_GOST3410_2001,           oid<"1.2.643.2.2.19">},
    {PKI_ALG_GOST3410_2001_CPRO,      oid<"1.2.643.2.2.19">},
    {PKI_ALG_GOST3410_2001_SIGNALCOM, oid<"1.3.6.1.4.1.5849.1.6.2">},
    {PKI_ALG_GOST3410_2012_256,       oid<"1.2.643.7.1.1.1.1">},
    {PKI_ALG_GOST3410_2012_512,       oid<"1.2.643.7.1.1.1.2">},
};
// clang-format on

} // namespace pkider
