// The names of all facts of `pkider what`. The lines of `pkider cert` and `pkider key show` have some of them as
// labels.
#pragma once

#include "tools/pkider/facts/facts.h"

namespace tool::fact {

inline constexpr bool is_name = true;

// clang-format off
//                                      member in JSON    label on the screen
inline constexpr fact_name_t subject     {"subject",      "subject", is_name};
inline constexpr fact_name_t issuer      {"issuer",       "issuer", is_name};
inline constexpr fact_name_t serial      {"serial",       "serial"};
inline constexpr fact_name_t valid       {"valid",        "valid"};
inline constexpr fact_name_t key         {"key",          "key"};
inline constexpr fact_name_t parameters  {"parameters",   "parameters"};
inline constexpr fact_name_t digest_set  {"digest set",   "digest set"};
inline constexpr fact_name_t cipher_set  {"cipher set",   "cipher set"};
inline constexpr fact_name_t signature   {"signature",    "signature"};
inline constexpr fact_name_t pss         {"PSS",          "PSS"};
inline constexpr fact_name_t issued      {"issued",       "issued"};
inline constexpr fact_name_t next_issue  {"next issue",   "next issue"};
inline constexpr fact_name_t revoked     {"revoked",      "revoked"};
inline constexpr fact_name_t algorithm   {"algorithm",    "algorithm"};
inline constexpr fact_name_t private_key {"private key",  "private key"};
inline constexpr fact_name_t curve       {"curve",        "curve"};
inline constexpr fact_name_t encryption  {"encryption",   "encryption"};
inline constexpr fact_name_t derivation  {"derivation",   "derivation"};
inline constexpr fact_name_t cipher      {"cipher",       "cipher"};
inline constexpr fact_name_t encrypted   {"encrypted",    "encrypted"};
inline constexpr fact_name_t hash        {"hash",         "hash"};
inline constexpr fact_name_t digest      {"digest",       "digest"};
inline constexpr fact_name_t r           {"r",            "r"};
inline constexpr fact_name_t s           {"s",            "s"};
inline constexpr fact_name_t version     {"version",      "version"};
inline constexpr fact_name_t content     {"content",      "content"};
inline constexpr fact_name_t mac         {"MAC",          "MAC"};
inline constexpr fact_name_t outermost   {"outermost",    "outermost"};
inline constexpr fact_name_t name        {"name",         "name", is_name};
inline constexpr fact_name_t oid         {"OID",          "OID"};
inline constexpr fact_name_t trailing    {"behind it",    "after it"};
// clang-format on

} // namespace tool::fact
