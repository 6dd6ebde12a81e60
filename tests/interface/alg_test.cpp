#include <pkider/alg.h>

#include "tests/support/hex.h"

#include <gtest/gtest.h>

#include <string>

using namespace pkider_test;

namespace {

uint32_t size_of(const bytes_t& bytes) {
    return static_cast<uint32_t>(bytes.size());
}

bytes_t bytes_of(const PKI_OID& oid) {
    return bytes_t(oid.data, oid.data + oid.len);
}

bytes_t span(uint32_t len, const uint8_t* data) {
    return bytes_t(data, data + len);
}

} // namespace

TEST(InterfaceAlg, MapsAlgorithmsToOidsAndBack) {
    const bytes_t sha256 = "60 86 48 01 65 03 04 02 01"_hex;
    EXPECT_EQ(bytes_of(PKI_HASH_ALG_TO_OID(PKI_ALG_SHA256)), sha256);
    EXPECT_EQ(PKI_OID_TO_HASH_ALG(sha256.data(), size_of(sha256)), PKI_ALG_SHA256);

    const bytes_t rsa = "2A 86 48 86 F7 0D 01 01 01"_hex;
    EXPECT_EQ(bytes_of(PKI_KEY_ALG_TO_OID(PKI_ALG_RSA)), rsa);
    EXPECT_EQ(PKI_OID_TO_KEY_ALG(rsa.data(), size_of(rsa)), PKI_ALG_RSA);

    const bytes_t sha256_rsa = "2A 86 48 86 F7 0D 01 01 0B"_hex;
    EXPECT_EQ(bytes_of(PKI_CERT_SIGN_ALG_TO_OID(PKI_ALG_SHA256_RSA)), sha256_rsa);
    EXPECT_EQ(PKI_OID_TO_CERT_SIGN_ALG(sha256_rsa.data(), size_of(sha256_rsa)), PKI_ALG_SHA256_RSA);
    EXPECT_EQ(PKI_OID_TO_ALG(sha256_rsa.data(), size_of(sha256_rsa)), PKI_ALG_SHA256_RSA);
}

TEST(InterfaceAlg, GivesTheEmptyRecordForAnUnknownValue) {
    EXPECT_EQ(PKI_HASH_ALG_TO_OID(PKI_ALG_RSA).len, 0U);
    EXPECT_EQ(asn_form_ike_signalg(PKI_ALG_SHA_RSA).data, nullptr);
}

TEST(InterfaceAlg, WrapsADigestAndReadsItsAlgorithm) {
    std::string digest(32, '\x11');
    asn_add_alg_to_digest(digest, PKI_ALG_SHA256);
    EXPECT_EQ(to_bytes(digest.substr(0, 19)), "30 31 30 0D 06 09 60 86 48 01 65 03 04 02 01 05 00 04 20"_hex);

    asn_algorid_t alg;
    ASSERT_TRUE(asn_read_alg_from_digest(&alg, digest));
    EXPECT_EQ(PKI_OID_TO_HASH_ALG(alg.oid, alg.oid_len), PKI_ALG_SHA256);
}

TEST(InterfaceAlg, TakesAnRsaKeyApart) {
    const bytes_t der = "30 1B"
                        "  30 0D 06 09 2A 86 48 86 F7 0D 01 01 01 05 00"
                        "  03 0A 00 30 07 02 02 00 C3 02 01 03"_hex;
    asn_pubkey_t key;
    ASSERT_TRUE(asn_read_pubkey(der.data(), static_cast<int32_t>(der.size()), key));
    EXPECT_EQ(PKI_OID_TO_KEY_ALG(key.alg_oid, key.alg_oid_len), PKI_ALG_RSA);

    asn_rsa_pubkey_t rsa;
    ASSERT_TRUE(asn_read_rsa_pubkey(key, rsa));
    EXPECT_EQ(span(rsa.modulus_len, rsa.modulus), "C3"_hex);
    EXPECT_EQ(span(rsa.exponent_len, rsa.exponent), "03"_hex);
}

TEST(InterfaceAlg, TakesAGostKeyApart) {
    const bytes_t der = "30 23"
                        "  30 1C 06 06 2A 85 03 02 02 13 30 12 06 07 2A 85 03 02 02 23 01 06 07 2A 85 03 02 02 1E 01"
                        "  03 03 00 04 00"_hex;
    asn_pubkey_t key;
    ASSERT_TRUE(asn_read_pubkey(der.data(), static_cast<int32_t>(der.size()), key));
    EXPECT_EQ(PKI_OID_TO_KEY_ALG(key.alg_oid, key.alg_oid_len), PKI_ALG_GOST3410_2001);

    asn_gost_pubkey_t gost;
    ASSERT_TRUE(asn_read_gost_pubkey(key, gost));
    EXPECT_EQ(span(gost.public_key_param_set_len, gost.public_key_param_set), "06 07 2A 85 03 02 02 23 01"_hex);
    EXPECT_EQ(span(gost.digest_param_set_len, gost.digest_param_set), "06 07 2A 85 03 02 02 1E 01"_hex);
    EXPECT_EQ(gost.encryption_param_set, nullptr);
    EXPECT_EQ(gost.key_len, 0U);
}

TEST(InterfaceAlg, ReadsADsaValue) {
    const bytes_t der = "30 06 02 01 11 02 01 22"_hex;
    asn_dsa_certsign_t sign;
    ASSERT_TRUE(asn_read_dsa_certsign(der.data(), size_of(der), sign));
    EXPECT_EQ(span(sign.r_len, sign.r), "11"_hex);
    EXPECT_EQ(span(sign.s_len, sign.s), "22"_hex);
}

TEST(InterfaceAlg, FormsAnIkeIdentifierAndReadsIt) {
    const PKI_OID& formed = asn_form_ike_signalg(PKI_ALG_RSASSA_PSS_SHA256);
    asn_ike_signalg_t read;
    ASSERT_TRUE(asn_read_ike_signalg(formed.data, formed.len, read));
    EXPECT_EQ(read.to_pki_alg(), PKI_ALG_RSASSA_PSS_SHA256);
}
