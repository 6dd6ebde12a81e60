// A crypto object whose ciphertext is the plaintext. It takes no memory but for its two answers, so what a test counts
// is what the library itself takes. What a test is about it changes in a class of its own:
//
//     class short_crypto_t final : public plain_crypto_t {
//       public:
//         bool encrypt(...) override { ... }
//     };
#pragma once

#include <pkider/pkcs12.h>

#include <cstddef>
#include <string>

namespace pkider_test {

class plain_crypto_t : public pbe_crypto_t {
  public:
    bool check_mac(const pkcs12_mac_t&, const uint8_t*, uint64_t) override { return true; }
    bool make_mac(const uint8_t*, uint64_t, pkcs12_mac_t&) override { return true; }
    bool decrypt(const pkcs8_encrypted_pki_gost_t&, const uint8_t* data, uint64_t size, std::string& plain) override {
        plain.assign(reinterpret_cast<const char*>(data), static_cast<std::size_t>(size));
        return true;
    }
    bool encrypt(const uint8_t* data, uint64_t size, pkcs8_encrypted_pki_gost_t& params,
                 std::string& storage) override {
        params.iterations = 1000;
        storage.assign(reinterpret_cast<const char*>(data), static_cast<std::size_t>(size));
        return true;
    }
};

} // namespace pkider_test
