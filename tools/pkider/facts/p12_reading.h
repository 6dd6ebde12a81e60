// A PKCS#12 file as the commands read it: through the library, with a record of what the crypto object was asked, so
// that afterwards the ignored parts and the reasons are known.
#pragma once

#include "tools/pkider/crypto/gost_pbe.h"
#include "tools/pkider/formats/der_cursor.h"
#include "tools/pkider/formats/oid_constant.h"

#include <pkider/pkcs12.h>

#include <vector>

namespace tool {

/// Content type data (RFC 5652 4).
inline constexpr bytes_t data_type = oid<"1.2.840.113549.1.7.1">;

/// The outermost layer, for those who need no more (RFC 7292 4).
struct pfx_t {
    der_element_t authenticated_safe; ///< OCTET STRING, over whose contents the MAC is made.
    pkcs12_mac_t mac;
};

/// @throws der_fault_t  The bytes are no PFX with a MAC by a password.
pfx_t read_pfx(bytes_t file);

/// What became of one call of `decrypt`.
struct decryption_t {
    const uint8_t* ciphertext = nullptr;
    pbe_fault_t fault = pbe_fault_t::none;
    uint32_t iterations = 0;
    bytes_t plain; ///< Empty when there was a fault. Lives as long as the buffers of the record.
};

/// Passes every call on, and writes down how it ended.
class recording_pbe_t final : public pbe_crypto_t {
  public:
    explicit recording_pbe_t(gost_pbe_t& crypto) : m_crypto(crypto) {}

    bool check_mac(const pkcs12_mac_t& mac, const uint8_t* data, uint64_t size) override;
    bool make_mac(const uint8_t* data, uint64_t size, pkcs12_mac_t& mac) override;
    bool decrypt(const pkcs8_encrypted_pki_gost_t& params, const uint8_t* data, uint64_t size,
                 std::string& plain) override;
    bool encrypt(const uint8_t* data, uint64_t size, pkcs8_encrypted_pki_gost_t& params, std::string& storage) override;

    bool refused_mac() const { return m_refused_mac; }
    std::vector<decryption_t>& decryptions() { return m_decryptions; }

  private:
    gost_pbe_t& m_crypto;
    bool m_refused_mac = false;
    std::vector<decryption_t> m_decryptions;
};

/// A file that was opened: what the library took from it, wiped in the end.
struct p12_reading_t {
    pkcs12_easy_t content;
    std::vector<decryption_t> decryptions; ///< In the order of the file.
    bool complete = false;                 ///< False: the library stopped at malformed DER; items before it are there.

    p12_reading_t() = default;
    p12_reading_t(p12_reading_t&&) noexcept = default;
    p12_reading_t& operator=(p12_reading_t&&) = delete;
    ~p12_reading_t();
};

/// "GOST 34.11-94, PBKDF2 with 2048 iterations"
std::string mac_text(const pkcs12_mac_t& mac, mac_form_t form);

/// Checks the MAC alone. @throws failure_t  It is not right, or cannot be checked.
void check_mac(const pfx_t& pfx, gost_pbe_t& crypto);

/// Checks the MAC and reads all. @throws failure_t  As check_mac, and for the outermost layer.
p12_reading_t read_p12(bytes_t file, gost_pbe_t& crypto);

} // namespace tool
