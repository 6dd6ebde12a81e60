#include <pkider/pkcs8.h>

#include "tests/support/hex.h"

#include <gtest/gtest.h>

#include <string>

using namespace pkider_test;

namespace {

const uint8_t* bytes(const std::string& der) {
    return reinterpret_cast<const uint8_t*>(der.data());
}

} // namespace

TEST(InterfacePkcs8, WritesAGostKeyAndReadsIt) {
    const bytes_t secret(32, 0x5A);
    pkcs8_pki_gost_t key;
    key.key_type = 1;
    key.key_len = secret.size();
    key.key = secret.data();
    std::string der = "replaced";
    asn_write_pkcs8_pki_gost(key, der);

    pkcs8_pki_gost_t read;
    ASSERT_TRUE(asn_read_pkcs8_pki_gost(bytes(der), der.size(), read));
    EXPECT_EQ(read.key_type, 1U);
    EXPECT_EQ(bytes_t(read.key, read.key + read.key_len), secret);

    asn_pkcs8_priv_key_info_t info;
    ASSERT_TRUE(asn_read_pkcs8_priv_key_info(bytes(der), static_cast<uint32_t>(der.size()), info));
    EXPECT_EQ(bytes_t(info.alg_oid, info.alg_oid + info.alg_oid_len), "2A 85 03 07 01 01 01 01"_hex);
    EXPECT_EQ(info.private_key_len, 34U);
}

TEST(InterfacePkcs8, WritesAnEncryptedKeyAndReadsIt) {
    const bytes_t salt = "01 02 03 04"_hex;
    const bytes_t iv = "11 12 13 14 15 16 17 18"_hex;
    const bytes_t encrypted = "AA BB CC"_hex;
    pkcs8_encrypted_pki_gost_t key;
    key.salt_len = salt.size();
    key.salt = salt.data();
    key.iterations = 1000;
    key.iv_len = iv.size();
    key.iv = iv.data();
    key.encrypted_len = encrypted.size();
    key.encrypted = encrypted.data();
    std::string der;
    asn_write_pkcs8_encrypted_pki_gost(key, der);

    pkcs8_encrypted_pki_gost_t read;
    ASSERT_TRUE(asn_read_pkcs8_encrypted_pki_gost(bytes(der), der.size(), read));
    EXPECT_EQ(bytes_t(read.salt, read.salt + read.salt_len), salt);
    EXPECT_EQ(read.iterations, 1000U);
    EXPECT_EQ(bytes_t(read.iv, read.iv + read.iv_len), iv);
    EXPECT_EQ(bytes_t(read.encrypted, read.encrypted + read.encrypted_len), encrypted);
}
