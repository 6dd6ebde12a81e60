// Algorithms, public keys and signature values: the closed list of algorithms that the library knows, their object
// identifiers, and readers that split keys and signatures into parts without copying (RFC 3279, RFC 4055, RFC 4357,
// RFC 4491, RFC 7427, RFC 8017, RFC 9215).
//
//     asn_pubkey_t key;
//     asn_rsa_pubkey_t rsa;
//     if (asn_read_pubkey(der, len, key) && PKI_OID_TO_KEY_ALG(key.alg_oid, key.alg_oid_len) == PKI_ALG_RSA &&
//         asn_read_rsa_pubkey(key, rsa))
//         use(rsa.modulus, rsa.modulus_len);   // points into der
//
// Every function here may be called from any thread at any time. No function keeps its arguments, and the readers and
// lookups neither allocate nor throw. A span is a length in bytes and a pointer into the caller's input: it is valid
// while that input is alive and unchanged.
#pragma once

#include <pkider/export.h>

#include <cstdint>
#include <string>

/// An algorithm, or a combination of them, in three fields:
///
/// - bits 0 to 15: the key field: public-key, cipher or MAC algorithm;
/// - bits 16 to 23: the hash field;
/// - bits 24 to 31: the variant field: 0 for the standard family of object identifiers, 1 TIK, 2 CryptoPro (CPRO),
///   4 SignalCOM.
///
/// A signature algorithm is the bitwise OR of its hash and its key algorithm. Any value may be passed to any function;
/// a value without a name here is treated as an algorithm that the function does not know.
enum pki_alg_t : uint32_t {
    PKI_ALG_NONE = 0, ///< No algorithm, or none found.

    // Public keys and ciphers
    PKI_ALG_RSA = 0x00000001,
    PKI_ALG_DSA = 0x00000003,
    PKI_ALG_DH_KEY_AGREEMENT = 0x00000004, ///< Diffie-Hellman of PKCS #3.
    PKI_ALG_OLD_DSA = 0x00000005,
    PKI_ALG_DH_PUBLIC_NUMBER = 0x00000006, ///< Diffie-Hellman of X9.42.
    PKI_ALG_RC2 = 0x00000007,
    PKI_ALG_RC4 = 0x00000008,
    PKI_ALG_RC5 = 0x00000009,
    PKI_ALG_DES = 0x0000000A,
    PKI_ALG_3DES_2KEY = 0x0000000B,
    PKI_ALG_3DES_3KEY = 0x0000000C,
    PKI_ALG_GOST3410_94 = 0x0000000E,
    PKI_ALG_GOST3410_2001 = 0x0000010E,
    PKI_ALG_GOST3410_2012_256 = 0x0000010F, ///< 256-bit key.
    PKI_ALG_GOST3410_2012_512 = 0x00000110, ///< 512-bit key.
    PKI_ALG_GOST3410_94_TIK = 0x0100000E,
    PKI_ALG_GOST3410_94_CPRO = 0x0200000E,
    PKI_ALG_GOST3410_2001_CPRO = 0x0200010E,
    PKI_ALG_GOST3410_94_SIGNALCOM = 0x0400000E,
    PKI_ALG_GOST3410_2001_SIGNALCOM = 0x0400010E,

    // Hashes
    PKI_ALG_SHA = 0x00010000, ///< The SHA of 1993, SHA-0.
    PKI_ALG_SHA1 = 0x00020000,
    PKI_ALG_SHA224 = 0x00030000,
    PKI_ALG_SHA256 = 0x00040000,
    PKI_ALG_SHA384 = 0x00050000,
    PKI_ALG_SHA512 = 0x00060000,
    PKI_ALG_MD2 = 0x00070000,
    PKI_ALG_MD5 = 0x00080000,
    PKI_ALG_GOST3411_94 = 0x00090000,
    PKI_ALG_GOST3411_2012_256 = 0x000A0000,
    PKI_ALG_GOST3411_2012_512 = 0x000B0000,
    PKI_ALG_GOST3411_94_TIK = 0x01090000,
    PKI_ALG_GOST3411_94_CPRO = 0x02090000,
    PKI_ALG_GOST3411_94_SIGNALCOM = 0x04090000,

