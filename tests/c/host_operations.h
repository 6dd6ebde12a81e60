// The four callbacks of a host whose ciphertext is the plaintext. They take no memory; what each of them returns can be
// changed.
#pragma once

#include <pkider/c/pkider.h>

#include "tests/support/hex.h"

#include <vector>

namespace pkider_test {

struct host_operations_t {
    int check_mac = PKIDER_CALLBACK_OK;
    int make_mac = PKIDER_CALLBACK_OK;
    int decrypt = PKIDER_CALLBACK_OK;
    int encrypt = PKIDER_CALLBACK_OK;
    std::vector<bytes_t>* seen = nullptr; // the bytes that each operation was given

    pkider_pbe_crypto_t crypto() { return {on_check_mac, on_make_mac, on_decrypt, on_encrypt, this}; }

  private:
    static constexpr uint8_t digest[4] = {0xD1, 0xD2, 0xD3, 0xD4};
    static constexpr uint8_t salt[2] = {0x51, 0x52};
    static constexpr uint8_t iv[3] = {0x61, 0x62, 0x63};

    static host_operations_t& note(void* context, const uint8_t* data, uint64_t size) {
        auto& self = *static_cast<host_operations_t*>(context);
        if (self.seen != nullptr) self.seen->push_back(bytes_t(data, data + size));
        return self;
    }
    static int on_check_mac(void* context, const pkider_pkcs12_mac_t*, const uint8_t* data, uint64_t size) {
        return note(context, data, size).check_mac;
    }
    static int on_make_mac(void* context, const uint8_t* data, uint64_t size, pkider_pkcs12_mac_t* mac) {
        mac->digest = {digest, sizeof digest};
        mac->salt = {salt, sizeof salt};
        mac->iterations = 2000;
        return note(context, data, size).make_mac;
    }
    // Writes in two pieces, as a host with a stream does.
    static int on_decrypt(void* context, const pkider_encrypted_gost_key_t*, const uint8_t* data, uint64_t size,
                          const pkider_sink_t* plain) {
        plain->write(plain->context, data, size / 2);
        plain->write(plain->context, data + size / 2, size - size / 2);
        return note(context, data, size).decrypt;
    }
    static int on_encrypt(void* context, const uint8_t* data, uint64_t size, pkider_encrypted_gost_key_t* params,
                          const pkider_sink_t* encrypted) {
        params->salt = {salt, sizeof salt};
        params->iterations = 1000;
        params->iv = {iv, sizeof iv};
        encrypted->write(encrypted->context, data, size);
        return note(context, data, size).encrypt;
    }
};

} // namespace pkider_test
