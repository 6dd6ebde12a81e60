// The samples of samples/README.md: what real keys, signatures and certificates hold.
#include "tests/alg/spans.h"
#include "tests/alg/value_text.h"
#include "tests/support/guarded.h"
#include "tests/support/hex.h"

#include <pkider/alg.h>
#include <pkider/oid.h>

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

using namespace pkider_test;

namespace {

bytes_t sample(const std::string& name) {
    std::ifstream file(PKIDER_SAMPLES "/" + name + ".der", std::ios::binary);
    EXPECT_TRUE(file) << name;
    bytes_t bytes;
    bytes.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    return bytes;
}

asn_pubkey_t read_key(const uint8_t* der, std::size_t size) {
    asn_pubkey_t key;
    EXPECT_TRUE(asn_read_pubkey(der, static_cast<int32_t>(size), key));
    EXPECT_EQ(key.key + key.key_len, der + size);
    return key;
}

pki_alg_t algorithm_of(const asn_pubkey_t& key) {
    return PKI_OID_TO_KEY_ALG(key.alg_oid, key.alg_oid_len);
}

TEST(Samples, RsaKey) {
    for_guarded(sample("rsa_1024"), [](const uint8_t* der, std::size_t size) {
        const asn_pubkey_t key = read_key(der, size);
        EXPECT_EQ(algorithm_of(key), PKI_ALG_RSA);
        EXPECT_EQ(bytes_t(key.params, key.params + key.params_len), "05 00"_hex);

        asn_rsa_pubkey_t rsa;
        ASSERT_TRUE(asn_read_rsa_pubkey(key, rsa));
        EXPECT_EQ(rsa.modulus_len, 128u);
        EXPECT_GE(rsa.modulus[0], 0x80);
        EXPECT_EQ(bytes_t(rsa.exponent, rsa.exponent + rsa.exponent_len), "01 00 01"_hex);
        EXPECT_EQ(rsa.modulus + rsa.modulus_len + 2, rsa.exponent);
        EXPECT_EQ(rsa.exponent + rsa.exponent_len, der + size);
    });
}

TEST(Samples, RsaKeyOfPssIsNoPlainRsaKey) {
    const bytes_t der = sample("rsa_pss_1024");
    const asn_pubkey_t key = read_key(der.data(), der.size());
    EXPECT_EQ(algorithm_of(key), PKI_ALG_NONE);
    EXPECT_EQ(PKI_OID_TO_ALG(key.alg_oid, key.alg_oid_len), PKI_ALG_RSASSA_PSS);
    EXPECT_EQ(key.params[0], 0x30);

    asn_rsa_pubkey_t rsa;
    ASSERT_TRUE(asn_read_rsa_pubkey(key, rsa));
    EXPECT_EQ(rsa.modulus_len, 128u);
}

TEST(Samples, DsaAndEcKeys) {
    const bytes_t dsa = sample("dsa_1024"), ec = sample("ec_p256");
    const asn_pubkey_t dsa_key = read_key(dsa.data(), dsa.size()), ec_key = read_key(ec.data(), ec.size());
    EXPECT_EQ(algorithm_of(dsa_key), PKI_ALG_DSA);
    EXPECT_EQ(dsa_key.params[0], 0x30);
    EXPECT_GT(dsa_key.params_len, 256u);
    EXPECT_EQ(algorithm_of(ec_key), PKI_ALG_NONE); // no elliptic curves but GOST's in the catalogue
    EXPECT_EQ(bytes_t(ec_key.params, ec_key.params + ec_key.params_len), "06 08 2A 86 48 CE 3D 03 01 07"_hex);
    EXPECT_EQ(ec_key.key_len, 65u);

    asn_gost_pubkey_t gost;
    EXPECT_FALSE(asn_read_gost_pubkey(ec_key, gost));
}

struct gost_row_t {
    const char* name;
    const char* file;
    pki_alg_t alg;
    const char* key_set;
    const char* digest_set;
    uint32_t key_len;
};

class GostSamples : public testing::TestWithParam<gost_row_t> {};

std::string dotted_text(uint32_t len, const uint8_t* element) {
    EXPECT_EQ(element[0], 0x06);
    EXPECT_EQ(element[1], len - 2);
    std::string out;
    EXPECT_TRUE(oid_asn_to_str_(element + 2, element + len, out));
    return out;
}

TEST_P(GostSamples, Key) {
    const gost_row_t& row = GetParam();
    for_guarded(sample(row.file), [&](const uint8_t* der, std::size_t size) {
        const asn_pubkey_t key = read_key(der, size);
        EXPECT_EQ(algorithm_of(key), row.alg);

        asn_gost_pubkey_t gost;
        ASSERT_TRUE(asn_read_gost_pubkey(key, gost));
        EXPECT_EQ(dotted_text(gost.public_key_param_set_len, gost.public_key_param_set), row.key_set);
        EXPECT_EQ(dotted_text(gost.digest_param_set_len, gost.digest_param_set), row.digest_set);
        EXPECT_EQ((span_t{gost.encryption_param_set_len, gost.encryption_param_set}), none);
        EXPECT_EQ(gost.key_len, row.key_len);
        EXPECT_EQ(gost.key + gost.key_len, der + size);
    });
}

const gost_row_t keys_rows[] = {
    {"Gost2001", "gost_2001", PKI_ALG_GOST3410_2001, "1.2.643.2.2.35.1", "1.2.643.2.2.30.1", 64},
    {"Gost2012Of256Bits", "gost_2012_256", PKI_ALG_GOST3410_2012_256, "1.2.643.2.2.35.1", "1.2.643.7.1.1.2.2", 64},
    {"Gost2012Of512Bits", "gost_2012_512", PKI_ALG_GOST3410_2012_512, "1.2.643.7.1.2.1.2.1", "1.2.643.7.1.1.2.3", 128},
};
INSTANTIATE_TEST_SUITE_P(Keys, GostSamples, testing::ValuesIn(keys_rows),
                         [](const auto& row) { return row.param.name; });

TEST(Samples, DsaSignatures) {
    for (const char* const name : {"dsa_signature", "ecdsa_signature"}) {
        for_guarded(sample(name), [](const uint8_t* der, std::size_t size) {
            asn_dsa_certsign_t signature;
            ASSERT_TRUE(asn_read_dsa_certsign(der, static_cast<uint32_t>(size), signature));
            EXPECT_EQ(signature.r, der + 4);
            EXPECT_EQ(signature.s, signature.r + signature.r_len + 2);
            EXPECT_EQ(signature.s + signature.s_len, der + size);
        });
    }
}

TEST(Samples, DigestInfos) {
    for (const auto& [name, hash, digest_size] :
         {std::tuple{"digest_info_sha1", PKI_ALG_SHA1, 20u}, std::tuple{"digest_info_sha256", PKI_ALG_SHA256, 32u}}) {
        const std::string info = sample(name).str();
        asn_algorid_t algorithm;
        ASSERT_TRUE(asn_read_alg_from_digest(&algorithm, info));
        EXPECT_EQ(PKI_OID_TO_HASH_ALG(algorithm.oid, algorithm.oid_len), hash);

        std::string digest = info.substr(info.size() - digest_size);
        asn_add_alg_to_digest(digest, hash);
        EXPECT_EQ(to_hex(digest), to_hex(info));
    }
}

struct signature_row_t {
    const char* name;
    const char* file;
    pki_alg_t alg;
    bool is_ready_made; // byte for byte what asn_form_ike_signalg gives
};

class SignatureSamples : public testing::TestWithParam<signature_row_t> {};

TEST_P(SignatureSamples, Algorithm) {
    const signature_row_t& row = GetParam();
    for_guarded(sample(row.file), [&](const uint8_t* der, std::size_t size) {
        asn_ike_signalg_t signalg;
        ASSERT_TRUE(asn_read_ike_signalg(der, static_cast<uint32_t>(size), signalg));
        EXPECT_EQ(value_text(signalg.to_pki_alg()), value_text(row.alg));
        const PKI_OID& ready_made = asn_form_ike_signalg(row.alg);
        EXPECT_EQ(bytes_t(der, der + size) == bytes_t(ready_made.data, ready_made.data + ready_made.len),
                  row.is_ready_made);
    });
}

const signature_row_t algorithms_rows[] = {
    {"Sha256Rsa", "algorithm_sha256_rsa", PKI_ALG_SHA256_RSA, true},
    {"Sha1Dsa", "algorithm_sha1_dsa", PKI_ALG_SHA1_DSA, true},
    {"PssDefault", "algorithm_pss_default", PKI_ALG_RSASSA_PSS_SHA1, true},
    // OpenSSL names the mask generation function and the salt length,
    {"PssSha256", "algorithm_pss_sha256", PKI_ALG_RSASSA_PSS_SHA256, false},
    // and its GOST engine writes a NULL.
    {"Gost2012", "algorithm_gost_2012_256", PKI_ALG_GOST3411_2012_256_GOST3410_2012_256, false},
};
INSTANTIATE_TEST_SUITE_P(Algorithms, SignatureSamples, testing::ValuesIn(algorithms_rows),
                         [](const auto& row) { return row.param.name; });

} // namespace