    // Signatures and MACs: hash | key
    PKI_ALG_SHA_RSA = 0x00010001,
    PKI_ALG_SHA1_RSA = 0x00020001,
    PKI_ALG_SHA224_RSA = 0x00030001,
    PKI_ALG_SHA256_RSA = 0x00040001,
    PKI_ALG_SHA384_RSA = 0x00050001,
    PKI_ALG_SHA512_RSA = 0x00060001,
    PKI_ALG_RSASSA_PSS = 0x00000002, ///< The parameters may name the hash (RFC 4055 3.1).
    PKI_ALG_RSASSA_PSS_SHA1 = 0x00020002,
    PKI_ALG_RSASSA_PSS_SHA224 = 0x00030002,
    PKI_ALG_RSASSA_PSS_SHA256 = 0x00040002,
    PKI_ALG_RSASSA_PSS_SHA384 = 0x00050002,
    PKI_ALG_RSASSA_PSS_SHA512 = 0x00060002,
    PKI_ALG_MD2_RSA = 0x00070001,
    PKI_ALG_MD5_RSA = 0x00080001,
    PKI_ALG_SHA_DSA = 0x00010003,
    PKI_ALG_SHA1_DSA = 0x00020003,
    PKI_ALG_3DES_2KEY_SHA1 = 0x0002000B,
    PKI_ALG_3DES_3KEY_SHA1 = 0x0002000C,
    PKI_ALG_HMAC_SHA1 = 0x0002000D,
    PKI_ALG_GOST3411_94_GOST3410_94 = 0x0009000E,
    PKI_ALG_GOST3411_94_GOST3410_2001 = 0x0009010E,
    PKI_ALG_GOST3411_2012_256_GOST3410_2012_256 = 0x000A010F,
    PKI_ALG_GOST3411_2012_512_GOST3410_2012_512 = 0x000B0110,
    PKI_ALG_GOST3411_94_GOST3410_94_TIK = 0x0109000E,
    PKI_ALG_GOST3411_94_GOST3410_94_CPRO = 0x0209000E,
    PKI_ALG_GOST3411_94_GOST3410_2001_CPRO = 0x0209010E,
    PKI_ALG_GOST3411_94_GOST3410_94_SIGNALCOM = 0x0409000E,
    PKI_ALG_GOST3411_94_GOST3410_2001_SIGNALCOM = 0x0409010E,
};

/// Constant bytes that identify an algorithm. The library's records are valid as long as it is loaded.
struct PKI_OID {
    const uint8_t* data = nullptr; ///< Contents octets of an OBJECT IDENTIFIER; from asn_form_ike_signalg a whole
                                   ///< AlgorithmIdentifier. Null in the empty record.
    uint32_t len = 0;              ///< Number of bytes at `data`; 0 in the empty record only.
};

/// An algorithm as read from DER: the contents octets of its OBJECT IDENTIFIER.
struct asn_algorid_t {
    uint32_t oid_len = 0;         ///< 0 when nothing was read.
    const uint8_t* oid = nullptr; ///< Null when nothing was read.
};

/// The parts of a SubjectPublicKeyInfo (RFC 5280 4.1).
struct asn_pubkey_t {
    uint32_t alg_oid_len = 0;
    const uint8_t* alg_oid = nullptr; ///< Contents octets of the algorithm's OBJECT IDENTIFIER.
    uint32_t params_len = 0;          ///< 0 when the AlgorithmIdentifier ends with the OBJECT IDENTIFIER.
    const uint8_t* params = nullptr;  ///< What follows the OBJECT IDENTIFIER, identifier and length octets included.
    uint32_t key_len = 0;             ///< 0xFFFFFFFF when the BIT STRING has no contents: then `key` must not be read.
    const uint8_t* key = nullptr;     ///< The BIT STRING's contents after the octet that counts the unused bits.
};

