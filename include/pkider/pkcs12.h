// Simple PKCS#12 files (RFC 7292): private keys and certificates. The host's pbe_crypto_t does all cryptography.
//
//     class my_crypto_t final : public pbe_crypto_t { ... };                // holds the password
//
//     my_crypto_t crypto(password);
//     pkcs12_easy_t safe;
//     if (asn_read_pkcs12_easy(file.data(), file.size(), &crypto, safe))    // `file` must outlive `safe`
//         for (const pkcs12_item_t& item : safe.protected_items) use(item);
//
//     std::string pfx;
//     asn_write_pkcs12_easy(safe, &crypto, pfx);
#pragma once

#include <pkider/export.h>
#include <pkider/pkcs8.h>

#include <cstdint>
#include <list>
#include <string>

/// The parts of a MacData. The reader's spans point into its input; for writing they belong to the host.
struct pkcs12_mac_t {
    uint64_t digest_alg_len = 0;         ///< Bytes at `digest_alg`.
    const uint8_t* digest_alg = nullptr; ///< Contents of the digest's AlgorithmIdentifier: OID element, parameters.
    uint64_t digest_len = 0;             ///< Bytes at `digest`.
    const uint8_t* digest = nullptr;     ///< The MAC value.
    uint64_t salt_len = 0;               ///< Bytes at `salt`.
    const uint8_t* salt = nullptr;       ///< Salt of the MAC's key derivation.
    uint32_t iterations = 0;             ///< Its iteration count.
};

/// The kind of an item. A record to be written may contain any other value; see asn_write_pkcs12_easy.
enum pkcs12_item_type_t : uint32_t {
    PKCS12_ITEM_KEY = 0,  ///< A private key: the DER of a PrivateKeyInfo.
    PKCS12_ITEM_CERT = 1, ///< A certificate: the octets inside a certBag of any certificate type.
};

/// One key or certificate with its two attributes.
struct pkcs12_item_t {
    pkcs12_item_type_t type = PKCS12_ITEM_KEY;
    uint64_t data_len = 0;                  ///< Bytes at `data`.
    const uint8_t* data = nullptr;          ///< The key or the certificate.
    uint64_t friendly_name_len = 0;         ///< Bytes (not characters) at `friendly_name`; 0: no name.
    const uint8_t* friendly_name = nullptr; ///< Big-endian UTF-16 without terminator, neither checked nor converted.
    uint64_t local_key_id_len = 0;          ///< Bytes at `local_key_id`; 0: no identifier.
    const uint8_t* local_key_id = nullptr;  ///< Pairs a key with its certificate; the library ignores it.
};

/// The contents of a PKCS#12 file. It can be moved, not copied: items point into `buffers`, and moving keeps their
/// addresses.
struct pkcs12_easy_t {
    std::list<pkcs12_item_t> plain_items;     ///< Not encrypted in the file; they point into the input.
    std::list<pkcs12_item_t> protected_items; ///< Encrypted in the file, and every shrouded key; data in `buffers`.
    pkcs12_mac_t mac;                         ///< The MacData; points into the input.
    std::list<std::string> buffers;           ///< Decrypted plaintexts, keys among them: keep them as long
                                              ///< as items are used, and wipe them; the record does not.

    pkcs12_easy_t() = default;
    pkcs12_easy_t(pkcs12_easy_t&&) noexcept = default;
    pkcs12_easy_t& operator=(pkcs12_easy_t&&) noexcept = default;
    pkcs12_easy_t(const pkcs12_easy_t&) = delete;
    pkcs12_easy_t& operator=(const pkcs12_easy_t&) = delete;
};

