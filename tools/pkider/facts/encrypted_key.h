// Password-encrypted private keys (PKCS#8 EncryptedPrivateKeyInfo, RFC 5208 6).
#pragma once

#include "tools/pkider/crypto/gost_pbe.h"
#include "tools/pkider/formats/der_cursor.h"

#include <pkider/pkcs8.h>

#include <string>

namespace tool {

/// EncryptedPrivateKeyInfo ::= SEQUENCE { encryptionAlgorithm AlgorithmIdentifier, encryptedData OCTET STRING }
struct encrypted_info_t {
    bytes_t algorithm;  ///< Contents of the AlgorithmIdentifier.
    bytes_t ciphertext; ///< Contents of the OCTET STRING.
};

/// Takes one off the front of the bytes. @throws der_fault_t
encrypted_info_t read_encrypted_info(der_cursor_t& bytes);

struct encrypted_key_t {
    pkcs8_encrypted_pki_gost_t record;
    bytes_t algorithm;   ///< Contents of the AlgorithmIdentifier.
    std::string refusal; ///< Why the library refuses the algorithm, and the record is empty; empty when it does not.
};

/// Reads one that is a whole input; the views point into it. @throws data_fault_t  It is not one.
encrypted_key_t read_encrypted_key(bytes_t der);

/// @throws data_fault_t  The key cannot be decrypted with any password.
void check_decryptable(const encrypted_key_t& key);

/// The PrivateKeyInfo, for the caller to wipe. `der` is what `key` was read from.
/// @throws failure_t  Wrong password (a wrong one shows only as a plaintext that is no key), or too many iterations.
std::string decrypt_key(const encrypted_key_t& key, bytes_t der, gost_pbe_t& crypto);

} // namespace tool
