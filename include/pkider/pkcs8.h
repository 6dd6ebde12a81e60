// Private keys in PKCS#8 form: PrivateKeyInfo of any algorithm, and GOST R 34.10 keys, plain and password-encrypted
// (RFC 5208, RFC 8018 PBES2).
//
// These functions handle the DER only. The host derives the key and runs the cipher:
//
//     pkcs8_encrypted_pki_gost_t box;
//     pkcs8_pki_gost_t key;
//     if (!asn_read_pkcs8_encrypted_pki_gost(der, len, box)) return;   // salt, count, IV and ciphertext, in place
//     const std::vector<uint8_t> plain = decrypt(password, box);       // the host's
//     if (!asn_read_pkcs8_pki_gost(plain.data(), plain.size(), key)) return;
//
// Readers store spans that point into the caller's buffer and are valid while the buffer is; they copy and allocate
// nothing. Writers replace their output. A record may point into the string that is written, and an exception leaves
// the string unchanged.
#pragma once

#include <pkider/export.h>

#include <cstdint>
#include <string>

/// The parts of a PrivateKeyInfo. Both spans point into the caller's buffer.
struct asn_pkcs8_priv_key_info_t {
    uint32_t alg_oid_len = 0;             ///< Bytes at `alg_oid`.
    const uint8_t* alg_oid = nullptr;     ///< Contents of the algorithm's OBJECT IDENTIFIER.
    uint32_t private_key_len = 0;         ///< Bytes at `private_key`.
    const uint8_t* private_key = nullptr; ///< Contents of the privateKey OCTET STRING.
};

/// A GOST R 34.10 private key.
struct pkcs8_pki_gost_t {
    uint32_t key_type = 0;        ///< 0: GOST R 34.10-2001; 1: 2012 with 256 bits; 2: 2012 with 512 bits.
    uint64_t key_len = 0;         ///< Bytes at `key`; any number.
    const uint8_t* key = nullptr; ///< The private key value.
};

/// The contents of the EncryptedPrivateKeyInfo of a GOST key, and the parameters with which the host's pbe_crypto_t
/// (pkider/pkcs12.h) decrypts. No length is compared with the size that an algorithm requires.
struct pkcs8_encrypted_pki_gost_t {
    uint64_t salt_len = 0;              ///< Bytes at `salt`.
    const uint8_t* salt = nullptr;      ///< Salt of PBKDF2.
    uint32_t iterations = 0;            ///< Iteration count of PBKDF2.
    uint64_t iv_len = 0;                ///< Bytes at `iv`.
    const uint8_t* iv = nullptr;        ///< Initialisation vector of GOST 28147-89.
    uint64_t encrypted_len = 0;         ///< Bytes at `encrypted`.
    const uint8_t* encrypted = nullptr; ///< The encrypted PrivateKeyInfo.
};

/// Reads a PrivateKeyInfo of any algorithm.
///
/// The algorithm's parameters must be present, with any tag: an AlgorithmIdentifier without them is refused. The value
/// of the version, the parameters, and everything after the privateKey (attributes too) are ignored.
///
/// @param der  First byte of the PrivateKeyInfo. May be null when `len` is 0.
/// @param len  Bytes available from `der`; bytes after the element are ignored.
/// @param out  Receives the two spans. After a failure the OID may have been stored; the key is unchanged.
/// @return     True when algorithm and key were found.
/// @throws     Nothing.
/// @par Threads   Touches only its arguments; calls on different records may overlap.
/// @par Standard  RFC 5208 5.
PKIDER_API bool asn_read_pkcs8_priv_key_info(const uint8_t* der, uint32_t len, asn_pkcs8_priv_key_info_t& out);

/// Reads a GOST private key in PKCS#8 form.
///
/// The algorithm's identifier alone decides the kind (1.2.643.2.2.19, 1.2.643.7.1.1.1.1, 1.2.643.7.1.1.1.2); the
/// parameter sets are ignored. Inside the privateKey the key must be in an OCTET STRING of its own: a raw key, as some
/// programs write it, is refused. Bytes after that OCTET STRING are ignored.
///
/// @param der  First byte of the PrivateKeyInfo. May be null when `len` is 0.
/// @param len  Bytes available from `der`. Only the low 32 bits count: 2^32 + 70 means 70.
/// @param out  Receives kind and key. After a failure `key_len` and `key` are unchanged; `key_type` may be set.
/// @return     True when a key of one of the three kinds was found.
/// @throws     Nothing.
/// @par Threads   Touches only its arguments; calls on different records may overlap.
/// @par Standard  RFC 5208 5, RFC 4357, RFC 9215.
PKIDER_API bool asn_read_pkcs8_pki_gost(const uint8_t* der, uint64_t len, pkcs8_pki_gost_t& out);

