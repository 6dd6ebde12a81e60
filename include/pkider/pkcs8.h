// Private keys in PKCS#8 form: PrivateKeyInfo of any algorithm, and GOST R 34.10 keys, plain and password-encrypted
// (RFC 5208, RFC 8018 PBES2).
//
// Only the DER is done here. The host derives the key and runs the cipher:
//
//     pkcs8_encrypted_pki_gost_t box;
//     pkcs8_pki_gost_t key;
//     if (!asn_read_pkcs8_encrypted_pki_gost(der, len, box)) return;   // salt, count, IV and ciphertext, in place
//     const std::vector<uint8_t> plain = decrypt(password, box);       // the host's
//     if (!asn_read_pkcs8_pki_gost(plain.data(), plain.size(), key)) return;
//
// Readers store spans that point into the caller's buffer and are valid while it lives; they copy and allocate nothing.
// Writers replace their output. A record may point into the very string that is written, and an exception leaves the
// string as it was.
#pragma once

#include <pkider/export.h>

#include <cstdint>
#include <string>

/// A PrivateKeyInfo taken apart. Both spans point into the caller's buffer.
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

/// What stands in the EncryptedPrivateKeyInfo of a GOST key, and what an object of pbe_crypto_t (pkider/pkcs12.h) is
/// given to decrypt with. No length is checked against the size that an algorithm asks for.
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
/// The algorithm's parameters must be there, of whatever tag: an AlgorithmIdentifier without them is refused. The
/// version's value, the parameters, and everything behind the privateKey (attributes too) are not looked at.
///
/// @param der  First byte of the PrivateKeyInfo. May be null when `len` is 0.
/// @param len  Bytes available from `der`; bytes behind the element are ignored.
/// @param out  Receives the two spans. After a failure the OID may have been stored; the key keeps what it held.
/// @return     True when algorithm and key were found.
/// @throws     Nothing.
/// @par Threads   Touches only its arguments; calls on different records may overlap.
/// @par Standard  RFC 5208 5.
PKIDER_API bool asn_read_pkcs8_priv_key_info(const uint8_t* der, uint32_t len, asn_pkcs8_priv_key_info_t& out);

/// Reads a GOST private key in PKCS#8 form.
///
/// The kind is told by the algorithm's identifier alone (1.2.643.2.2.19, 1.2.643.7.1.1.1.1, 1.2.643.7.1.1.1.2); the
/// parameter sets are not looked at. Inside the privateKey the key must stand in an OCTET STRING of its own: a raw key,
/// as some programs write it, is refused. Bytes behind that OCTET STRING are ignored.
///
/// @param der  First byte of the PrivateKeyInfo. May be null when `len` is 0.
/// @param len  Bytes available from `der`. Only the low 32 bits count: 2^32 + 70 is taken as 70.
/// @param out  Receives kind and key. After a failure `key_len` and `key` keep what they held; `key_type` may be set.
/// @return     True when a key of one of the three kinds was found.
/// @throws     Nothing.
/// @par Threads   Touches only its arguments; calls on different records may overlap.
/// @par Standard  RFC 5208 5, RFC 4357, RFC 9215.
PKIDER_API bool asn_read_pkcs8_pki_gost(const uint8_t* der, uint64_t len, pkcs8_pki_gost_t& out);

/// Writes a GOST private key in PKCS#8 form.
///
/// The parameter sets are fixed: 1.2.643.2.2.35.1, 1.2.643.7.1.2.1.1.1 or 1.2.643.7.1.2.1.2.1 by the kind, and the
/// digest parameters of GOST R 34.11-94 (1.2.643.2.2.30.1) for every kind, those of 2012 too. A kind above 2 is not
/// refused: its two identifiers are written empty (06 00), and no reader will know the key.
///
/// A key of 65,000 bytes or more (none exists) can bring a length of 65,536 or more into the output, and such a length
/// with a zero byte above its lowest byte is written cut: it does not read back.
///
/// @param key  The key. A null `key` with a length is written as zeros. May point into `out`.
/// @param out  Replaced by the DER; as it was when an exception is thrown.
/// @throws     std::bad_alloc; std::length_error when an element would exceed 0xFFFFFFFF bytes.
/// @par Threads   Reads `key`, writes `out`; calls on different strings may overlap.
/// @par Standard  RFC 5208 5, RFC 4357, RFC 9215.
PKIDER_API void asn_write_pkcs8_pki_gost(const pkcs8_pki_gost_t& key, std::string& out);

/// Reads the EncryptedPrivateKeyInfo of a GOST key: PBES2 with PBKDF2 by HMAC GOST R 34.11-94, and GOST 28147-89.
///
/// Other algorithms are refused, and so are two forms that PKCS#5 allows: a pseudo-random function left out, and one
/// without a parameter. A keyLength is passed over. The cipher's parameter set must be named but may be any, and is not
/// returned; its OBJECT IDENTIFIER element stands directly behind the IV.
///
/// Set `iterations` before the call: an INTEGER without contents (02 00) is accepted and leaves the field alone. An
/// INTEGER of five significant bytes is accepted and loses its high byte; a negative or longer one is refused. Any
/// count up to 4294967295 can come out of a file, so limit it before deriving a key with it.
///
/// @param der  First byte of the EncryptedPrivateKeyInfo. May be null when `len` is 0.
/// @param len  Bytes available from `der`; bytes behind the element are ignored.
/// @param out  Receives the fields in the order encrypted, IV, salt, iterations. After a failure those read before it
///             are set and the others keep what they held; do not use the record then.
/// @return     True when everything was found and the algorithms are the expected ones.
/// @throws     Nothing.
/// @par Threads   Touches only its arguments; calls on different records may overlap.
/// @par Standard  RFC 5208 6, RFC 8018 A.2 and A.4, RFC 4357.
PKIDER_API bool asn_read_pkcs8_encrypted_pki_gost(const uint8_t* der, uint64_t len, pkcs8_encrypted_pki_gost_t& out);

/// Writes the EncryptedPrivateKeyInfo of a GOST key around salt, iteration count, IV and ciphertext of the caller.
///
/// The cipher's parameter set is always named as 1.2.643.2.2.31.1, the pseudo-random function always explicitly, a
/// keyLength never.
///
/// **Choose an iteration count without zero bytes.** Every zero byte of the count is dropped when it is written: 2048
/// (08 00) becomes 8, 1024 becomes 4, 4096 becomes 16, 65,536 becomes 1, and whoever reads the file derives another
/// key. 1000, 2000, 10,000, 100,000 and 600,000 are safe. A span of about 65,000 bytes or more can bring a length into
/// the output that is written cut (65,536 or more with a zero byte above its lowest byte) and does not read back.
///
/// @param key  The pieces. A null pointer with a length is written as zeros. May point into `out`.
/// @param out  Replaced by the DER; as it was when an exception is thrown.
/// @throws     std::bad_alloc; std::length_error when an element would exceed 0xFFFFFFFF bytes.
/// @par Threads   Reads `key`, writes `out`; calls on different strings may overlap.
/// @par Standard  RFC 5208 6, RFC 8018 A.2 and A.4, RFC 4357.
PKIDER_API void asn_write_pkcs8_encrypted_pki_gost(const pkcs8_encrypted_pki_gost_t& key, std::string& out);
