// SafeContents: the bags of keys and certificates inside a PKCS#12 file (RFC 7292 4.2).
#pragma once

#include <pkider/pkcs12.h>

#include <cstdint>

namespace pkider {

/// Whether SafeContents are unencrypted or in an encryptedData.
enum class safe_kind_t { PLAIN, ENCRYPTED };

/// Reads the SafeContents at `data` and appends the items found to `out`.
///
/// A shrouded key that cannot be read or decrypted, and a bag of another kind, is ignored.
///
/// @return  False when the SafeContents are malformed; items found before stay in `out`.
bool read_safe_contents(const uint8_t* data, uint64_t size, safe_kind_t kind, pbe_crypto_t& crypto, pkcs12_easy_t& out);

} // namespace pkider