/// An RSA public key (RFC 8017 A.1.1), numbers with the highest byte first.
struct asn_rsa_pubkey_t {
    uint32_t modulus_len = 0;
    const uint8_t* modulus = nullptr; ///< Contents without leading zero bytes; the number 0 keeps one.
    uint32_t exponent_len = 0;
    const uint8_t* exponent = nullptr; ///< Contents as encoded, leading zero bytes included.
};

/// A GOST R 34.10 public key (RFC 4491 2.3, RFC 9215). A parameter set is a whole OBJECT IDENTIFIER element, its
/// identifier and length octets included.
struct asn_gost_pubkey_t {
    uint32_t public_key_param_set_len = 0;
    const uint8_t* public_key_param_set = nullptr;
    uint32_t digest_param_set_len = 0;
    const uint8_t* digest_param_set = nullptr;
    uint32_t encryption_param_set_len = 0; ///< 0 when absent.
    const uint8_t* encryption_param_set = nullptr;
    uint32_t key_len = 0;
    const uint8_t* key = nullptr; ///< Contents of the OCTET STRING inside the BIT STRING, in the order stored.
};

/// A DSA signature value (RFC 3279 2.2.2): contents of the two INTEGERs as encoded, leading zero bytes included.
struct asn_dsa_certsign_t {
    uint32_t r_len = 0;
    const uint8_t* r = nullptr;
    uint32_t s_len = 0;
    const uint8_t* s = nullptr;
};

/// A signature AlgorithmIdentifier as IKE carries it (RFC 7427 3).
struct asn_ike_signalg_t {
    uint32_t oid_len = 0;
    const uint8_t* oid = nullptr; ///< Contents octets of the OBJECT IDENTIFIER.
    uint32_t params_len = 0;
    const uint8_t* params = nullptr; ///< All bytes after the OBJECT IDENTIFIER, to the end of the input.

    /// The signature algorithm, for RSASSA-PSS with the hash that the parameters name.
    ///
    /// The object identifier decides (PKI_OID_TO_CERT_SIGN_ALG), except for RSASSA-PSS. There absent parameters, and
    /// parameters without a hash, mean SHA-1 (RFC 4055 3.1): PKI_ALG_RSASSA_PSS_SHA1; so does a hash whose object
    /// identifier has no contents. The variant field of a hash is dropped, so every hash of the hash table can occur,
    /// also in a combination that pki_alg_t has no name for: MD5 gives 0x00080002, GOST R 34.11-94 gives 0x00090002.
    /// Mask generation function, salt length and trailer are checked for their form only; their values are
    /// ignored.
    ///
    /// @return  The algorithm, or PKI_ALG_NONE for an unknown object identifier, malformed RSASSA-PSS parameters and
    ///          an unknown hash.
    PKIDER_API pki_alg_t to_pki_alg() const;
};

/// @name Algorithm to object identifier
///
/// @param alg  Any value.
/// @return     The contents octets for that exact value, variant field included, in a record that is never freed; the
///             empty record when the library has no object identifier of that kind for it. Always valid.
/// @throws     Nothing.
/// @{

/// The object identifier of a hash.
PKIDER_API const PKI_OID& PKI_HASH_ALG_TO_OID(pki_alg_t alg);

/// The object identifier of a public key.
PKIDER_API const PKI_OID& PKI_KEY_ALG_TO_OID(pki_alg_t alg);

/// The object identifier of a certificate signature. PKI_ALG_SHA1_RSA has two and gives 1.2.840.113549.1.1.5; all
/// RSASSA-PSS values give 1.2.840.113549.1.1.10.
PKIDER_API const PKI_OID& PKI_CERT_SIGN_ALG_TO_OID(pki_alg_t alg);

/// @}

