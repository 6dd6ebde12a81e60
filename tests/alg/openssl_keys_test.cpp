// Fresh keys, signatures and certificates of OpenSSL: what it put in is what is taken out.
#include "tests/alg/freed_by.h"
#include "tests/alg/value_text.h"
#include "tests/support/hex.h"

#include <pkider/alg.h>

#include <gtest/gtest.h>
#include <openssl/bn.h>
#include <openssl/core_names.h>
#include <openssl/ecdsa.h>
#include <openssl/evp.h>
#include <openssl/rsa.h>
#include <openssl/x509.h>

#include <memory>

using namespace pkider_test;

namespace {

using key_ptr_t = std::unique_ptr<EVP_PKEY, freed_by_t<EVP_PKEY_free>>;
using number_ptr_t = std::unique_ptr<BIGNUM, freed_by_t<BN_free>>;
using signature_ptr_t = std::unique_ptr<ECDSA_SIG, freed_by_t<ECDSA_SIG_free>>;
using certificate_ptr_t = std::unique_ptr<X509, freed_by_t<X509_free>>;
using signing_ptr_t = std::unique_ptr<EVP_MD_CTX, freed_by_t<EVP_MD_CTX_free>>;

/// The DER that an i2d function of OpenSSL writes.
template <typename Object, typename Encode>
bytes_t der_of(Object* object, Encode encode) {
    bytes_t der(static_cast<std::size_t>(encode(object, nullptr)));
    uint8_t* to = der.data();
    encode(object, &to);
    return der;
}

bytes_t bytes_of(const BIGNUM* number) {
    bytes_t bytes(static_cast<std::size_t>(BN_num_bytes(number)));
    BN_bn2bin(number, bytes.data());
    return bytes;
}

bytes_t number_of(const EVP_PKEY* key, const char* name) {
    BIGNUM* number = nullptr;
    EXPECT_EQ(EVP_PKEY_get_bn_param(key, name, &number), 1);
    return bytes_of(number_ptr_t(number).get());
}

/// Contents of a positive INTEGER without the sign byte.
bytes_t magnitude(uint32_t len, const uint8_t* contents) {
    return len > 1 && contents[0] == 0 ? bytes_t(contents + 1, contents + len) : bytes_t(contents, contents + len);
}

class OpensslRsaKey : public testing::TestWithParam<unsigned> {};

TEST_P(OpensslRsaKey, HasTheModulusAndTheExponentThatAreTakenOut) {
    const key_ptr_t key(EVP_RSA_gen(GetParam()));
    const bytes_t der = der_of(key.get(), i2d_PUBKEY);

    asn_pubkey_t pk;
    ASSERT_TRUE(asn_read_pubkey(der.data(), static_cast<int32_t>(der.size()), pk));
    EXPECT_EQ(PKI_OID_TO_KEY_ALG(pk.alg_oid, pk.alg_oid_len), PKI_ALG_RSA);
    asn_rsa_pubkey_t rsa;
    ASSERT_TRUE(asn_read_rsa_pubkey(pk, rsa));
    EXPECT_EQ(rsa.modulus_len * 8, GetParam());
    EXPECT_EQ(bytes_t(rsa.modulus, rsa.modulus + rsa.modulus_len), number_of(key.get(), OSSL_PKEY_PARAM_RSA_N));
    EXPECT_EQ(bytes_t(rsa.exponent, rsa.exponent + rsa.exponent_len), number_of(key.get(), OSSL_PKEY_PARAM_RSA_E));
}

INSTANTIATE_TEST_SUITE_P(Bits, OpensslRsaKey, testing::Values(512, 1024, 1536, 2048),
                         [](const auto& row) { return "Of" + std::to_string(row.param) + "Bits"; });

bytes_t sign(EVP_PKEY* key, uint8_t data) {
    const signing_ptr_t signing(EVP_MD_CTX_new());
    std::size_t size = 0;
    EXPECT_EQ(EVP_DigestSignInit(signing.get(), nullptr, EVP_sha256(), nullptr, key), 1);
    EXPECT_EQ(EVP_DigestSign(signing.get(), nullptr, &size, &data, 1), 1);
    bytes_t der(size);
    EXPECT_EQ(EVP_DigestSign(signing.get(), der.data(), &size, &data, 1), 1);
    der.resize(size);
    return der;
}

// ECDSA has the signature value of DSA (RFC 5480 appendix A); 100 of them have sign bytes and short numbers among them.
TEST(OpensslSignature, HasTheNumbersThatAreTakenOut) {
    const key_ptr_t key(EVP_EC_gen("P-256"));
    for (uint8_t data = 0; data < 100; ++data) {
        const bytes_t der = sign(key.get(), data);
        const uint8_t* at = der.data();
        const signature_ptr_t expected(d2i_ECDSA_SIG(nullptr, &at, static_cast<long>(der.size())));
        ASSERT_NE(expected, nullptr);

        asn_dsa_certsign_t signature;
        ASSERT_TRUE(asn_read_dsa_certsign(der.data(), static_cast<uint32_t>(der.size()), signature));
        EXPECT_EQ(magnitude(signature.r_len, signature.r), bytes_of(ECDSA_SIG_get0_r(expected.get())));
        EXPECT_EQ(magnitude(signature.s_len, signature.s), bytes_of(ECDSA_SIG_get0_s(expected.get())));
    }
}

struct pss_row_t {
    const char* name;
    const EVP_MD* (*hash)();
    const EVP_MD* (*mask_hash)();
    int salt_len;
    uint32_t alg;
};

class OpensslPssCertificate : public testing::TestWithParam<pss_row_t> {};

TEST_P(OpensslPssCertificate, NamesItsHash) {
    const pss_row_t& row = GetParam();
    const key_ptr_t key(EVP_RSA_gen(1152)); // room for SHA-512 and its salt
    const certificate_ptr_t certificate(X509_new());
    X509_set_pubkey(certificate.get(), key.get());

    const signing_ptr_t signing(EVP_MD_CTX_new());
    EVP_PKEY_CTX* options = nullptr; // belongs to `signing`
    ASSERT_EQ(EVP_DigestSignInit(signing.get(), &options, row.hash(), nullptr, key.get()), 1);
    ASSERT_EQ(EVP_PKEY_CTX_set_rsa_padding(options, RSA_PKCS1_PSS_PADDING), 1);
    ASSERT_EQ(EVP_PKEY_CTX_set_rsa_mgf1_md(options, row.mask_hash()), 1);
    ASSERT_EQ(EVP_PKEY_CTX_set_rsa_pss_saltlen(options, row.salt_len), 1);
    ASSERT_GT(X509_sign_ctx(certificate.get(), signing.get()), 0);

    const X509_ALGOR* algorithm = nullptr;
    X509_get0_signature(nullptr, &algorithm, certificate.get());
    const bytes_t der = der_of(algorithm, i2d_X509_ALGOR);
    asn_ike_signalg_t signalg;
    ASSERT_TRUE(asn_read_ike_signalg(der.data(), static_cast<uint32_t>(der.size()), signalg));
    EXPECT_EQ(value_text(signalg.to_pki_alg()), value_text(row.alg));
}

const pss_row_t hashes_rows[] = {
    {"Default", EVP_sha1, EVP_sha1, 20, PKI_ALG_RSASSA_PSS_SHA1},
    {"Sha1OtherSalt", EVP_sha1, EVP_sha1, 8, PKI_ALG_RSASSA_PSS_SHA1},
    {"Sha1OtherMask", EVP_sha1, EVP_sha256, 20, PKI_ALG_RSASSA_PSS_SHA1},
    {"Sha224", EVP_sha224, EVP_sha224, 28, PKI_ALG_RSASSA_PSS_SHA224},
    {"Sha256", EVP_sha256, EVP_sha256, 32, PKI_ALG_RSASSA_PSS_SHA256},
    {"Sha256DefaultMaskAndSalt", EVP_sha256, EVP_sha1, 20, PKI_ALG_RSASSA_PSS_SHA256},
    {"Sha384", EVP_sha384, EVP_sha384, 48, PKI_ALG_RSASSA_PSS_SHA384},
    {"Sha512", EVP_sha512, EVP_sha512, 64, PKI_ALG_RSASSA_PSS_SHA512},
};
INSTANTIATE_TEST_SUITE_P(Hashes, OpensslPssCertificate, testing::ValuesIn(hashes_rows),
                         [](const auto& row) { return row.param.name; });

} // namespace
