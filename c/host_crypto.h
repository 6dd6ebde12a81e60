// The host's four callbacks as the object that the library's reader and writer of PKCS#12 call.
#pragma once

#include <pkider/c/pkider.h>
#include <pkider/pkcs12.h>

#include <string>

namespace pkider::c {

pkider_pkcs12_mac_t shown(const pkcs12_mac_t& mac);
pkcs12_mac_t record_of(const pkider_pkcs12_mac_t& mac);

/// A callback that fails ends the library's call by stopped_t; only the library that encrypts must go on, to wipe the
/// plaintext.
class host_crypto_t final : public pbe_crypto_t {
  public:
    explicit host_crypto_t(const pkider_pbe_crypto_t& host) : m_host(host) {}

    bool check_mac(const pkcs12_mac_t& mac, const uint8_t* data, uint64_t size) override;
    bool make_mac(const uint8_t* data, uint64_t size, pkcs12_mac_t& mac) override;
    bool decrypt(const pkcs8_encrypted_pki_gost_t& params, const uint8_t* data, uint64_t size,
                 std::string& plain) override;
    bool encrypt(const uint8_t* data, uint64_t size, pkcs8_encrypted_pki_gost_t& params, std::string& storage) override;

    /// Whether check_mac was called and the host refused the MAC.
    bool has_refused_mac() const { return m_has_refused_mac; }

    /// The fault of encrypt, or PKIDER_OK. After a fault, what the library has written is not a file.
    pkider_status_t encryption_fault() const { return m_encryption_fault; }

  private:
    const pkider_pbe_crypto_t& m_host;
    bool m_has_refused_mac = false;
    pkider_status_t m_encryption_fault = PKIDER_OK;
};

} // namespace pkider::c