/// The complete DER AlgorithmIdentifier of a signature algorithm, ready to be sent in IKE (RFC 7427 3).
///
/// RSA has an explicit NULL as parameters; DSA and GOST have no parameters. RSASSA-PSS with SHA-1 has an empty
/// SEQUENCE. With another hash it has parameters that name that hash only: the mask generation function is then MGF1
/// with SHA-1 and the salt has 20 bytes, for every hash (RFC 4055 3.1). A peer that expects the parameters of RFC 7427
/// A.4.3 needs other bytes. PKI_ALG_RSASSA_PSS has no parameters, which RFC 4055 3.1 does not allow in a signature.
/// docs/ike_signature_identifiers.md compares them with those of RFC 7427.
///
/// @param alg  Any value.
/// @return     The AlgorithmIdentifier in a record that is never freed; the empty record for a value that is not a
///             certificate signature of the library.
/// @throws     Nothing.
PKIDER_API const PKI_OID& asn_form_ike_signalg(pki_alg_t alg);

/// @name Object identifier to algorithm
///
/// An object identifier that standard and variant share gives the standard value: 1.2.643.2.2.9 is PKI_ALG_GOST3411_94,
/// never PKI_ALG_GOST3411_94_CPRO.
///
/// @param oid  First of the contents octets, without identifier and length octets. May be null when `len` is 0.
/// @param len  Number of contents octets. 0 gives PKI_ALG_NONE.
/// @return     The algorithm, or PKI_ALG_NONE.
/// @throws     Nothing.
/// @{

/// Searches the hashes, then the public keys, then the certificate signatures.
PKIDER_API pki_alg_t PKI_OID_TO_ALG(const uint8_t* oid, uint32_t len);

/// Searches the hashes only.
PKIDER_API pki_alg_t PKI_OID_TO_HASH_ALG(const uint8_t* oid, uint32_t len);

/// Searches the public keys only.
PKIDER_API pki_alg_t PKI_OID_TO_KEY_ALG(const uint8_t* oid, uint32_t len);

/// Searches the certificate signatures only. RSASSA-PSS gives PKI_ALG_RSASSA_PSS; asn_ike_signalg_t::to_pki_alg gives
/// its hash too.
PKIDER_API pki_alg_t PKI_OID_TO_CERT_SIGN_ALG(const uint8_t* oid, uint32_t len);

/// @}

/// Wraps a hash value into the DigestInfo that a PKCS#1 v1.5 signature signs (RFC 8017 9.2).
///
/// A hash value of 65,500 bytes or more (no hash has one) can make a length of 65,536 or more, which may be written cut
/// (docs/conventions.md).
///
/// @param digest  In: the hash value, of any length. Out: replaced by the DER of the DigestInfo. Unchanged when an
///                exception is thrown.
/// @param hash    The hash. A hash that PKI_HASH_ALG_TO_OID does not know is not refused: its object identifier is
///                written without contents (`06 00`). Parameters are always an explicit NULL, for GOST hashes too.
/// @throws        std::bad_alloc; std::length_error when the DigestInfo would exceed 4 GiB or the string's limit.
PKIDER_API void asn_add_alg_to_digest(std::string& digest, pki_alg_t hash);

/// Finds the hash in a DigestInfo (RFC 8017 9.2).
///
/// Parameters of any kind must follow the object identifier, and an OCTET STRING must follow the AlgorithmIdentifier.
/// Bytes after these, and after the DigestInfo, are ignored.
///
/// @param out          Must not be null. Receives the span of the object identifier's contents in `digest_info`. Set
///                     to 0 and null first; a failure after the object identifier leaves its span there.
/// @param digest_info  DER of a DigestInfo.
/// @return             True when all of it has that form.
/// @throws             Nothing.
PKIDER_API bool asn_read_alg_from_digest(asn_algorid_t* out, const std::string& digest_info);

