// Password-encrypted private keys (PKCS#8 EncryptedPrivateKeyInfo, RFC 5208 6).
#pragma once

#include "tools/pkider/der_cursor.h"
#include "tools/pkider/gost_pbe.h"

#include <pkider/pkcs8.h>

#include <string>

namespace tool {

struct encrypted_key_t {
    pkcs8_encrypted_pki_gost_t record;
    bytes_t algorithm; ///< Contents of the AlgorithmIdentifier.
};

/// Reads one that stands alone; the views point into it.
/// @throws data_fault_t  It is none, or the library refuses its algorithm: the words say why.
encrypted_key_t read_encrypted_key(bytes_t der);

/// The PrivateKeyInfo, for the caller to wipe. `der` is what `key` was read from.
/// @throws failure_t  Wrong password (a wrong one shows only as a plaintext that is no key), or too many iterations.
std::string decrypt_key(const encrypted_key_t& key, bytes_t der, gost_pbe_t& crypto);

} // namespace tool
