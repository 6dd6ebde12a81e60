// A whole crypto object for asn_read_pkcs12_easy and asn_write_pkcs12_easy: GOST algorithms, on libgcrypt.
//
// The library does the DER and no cryptography; a host brings an object like this one. It is complete, and written to
// be read before you write your own: docs/crypto_object.md goes through it. Two bridges are in it, because the
// interface hands over whole OCTET STRING elements where other programs encrypt and authenticate the contents alone:
//
//   decrypt    puts an OCTET STRING header before the bare SafeContents of an encryptedData
//   encrypt    leaves that header out of the ciphertext
//   check_mac, make_mac    leave it out of the MAC
//
//     gost_pbe_t crypto(secret_t("password"));
//     crypto.set_input(file);
//     pkcs12_easy_t content;
//     if (!asn_read_pkcs12_easy(file.data(), file.size(), &crypto, content)) report(crypto.fault());
#pragma once

#include "tools/pkider/base/secret.h"
#include "tools/pkider/crypto/iteration_limit.h"
#include "tools/pkider/crypto/key_derivation.h"

#include <pkider/pkcs12.h>

#include <array>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace tool {

/// Why the latest check_mac or decrypt answered false.
enum class pbe_fault_t {
    none,                ///< It answered true, or was never called.
    malformed,           ///< What should be an OCTET STRING element is none.
    unknown_digest,      ///< check_mac: no MAC of this digest is known here.
    wrong_mac,           ///< check_mac: wrong password, or the file was changed.
    too_many_iterations, ///< The file asks for more than is allowed; see asked_iterations().
    bad_parameters,      ///< No iterations at all, or an IV that is not 8 bytes long.
    unknown_param_set,   ///< decrypt: a parameter set of the cipher that libgcrypt does not know.
    wrong_plaintext,     ///< decrypt: what comes out is not what belongs there: wrong password, or damage.
    no_cipher,           ///< libgcrypt refuses the algorithm (as in its FIPS mode).
};

/// In words, to follow "cannot be decrypted: ".
const char* pbe_fault_text(pbe_fault_t fault);

/// Ways to make the MAC key that are in use; only a trial distinguishes them.
enum class mac_form_t {
    pbkdf2, ///< The last 32 of 96 bytes of PBKDF2.
    pkcs12, ///< The key derivation of RFC 7292 B.2.
};

/// What encrypt and make_mac throw. Their false would not stop the writer, which would write a file without secrets in
/// it or, worse, one that nobody can open.
struct pbe_error_t : std::runtime_error {
    explicit pbe_error_t(pbe_fault_t why) : std::runtime_error(pbe_fault_text(why)), fault(why) {}
    pbe_fault_t fault;
};

struct gost_pbe_options_t {
    uint32_t iterations = default_iterations; ///< For what is written, MAC and cipher alike. See is_storable_count.
    /// For all keys that are derived in the life of the object together, each form of a MAC that is tried among them.
    /// Iterations that cost less than those of the cipher's key count for less.
    uint64_t max_iterations = default_max_iterations;
    /// Instead of `max_iterations`, where several objects work on one file. It outlives them.
    iteration_budget_t* shared_budget = nullptr;
    progress_t on_progress; ///< Called during a derivation.
};

/// Crypto object for one password.
///
/// @par Memory   The password and the keys are wiped. A plaintext is handed out in a std::string, which its owner
/// wipes.
/// @par Threads  An object is used by one thread at a time.
class gost_pbe_t final : public pbe_crypto_t {
  public:
    /// @throws std::invalid_argument  `options.iterations` cannot be stored by the writers of the library.
    /// @throws pbe_error_t            libgcrypt is older than its header.
    explicit gost_pbe_t(secret_t password, gost_pbe_options_t options = {});

    /// Gives the place of the bytes that a reader walks, so that `decrypt` may search the cipher's parameter set after
    /// the IV. Without it, or for records that point elsewhere, 1.2.643.2.2.31.1 is taken. The bytes stay the caller's;
    /// call it again before another input is read, and with an empty span before `input` dies.
    void set_input(std::span<const uint8_t> input);

    bool check_mac(const pkcs12_mac_t& mac, const uint8_t* data, uint64_t size) override;
    /// `mac` points into the object. @throws pbe_error_t
    bool make_mac(const uint8_t* data, uint64_t size, pkcs12_mac_t& mac) override;
    bool decrypt(const pkcs8_encrypted_pki_gost_t& params, const uint8_t* data, uint64_t size,
                 std::string& plain) override;
    /// `params` points into the object. @throws pbe_error_t
    bool encrypt(const uint8_t* data, uint64_t size, pkcs8_encrypted_pki_gost_t& params, std::string& storage) override;

    /// Encrypts a PrivateKeyInfo as it is, for asn_write_pkcs8_encrypted_pki_gost. `params` points into the object and
    /// into `storage`. @throws pbe_error_t
    void encrypt_key(std::span<const uint8_t> info, pkcs8_encrypted_pki_gost_t& params, std::string& storage);

    const gost_pbe_options_t& options() const { return m_options; }
    pbe_fault_t fault() const { return m_fault; }
    /// Count of the derivation that was asked for last.
    uint64_t asked_iterations() const { return m_asked.iterations; }
    /// What was asked for last, and the limit, in words: for pbe_fault_t::too_many_iterations.
    std::string too_many_iterations() const { return budget().refusal(m_asked); }
    /// After check_mac said true.
    mac_form_t mac_form() const { return m_mac_form; }

  private:
    struct derived_key_t {
        int hash = 0;
        uint32_t iterations = 0, block = 0;
        std::vector<uint8_t> salt;
        secret_t key;
    };
    using salt_t = std::array<uint8_t, 8>;

    bool fail(pbe_fault_t fault);
    iteration_budget_t& budget() { return m_options.shared_budget != nullptr ? *m_options.shared_budget : m_budget; }
    const iteration_budget_t& budget() const { return const_cast<gost_pbe_t*>(this)->budget(); }
    bool may_iterate(const asked_iterations_t& asked);
    std::span<const uint8_t> pbkdf2(int hash, std::span<const uint8_t> salt, const asked_iterations_t& asked,
                                    uint32_t block);
    std::span<const uint8_t> pbkdf2_mac_key(int hash, std::span<const uint8_t> salt, const asked_iterations_t& asked);
    const char* sbox_behind_iv(const pkcs8_encrypted_pki_gost_t& params, const uint8_t* data) const;
    bool take_plaintext(bool is_key, std::size_t room, std::string& plain);
    void encrypt_bytes(std::span<const uint8_t> plain, pkcs8_encrypted_pki_gost_t& params, std::string& storage);

    secret_t m_password;
    gost_pbe_options_t m_options;
    iteration_budget_t m_budget;

    std::vector<std::span<const uint8_t>> m_readable; // the input, and the plaintexts that were handed out from it
    std::array<derived_key_t, 4> m_derived;           // the latest: what was written is read back without a second wait
    std::size_t m_next_derived = 0;

    salt_t m_salt{}, m_iv{}, m_mac_salt{}; // the writer reads them after encrypt and make_mac have returned
    std::vector<uint8_t> m_digest;

    pbe_fault_t m_fault = pbe_fault_t::none;
    asked_iterations_t m_asked;
    mac_form_t m_mac_form = mac_form_t::pbkdf2;
};

} // namespace tool
