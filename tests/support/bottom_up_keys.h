// GOST keys written by nested asn_writer_t, to hold the counting writers against.
#pragma once

#include <pkider/pkcs8.h>

#include "tests/support/bottom_up.h"
#include "tests/support/hex.h"

namespace pkider_test {

inline std::string hex_string(const char* text) {
    return from_hex(text).str();
}

inline std::string bottom_up_gost_key(const pkcs8_pki_gost_t& key) {
    const char* const algorithms[] = {"06 06 2A 85 03 02 02 13", "06 08 2A 85 03 07 01 01 01 01",
                                      "06 08 2A 85 03 07 01 01 01 02", "06 00"};
    const char* const params[] = {"06 07 2A 85 03 02 02 23 01", "06 09 2A 85 03 07 01 02 01 01 01",
                                  "06 09 2A 85 03 07 01 02 01 02 01", "06 00"};
    const uint32_t kind = key.key_type < 3 ? key.key_type : 3;
    const std::string digest_params = hex_string("06 07 2A 85 03 02 02 1E 01");

    const std::string params_sequence = bottom_up(0x30, {hex_string(params[kind]), digest_params});
    const std::string algorithm = bottom_up(0x30, {hex_string(algorithms[kind]), params_sequence});
    const std::string inner = bottom_up(0x04, key.key, key.key_len);
    return bottom_up(0x30, {hex_string("02 01 00"), algorithm, bottom_up(0x04, {inner})});
}

inline std::string bottom_up_encrypted_alg(const pkcs8_encrypted_pki_gost_t& key) {
    const std::string prf = hex_string("30 0A 06 06 2A 85 03 02 02 0A 05 00");
    const std::string salt = bottom_up(0x04, key.salt, key.salt_len);
    const std::string pbkdf2_params = bottom_up(0x30, {salt, bottom_up_count(key.iterations), prf});
    const std::string derivation = bottom_up(0x30, {hex_string("06 09 2A 86 48 86 F7 0D 01 05 0C"), pbkdf2_params});

    const std::string iv = bottom_up(0x04, key.iv, key.iv_len);
    const std::string cipher_params = bottom_up(0x30, {iv, hex_string("06 07 2A 85 03 02 02 1F 01")});
    const std::string scheme = bottom_up(0x30, {hex_string("06 06 2A 85 03 02 02 15"), cipher_params});

    const std::string pbes2_params = bottom_up(0x30, {derivation, scheme});
    return bottom_up(0x30, {hex_string("06 09 2A 86 48 86 F7 0D 01 05 0D"), pbes2_params});
}

inline std::string bottom_up_encrypted_gost_key(const pkcs8_encrypted_pki_gost_t& key) {
    return bottom_up(0x30, {bottom_up_encrypted_alg(key), bottom_up(0x04, key.encrypted, key.encrypted_len)});
}

} // namespace pkider_test
