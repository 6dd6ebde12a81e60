// A crypto object for tests: it writes down each call, encrypts by turning every bit, and fails, throws or denies what
// it did on demand.
#pragma once

#include <pkider/pkcs12.h>

#include "tests/support/hex.h"

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace pkider_test {

inline std::string flipped(const uint8_t* data, uint64_t size) {
    std::string out(data, data + size);
    for (char& c : out) c = static_cast<char>(~c);
    return out;
}

inline bytes_t flipped(const bytes_t& bytes) {
    return to_bytes(flipped(bytes.data(), bytes.size()));
}

struct crypto_call_t {
    std::string operation;
    const uint8_t* data;
    std::string bytes;
    pkcs12_mac_t mac;                  // at the time of the call
    pkcs8_encrypted_pki_gost_t params; // likewise
    std::string text;                  // `plain` or `storage`, likewise
};

struct crypto_error_t : std::runtime_error {
    using std::runtime_error::runtime_error;
};

class recording_crypto_t final : public pbe_crypto_t {
  public:
    std::vector<crypto_call_t> calls;
    std::string failing;  // the operation that answers false
    std::string throwing; // the operation that throws
    std::string denying;  // the operation that does its work and then answers false
    // Takes the place of the turned bits in decrypt, when set.
    std::function<bool(const pkcs8_encrypted_pki_gost_t& params, std::string& plain)> on_decrypt;

    bytes_t salt = "A1 A2 A3 A4 A5 A6 A7 A8"_hex;
    bytes_t iv = "B1 B2 B3 B4 B5 B6 B7 B8"_hex;
    uint32_t iterations = 1000;
    bytes_t mac_digest = bytes_t(32, 0xDD);
    bytes_t mac_salt = "C1 C2 C3 C4 C5 C6 C7 C8"_hex;
    uint32_t mac_iterations = 2000;

    bool check_mac(const pkcs12_mac_t& mac, const uint8_t* data, uint64_t size) override {
        return record({"check_mac", data, std::string(data, data + size), mac, {}, {}});
    }

    bool make_mac(const uint8_t* data, uint64_t size, pkcs12_mac_t& mac) override {
        if (!record({"make_mac", data, std::string(data, data + size), mac, {}, {}})) return false;
        mac.digest_len = mac_digest.size();
        mac.digest = mac_digest.data();
        mac.salt_len = mac_salt.size();
        mac.salt = mac_salt.data();
        mac.iterations = mac_iterations;
        return denying != "make_mac";
    }

    bool decrypt(const pkcs8_encrypted_pki_gost_t& params, const uint8_t* data, uint64_t size,
                 std::string& plain) override {
        if (!record({"decrypt", data, std::string(data, data + size), {}, params, plain})) return false;
        if (on_decrypt) return on_decrypt(params, plain);
        plain = flipped(data, size);
        return denying != "decrypt";
    }

    bool encrypt(const uint8_t* data, uint64_t size, pkcs8_encrypted_pki_gost_t& params,
                 std::string& storage) override {
        if (!record({"encrypt", data, std::string(data, data + size), {}, params, storage})) return false;
        params.salt_len = salt.size();
        params.salt = salt.data();
        params.iterations = iterations;
        params.iv_len = iv.size();
        params.iv = iv.data();
        storage = flipped(data, size);
        return denying != "encrypt";
    }

    std::vector<std::string> operations() const {
        std::vector<std::string> out;
        for (const crypto_call_t& call : calls) out.push_back(call.operation);
        return out;
    }

  private:
    bool record(crypto_call_t call) {
        calls.push_back(std::move(call));
        if (calls.back().operation == throwing) throw crypto_error_t(throwing);
        return calls.back().operation != failing;
    }
};

} // namespace pkider_test