/// Writes a GOST private key in PKCS#8 form.
///
/// The parameter sets are fixed: 1.2.643.2.2.35.1, 1.2.643.7.1.2.1.1.1 or 1.2.643.7.1.2.1.2.1 according to the kind,
/// and the digest parameters of GOST R 34.11-94 (1.2.643.2.2.30.1) for every kind, also those of 2012. A kind above 2
/// is not refused: its two identifiers are written empty (06 00), and no reader accepts the key.
///
/// A key of 65,000 bytes or more (none exists) can make a length of 65,536 or more, which may be written cut and then
/// does not read back (docs/conventions.md).
///
/// @param key  The key. A null `key` with a length is written as zeros. May point into `out`.
/// @param out  Replaced by the DER; unchanged after an exception.
/// @throws     std::bad_alloc; std::length_error when an element would exceed 0xFFFFFFFF bytes.
/// @par Threads   Reads `key`, writes `out`; calls on different strings may overlap.
/// @par Standard  RFC 5208 5, RFC 4357, RFC 9215.
PKIDER_API void asn_write_pkcs8_pki_gost(const pkcs8_pki_gost_t& key, std::string& out);

/// Reads the EncryptedPrivateKeyInfo of a GOST key: PBES2 with PBKDF2 by HMAC GOST R 34.11-94, and GOST 28147-89.
///
/// Other algorithms are refused, and so are two forms that PKCS#5 allows: no pseudo-random function, and one without a
/// parameter. A keyLength is ignored. The cipher's parameter set must be present and may be any; it is not returned.
/// Its OBJECT IDENTIFIER element follows the IV directly.
///
/// Set `iterations` before the call: an INTEGER without contents (02 00) is accepted and leaves the field unchanged. An
/// INTEGER of five significant bytes is accepted and loses its high byte; a negative or longer one is refused. A file
/// can contain any count up to 4294967295, so limit it before deriving a key with it.
///
/// @param der  First byte of the EncryptedPrivateKeyInfo. May be null when `len` is 0.
/// @param len  Bytes available from `der`; bytes after the element are ignored.
/// @param out  Receives the fields in the order encrypted, IV, salt, iterations. After a failure the fields read before
///             it are set and the others are unchanged; do not use the record then.
/// @return     True when everything was found and the algorithms are the expected ones.
/// @throws     Nothing.
/// @par Threads   Touches only its arguments; calls on different records may overlap.
/// @par Standard  RFC 5208 6, RFC 8018 A.2 and A.4, RFC 4357.
PKIDER_API bool asn_read_pkcs8_encrypted_pki_gost(const uint8_t* der, uint64_t len, pkcs8_encrypted_pki_gost_t& out);

/// Writes the EncryptedPrivateKeyInfo of a GOST key from salt, iteration count, IV and ciphertext of the caller.
///
/// The cipher's parameter set is always 1.2.643.2.2.31.1. The pseudo-random function is always written, a keyLength
/// never.
///
/// **Choose an iteration count without zero bytes.** Every zero byte of the count is dropped: 2048 (08 00) becomes 8,
/// and a reader of the file derives another key. 1000, 2000, 10,000, 100,000 and 600,000 are safe. A span of about
/// 65,000 bytes or more can make a length that is written cut and does not read back. docs/conventions.md describes
/// both.
///
/// @param key  The parts. A null pointer with a length is written as zeros. May point into `out`.
/// @param out  Replaced by the DER; unchanged after an exception.
/// @throws     std::bad_alloc; std::length_error when an element would exceed 0xFFFFFFFF bytes.
/// @par Threads   Reads `key`, writes `out`; calls on different strings may overlap.
/// @par Standard  RFC 5208 6, RFC 8018 A.2 and A.4, RFC 4357.
PKIDER_API void asn_write_pkcs8_encrypted_pki_gost(const pkcs8_encrypted_pki_gost_t& key, std::string& out);
