// Keys from passwords: PBKDF2 (RFC 8018 5.2) one block at a time, and the older derivation of PKCS#12 (RFC 7292 B.2).
//
// Both take minutes when a file asks for it, so both report how far they are, and can be stopped.
#pragma once

#include "tools/pkider/base/secret.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string_view>

namespace tool {

/// Called about once in ten thousand iterations with the iterations done and wanted, the last time with both equal.
using progress_t = std::function<void(uint32_t done, uint32_t total)>;

/// Computes block T_index of PBKDF2 with HMAC: the bytes of the derived key from (index - 1) * hash size on.
///
/// The blocks do not depend on each other. Who needs only the end of a long key (the MAC key of a GOST PKCS#12 file is
/// the last third of one) pays for that end alone.
///
/// @param hash        A libgcrypt digest, GCRY_MD_...
/// @param password    May be empty.
/// @param iterations  At least 1.
/// @param index       From 1 on.
/// @return            As many bytes as the hash has; empty when libgcrypt lacks the digest or refuses an argument.
secret_t pbkdf2_block(int hash, std::span<const uint8_t> password, std::span<const uint8_t> salt, uint32_t iterations,
                      uint32_t index, const progress_t& on_progress = {});

/// Derives the MAC key of older PKCS#12 files (RFC 7292 B.2 with id 3), as long as the hash. It is one round of that
/// derivation, so the step B.2.6.C, which prepares a second one, is not needed.
///
/// @param hash        A libgcrypt digest, GCRY_MD_...
/// @param block_size  Bytes the hash takes at a time (v in the standard; libgcrypt does not report it).
/// @param password    UTF-8. It is hashed as big-endian UTF-16 with two zero bytes after it (RFC 7292 B.1).
/// @param iterations  At least 1.
/// @return            Empty when the password is not UTF-8, or libgcrypt lacks the digest.
secret_t pkcs12_mac_key(int hash, std::size_t block_size, std::string_view password, std::span<const uint8_t> salt,
                        uint32_t iterations, const progress_t& on_progress = {});

} // namespace tool
