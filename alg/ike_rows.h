// Signature algorithms as IKE sends them: complete AlgorithmIdentifiers, ready-made (RFC 7427 3).
//
//     AlgorithmIdentifier ::= SEQUENCE { algorithm OBJECT IDENTIFIER, parameters ANY DEFINED BY algorithm OPTIONAL }
//
// RSA carries an explicit NULL; DSA and GOST carry no parameters. RSASSA-PSS carries the hash at most: the mask
// generation function, the salt length and the trailer stay at their defaults (RFC 4055 3.1), also where RFC 7427 A.4
// spells out others. docs/ike_signature_identifiers.md compares the two. Required:
// IkeRows.RequiredPssNamesNothingButTheHash.
#pragma once

#include "alg/alg_row.h"
#include "der/asn_constant.h"

namespace pkider {

template <literal_t Algorithm, auto... Parameters>
inline constexpr auto algorithm_der = asn_constant_sequence(asn_oid<Algorithm>, Parameters...);

template <literal_t Algorithm, auto... Parameters>
inline constexpr PKI_OID algorithm = record_of(algorithm_der<Algorithm, Parameters...>);

// RSASSA-PSS-params ::= SEQUENCE { hashAlgorithm [0] HashAlgorithm DEFAULT sha1Identifier, ... }   (RFC 4055 3.1)
inline constexpr auto pss_defaults = asn_constant_sequence();

template <literal_t Hash>
inline constexpr auto pss_hash =
    asn_constant_sequence(asn_constant_element(asn_tag_t::CONTEXT_0, asn_constant_sequence(asn_oid<Hash>, asn_null)));

// The values and the order of cert_sign_rows.
// clang-format off
inline constexpr alg_row_t ike_rows[] = {
    {PKI_ALG_SHA1_RSA,                            algorithm<"1.2.840.113549.1.1.5",  asn_null>},
    {PKI_ALG_SHA1_RSA,                            algorithm<"1.3.14.3.2.29",         asn_null>},
    {PKI_ALG_SHA224_RSA,                          algorithm<"1.2.840.113549.1.1.14", asn_null>},
    {PKI_ALG_SHA256_RSA,                          algorithm<"1.2.840.113549.1.1.11", asn_null>},
    {PKI_ALG_SHA384_RSA,                          algorithm<"1.2.840.113549.1.1.12", asn_null>},
    {PKI_ALG_SHA512_RSA,                          algorithm<"1.2.840.113549.1.1.13", asn_null>},
    {PKI_ALG_MD2_RSA,                             algorithm<"1.2.840.113549.1.1.2",  asn_null>},
    {PKI_ALG_MD5_RSA,                             algorithm<"1.2.840.113549.1.1.4",  asn_null>},
    {PKI_ALG_SHA1_DSA,                            algorithm<"1.2.840.10040.4.3">},
    {PKI_ALG_RSASSA_PSS,                          algorithm<"1.2.840.113549.1.1.10">},
    {PKI_ALG_RSASSA_PSS_SHA1,                     algorithm<"1.2.840.113549.1.1.10", pss_defaults>},
    {PKI_ALG_RSASSA_PSS_SHA224,                   algorithm<"1.2.840.113549.1.1.10", pss_hash<"2.16.840.1.101.3.4.2.4">>},
    {PKI_ALG_RSASSA_PSS_SHA256,                   algorithm<"1.2.840.113549.1.1.10", pss_hash<"2.16.840.1.101.3.4.2.1">>},
    {PKI_ALG_RSASSA_PSS_SHA384,                   algorithm<"1.2.840.113549.1.1.10", pss_hash<"2.16.840.1.101.3.4.2.2">>},
    {PKI_ALG_RSASSA_PSS_SHA512,                   algorithm<"1.2.840.113549.1.1.10", pss_hash<"2.16.840.1.101.3.4.2.3">>},
    {PKI_ALG_GOST3411_94_GOST3410_94,             algorithm<"1.2.643.2.2.4">},
    {PKI_ALG_GOST3411_94_GOST3410_94_CPRO,        algorithm<"1.2.643.2.2.4">},
    {PKI_ALG_GOST3411_94_GOST3410_94_TIK,         algorithm<"1.3.6.1.4.1.3670.1.6">},
    {PKI_ALG_GOST3411_94_GOST3410_94_SIGNALCOM,   algorithm<"1.3.6.1.4.1.5849.1.3.1">},
    {PKI_ALG_GOST3411_94_GOST3410_2001,           algorithm<"1.2.643.2.2.3">},
    {PKI_ALG_GOST3411_94_GOST3410_2001_CPRO,      algorithm<"1.2.643.2.2.3">},
    {PKI_ALG_GOST3411_94_GOST3410_2001_SIGNALCOM, algorithm<"1.3.6.1.4.1.5849.1.3.2">},
    {PKI_ALG_GOST3411_2012_256_GOST3410_2012_256, algorithm<"1.2.643.7.1.1.3.2">},
    {PKI_ALG_GOST3411_2012_512_GOST3410_2012_512, algorithm<"1.2.643.7.1.1.3.3">},
};
// clang-format on

} // namespace pkider
