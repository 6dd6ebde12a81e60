// Hash algorithms and their object identifiers (RFC 3279 2.1, RFC 4055 2.1, RFC 4491 2.1, RFC 9215).
#pragma once

#include "alg/alg_row.h"

namespace pkider {

// Both directions take the first row that matches, so an object identifier that a variant shares gives
// the standard value above it. Required: OidToAlg.GivesTheFirstRow/RequiredGostHashIsStandard.
// clang-format off
inline constexpr alg_row_t hash_rows[] = {
    {PKI_ALG_MD2,               oid<"1.2.840.113549.2.2">},
    {PKI_ALG_MD5,               oid<"1.2.840.113549.2.5">},
    {PKI_ALG_SHA,               oid<"1.3.14.3.2.18">},
    {PKI_ALG_SHA1,              oid<"1.3.14.3.2.26">},
    {PKI_ALG_SHA224,            oid<"2.16.840.1.101.3.4.2.4">},
    {PKI_ALG_SHA256,            oid<"2.16.840.1.101.3.4.2.1">},
    {PKI_ALG_SHA384,            oid<"2.16.840.1.101.3.4.2.2">},
    {PKI_ALG_SHA512,            oid<"2.16.840.1.101.3.4.2.3">},
    {PKI_ALG_GOST3411_94,       oid<"1.2.643.2.2.9">},
    {PKI_ALG_GOST3411_94_CPRO,  oid<"1.2.643.2.2.9">},
    {PKI_ALG_GOST3411_94_TIK,   oid<"1.3.6.1.4.1.3670.1.5">},
    {PKI_ALG_GOST3411_2012_256, oid<"1.2.643.7.1.1.2.2">},
    {PKI_ALG_GOST3411_2012_512, oid<"1.2.643.7.1.1.2.3">},
};
// clang-format on

} // namespace pkider