/// The cryptography of PKCS#12, implemented by the host. The object chooses password, salts and counts. It does not
/// choose the encryption, which the DER fixes: PBES2 with PBKDF2, HMAC GOST R 34.11-94 and GOST 28147-89 (RFC 8018 A.4,
/// RFC 4357). docs/crypto_object.md describes such an object.
///
/// Declare the implementing class `final`: the destructor here is neither public nor virtual, so that the four
/// operations are the first four entries of the virtual table, and its creator destroys the object.
///
/// An exception of an operation passes through the reader or the writer to the caller. Pointers that an operation is
/// given are valid during the call only. Operations are called one after the other, on the thread that called the
/// reader or the writer.
class PKIDER_API pbe_crypto_t {
  public:
    /// Reading, once, before any content: checks the MAC.
    ///
    /// @param mac   The MacData of the file.
    /// @param data  The contents of the authSafe's [0]: the OCTET STRING **with its identifier and length**, perhaps
    ///              followed by other bytes. It is not yet checked to be an OCTET STRING. RFC 7292 makes the MAC over
    ///              the contents of that element alone: skip the header to verify files of other programs.
    /// @param size  Bytes at `data`.
    /// @return      True when the MAC is right. False fails the read.
    virtual bool check_mac(const pkcs12_mac_t& mac, const uint8_t* data, uint64_t size) = 0;

    /// Writing, once, at the end: makes the MAC.
    ///
    /// @param data  The OCTET STRING around the AuthenticatedSafe, identifier and length included: the bytes that
    ///              check_mac is given when the file is read.
    /// @param size  Bytes at `data`.
    /// @param mac   A zeroed record to fill. `digest`, `salt` and `iterations` are written; `digest_alg` is not: the
    ///              file always names GOST R 34.11-94. Its pointers must be valid until the writer returns. Choose a
    ///              count without zero bytes (docs/conventions.md): 2048 is written as 8, and nobody can verify the
    ///              file.
    /// @return      False makes the writer use the `mac` of the record being written, unchanged.
    virtual bool make_mac(const uint8_t* data, uint64_t size, pkcs12_mac_t& mac) = 0;

    /// Reading, once for each encryptedData and each shrouded key, in their order in the file.
    ///
    /// **`params.encrypted` distinguishes the two.** For an encryptedData it is null, with a length of 0. The plaintext
    /// must then begin with an OCTET STRING that contains the SafeContents, or the whole read fails. Other programs
    /// encrypt the SafeContents SEQUENCE without it: add the header of an OCTET STRING before it. For a shrouded key
    /// `params.encrypted` and its length equal `data` and `size`. The plaintext, a PrivateKeyInfo, becomes an item
    /// without a check.
    ///
    /// @param params  Salt, iteration count and IV; the other fields are zero, except as above. The count is that of
    ///                the file, which may be 0 or 4294967295: limit it. A count without contents is 0. The cipher's
    ///                parameter set is not here; docs/crypto_object.md describes where it is.
    /// @param data    The ciphertext, in the caller's input or in an earlier plaintext.
    /// @param size    Bytes at `data`.
    /// @param plain   An empty string that receives the plaintext.
    /// @return        False skips the content, and the read continues; `plain` is dropped, and not wiped. Return false
    ///                for a plaintext that cannot be right: there may be no other sign of a wrong password.
    virtual bool decrypt(const pkcs8_encrypted_pki_gost_t& params, const uint8_t* data, uint64_t size,
                         std::string& plain) = 0;

    /// Writing, once, only when there are protected items. The file names the cipher's parameter set 1.2.643.2.2.31.1.
    ///
    /// @param data     An OCTET STRING, identifier and length included, around the SafeContents. Encrypt all of it,
    ///                 and decrypt gets all of it back. Or encrypt its contents only, so that other programs can
    ///                 read the file; decrypt then adds the header again.
    /// @param size     Bytes at `data`.
    /// @param params   A zeroed record to fill with the salt, IV and iteration count used (a count without zero bytes,
    ///                 as above). Its pointers must be valid until the writer returns.
    /// @param storage  An empty string that receives the ciphertext.
    /// @return         **Ignored.** The contents of `storage` go into the file. After a failure leave it empty, or
    ///                 throw; never leave the plaintext in it.
    virtual bool encrypt(const uint8_t* data, uint64_t size, pkcs8_encrypted_pki_gost_t& params,
                         std::string& storage) = 0;

  protected:
    ~pbe_crypto_t() = default;
};