/// Splits a SubjectPublicKeyInfo (RFC 5280 4.1) into algorithm, parameters and key bits.
///
/// The BIT STRING is bounded by the buffer, not by the SEQUENCE around it, so it may end after the SEQUENCE. Bytes
/// after it are ignored, and so is the count of unused bits.
///
/// @param der  First byte of the element.
/// @param len  Bytes available from `der`. Used as unsigned: a negative value is a very large bound and an error of
///             the caller.
/// @param out  Receives spans of `der`. A BIT STRING without contents is accepted and gives `key_len` 0xFFFFFFFF: that
///             means "no key bits", and `key` must not be read. After a failure the fields read before it are stored
///             and the others are unchanged.
/// @return     True when all parts were found.
/// @throws     Nothing.
PKIDER_API bool asn_read_pubkey(const uint8_t* der, int32_t len, asn_pubkey_t& out);

/// Reads the RSAPublicKey (RFC 8017 A.1.1) in the key bits of `pk`.
///
/// The exponent is bounded by the key bits, not by the SEQUENCE around it. Neither number is checked: it may be zero,
/// negative or empty.
///
/// @param pk   From asn_read_pubkey; its algorithm is ignored.
/// @param out  Receives spans of the input of asn_read_pubkey. A failure at the modulus sets it to 0 and null. A
///             failure at the exponent leaves the modulus stored, with its leading zero bytes. All other fields are
///             unchanged by a failure.
/// @return     True when both numbers were found; false also when `pk` has no key bits.
/// @throws     Nothing.
PKIDER_API bool asn_read_rsa_pubkey(const asn_pubkey_t& pk, asn_rsa_pubkey_t& out);

/// Reads a GOST public key: parameter sets from the parameters of `pk`, the key from its key bits.
///
/// A third element of the parameters that is not a well-formed OBJECT IDENTIFIER is ignored. The second set is
/// required: a key without it, which RFC 9215 4.2 allows, is refused, and its first set is stored.
///
/// @param pk   From asn_read_pubkey; its algorithm is ignored.
/// @param out  Receives spans of the input of asn_read_pubkey. After a failure parameter sets read before it are stored
///             (an absent third one as 0 and null), and the others, always the key, are unchanged.
/// @return     True when two parameter sets and the key were found.
/// @throws     Nothing.
PKIDER_API bool asn_read_gost_pubkey(const asn_pubkey_t& pk, asn_gost_pubkey_t& out);

/// Splits a DSA signature value (Dss-Sig-Value, RFC 3279 2.2.2).
///
/// The second INTEGER is bounded by the buffer, not by the SEQUENCE around it: a SEQUENCE that ends before it is
/// accepted. Bytes after it are ignored, inside the SEQUENCE too.
///
/// The numbers are not checked. A host that verifies signatures must itself refuse a number without contents and one
/// whose contents begin with a byte of 0x80 or above, which is negative (X.690 8.3.3). Where a signature must have one
/// encoding only, the host must also refuse a value that does not encode to the same bytes again.
///
/// @param der  First byte of the element.
/// @param len  Bytes available from `der`.
/// @param out  Receives spans of `der`. A failure at the first INTEGER sets `r` to 0 and null. A failure at the second
///             one leaves `r` stored. All other fields are unchanged by a failure.
/// @return     True when both numbers were found.
/// @throws     Nothing.
PKIDER_API bool asn_read_dsa_certsign(const uint8_t* der, uint32_t len, asn_dsa_certsign_t& out);

/// Splits a signature AlgorithmIdentifier of IKE (RFC 7427 3). The parameters are not checked.
///
/// @param der  First byte of the element.
/// @param len  Bytes available from `der`. Give the element's own size: all bytes after the object identifier count as
///             parameters, also those after the element.
/// @param out  Receives spans of `der`. A missing or malformed object identifier sets its span to 0 and null; fields
///             not reached are unchanged.
/// @return     True when the object identifier was found.
/// @throws     Nothing.
PKIDER_API bool asn_read_ike_signalg(const uint8_t* der, uint32_t len, asn_ike_signalg_t& out);
