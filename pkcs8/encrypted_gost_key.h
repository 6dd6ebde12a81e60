// The encryption algorithm of GOST keys, shared with PKCS#12: PBES2 with PBKDF2 (HMAC GOST R 34.11-94) and
// GOST 28147-89.
#pragma once

#include <pkider/pkcs8.h>

#include <cstdint>
#include <string>

namespace pkider {

/// Reads the contents of an encryption AlgorithmIdentifier into `salt`, `iterations` and `iv` of `out`; `encrypted` is
/// left alone. A field whose element was read keeps its new value when a later step fails; an INTEGER without contents
/// leaves `iterations` unchanged.
bool asn_read_pkcs8_encrypted_alg(const uint8_t* content, uint64_t length, pkcs8_encrypted_pki_gost_t& out);

/// Reads the contents of the keyDerivationFunc SEQUENCE into `salt` and `iterations` of `out`.
bool asn_read_pbkdf2_gost_params(const uint8_t* content, uint64_t length, pkcs8_encrypted_pki_gost_t& out);

/// Replaces `out` by the encryption AlgorithmIdentifier made from salt, iteration count and IV of `key`.
///
/// @throws std::bad_alloc, std::length_error; `out` is then unchanged.
void asn_write_pkcs8_encrypted_alg(const pkcs8_encrypted_pki_gost_t& key, std::string& out);

} // namespace pkider
