// Keys and PKCS#12 files made from a fixed seed, spelt out here without the library, so that peers get the same bytes.
#pragma once

#include "bench/support/inputs.h"

namespace pkider_bench {

/// A GOST R 34.10-2001 private key: its 32 bytes, and its PrivateKeyInfo.
bytes_t made_key_bytes();
bytes_t made_private_key();

/// The variable parts of an EncryptedPrivateKeyInfo (PBES2, PBKDF2, GOST 28147-89), and the whole.
struct encrypted_parts_t {
    bytes_t salt, iv, encrypted;
    uint32_t iterations;
};
encrypted_parts_t made_encrypted_parts();
bytes_t made_encrypted_key();

/// A certificate of the bundle with a friendly name (BMPString contents) and a local key id of 20 bytes.
struct made_item_t {
    const bytes_t* certificate;
    bytes_t friendly_name, local_key_id;
};
std::vector<made_item_t> made_items(std::size_t num_certificates);

/// A PFX with one unencrypted SafeContents of these items and a MacData.
bytes_t made_pfx(std::size_t num_certificates);

} // namespace pkider_bench