/// Reads the contents of a MacData. The MAC is not checked.
///
/// @param data  First byte inside the MacData SEQUENCE, where the DigestInfo begins; not the SEQUENCE element itself.
///              May be null when `size` is 0.
/// @param size  Bytes available from `data`; bytes after the last element are ignored.
/// @param mac   Receives the parts, as spans into `data`. `iterations` is 1 when the INTEGER is absent or has no
///              contents; one of five significant bytes loses its high byte; a negative or longer one is refused. After
///              a failure part of the record may be written; do not use it then.
/// @return      True when the parts were found. The algorithm, the lengths and the count are not checked.
/// @throws      Nothing.
/// @par Threads   Touches only its arguments; calls on different records may overlap.
/// @par Standard  RFC 7292 4.
PKIDER_API bool asn_read_pkcs12_MacData(const uint8_t* data, uint64_t size, pkcs12_mac_t& mac);

/// Reads the keys and certificates of a PKCS#12 file.
///
/// A file without a MacData is refused. A version of one byte is accepted with any value. Every key and certificate is
/// kept, in the order of the file; keys and certificates are not paired, and duplicates are kept. A keyBag that is not
/// encrypted gives a plain item. A shrouded key always gives a protected item.
///
/// Malformed DER fails the read. These parts are silently ignored: contents and shrouded keys with another encryption
/// than that of pbe_crypto_t or with malformed parameters, contents and keys for which `decrypt` returns false, other
/// content types, and bags of other kinds (CRLs, secrets, nested SafeContents). The attributes of an ignored bag must
/// still be well formed.
///
/// @param data    First byte of the PFX; bytes after it are ignored. Must be valid as long as `out` is used: plain
///                items, `mac` and the attributes of shrouded keys point into it. May be null when `size` is 0.
/// @param size    Bytes available from `data`.
/// @param crypto  Checks the MAC and decrypts; must not be null.
/// @param out     Items, and the plaintexts that they point into, are **appended**: reading twice gives every item
///                twice. `mac` is replaced. After a failure or an exception everything appended until then stays, and
///                all of it points at valid bytes; part of `mac` may be written, the rest of it is unchanged. In
///                `buffers` a plaintext follows the keys that were found inside it.
/// @return        True when the whole file was read.
/// @throws        std::bad_alloc, and the exceptions of the operations of `crypto`.
/// @par Threads   Calls with different records and crypto objects may overlap.
/// @par Standard  RFC 7292; PKCS#7 types of RFC 2315.
PKIDER_API bool asn_read_pkcs12_easy(const uint8_t* data, uint64_t size, pbe_crypto_t* crypto, pkcs12_easy_t& out);

/// Writes a PKCS#12 file: the plain items without encryption, then the protected items encrypted, then the MAC.
///
/// Keys are always written as plain keyBags, inside the encrypted contents too, certificates always as x509Certificate.
/// An item of any other type becomes a bag that contains only its attributes, and no reader accepts it. Friendly names
/// are written unchanged and must be big-endian UTF-16; an attribute of length 0 is omitted.
///
/// The writer always makes a file. The result of `encrypt` is ignored. When `make_mac` returns false, the MAC in `in`
/// is written, which is empty in a new record. Lengths of 65,536 and more may be written cut, and an iteration count
/// loses its zero bytes (docs/conventions.md): read the file back before you rely on it.
///
/// Memory in addition to the output: the plaintext of the protected items while they are encrypted, then the ciphertext
/// while the output is built. The plaintext is wiped when `encrypt` has returned, so nothing of it is in the spare
/// capacity of `out`; after an exception it may stay in freed memory.
///
/// @param in      Items, and the MAC that is written when `make_mac` fails. A null pointer with a length is written as
///                zeros. Spans may point into `out`. `buffers` is ignored.
/// @param crypto  Called for `encrypt` (only when there are protected items), then `make_mac`; must not be null.
/// @param out     Replaced by the PFX; unchanged after an exception.
/// @throws        std::bad_alloc, std::length_error when an element would exceed 0xFFFFFFFF bytes, and the exceptions
///                of the operations of `crypto`.
/// @par Threads   Reads `in`; calls with different strings and crypto objects may overlap.
/// @par Standard  RFC 7292; PKCS#7 types of RFC 2315.
PKIDER_API void asn_write_pkcs12_easy(const pkcs12_easy_t& in, pbe_crypto_t* crypto, std::string& out);
