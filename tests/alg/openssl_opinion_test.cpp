// What OpenSSL knows of the catalogue's object identifiers: their bytes, their meaning and the identifiers made of
// them.
#include "alg/cert_sign_rows.h"
#include "alg/hash_rows.h"
#include "alg/ike_rows.h"
#include "alg/key_rows.h"

#include "tests/alg/freed_by.h"
#include "tests/alg/spelled_rows.h"
#include "tests/alg/value_text.h"
#include "tests/support/hex.h"

#include <gtest/gtest.h>
#include <openssl/objects.h>
#include <openssl/rsa.h>
#include <openssl/x509.h>

#include <memory>
#include <span>

using namespace pkider;
using namespace pkider_test;

namespace {

using object_ptr_t = std::unique_ptr<ASN1_OBJECT, freed_by_t<ASN1_OBJECT_free>>;
using algor_ptr_t = std::unique_ptr<X509_ALGOR, freed_by_t<X509_ALGOR_free>>;
using pss_ptr_t = std::unique_ptr<RSA_PSS_PARAMS, freed_by_t<RSA_PSS_PARAMS_free>>;

object_ptr_t object_of(std::string_view dotted) {
    return object_ptr_t(OBJ_txt2obj(std::string(dotted).c_str(), 1));
}

bytes_t bytes_of(const ASN1_OBJECT* object) {
    return {OBJ_get0_data(object), OBJ_get0_data(object) + OBJ_length(object)};
}

bytes_t bytes_of(const PKI_OID& oid) {
    return {oid.data, oid.data + oid.len};
}

std::string name_of(int nid) {
    return nid == NID_undef ? "" : OBJ_nid2sn(nid);
}

pki_alg_t hash_of(int nid) {
    const bytes_t oid = bytes_of(OBJ_nid2obj(nid));
    return PKI_OID_TO_HASH_ALG(oid.data(), static_cast<uint32_t>(oid.size()));
}

pki_alg_t key_of(int nid) {
    const bytes_t oid = bytes_of(OBJ_nid2obj(nid));
    return PKI_OID_TO_KEY_ALG(oid.data(), static_cast<uint32_t>(oid.size()));
}

void expect_known(std::span<const alg_row_t> rows, std::span<const spelled_row_t> spelled) {
    ASSERT_EQ(rows.size(), spelled.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const object_ptr_t object = object_of(spelled[i].dotted);
        ASSERT_NE(object, nullptr) << spelled[i].dotted;
        EXPECT_EQ(bytes_of(rows[i].oid), bytes_of(object.get())) << spelled[i].dotted;
        EXPECT_EQ(name_of(OBJ_obj2nid(object.get())), spelled[i].openssl_name) << spelled[i].dotted;
    }
}

TEST(OpensslOpinion, HashesMeanTheSame) {
    expect_known(hash_rows, spelled_hash_rows);
}

TEST(OpensslOpinion, KeysMeanTheSame) {
    expect_known(key_rows, spelled_key_rows);
}

TEST(OpensslOpinion, CertificateSignaturesMeanTheSame) {
    expect_known(cert_sign_rows, spelled_cert_sign_rows);
}

TEST(OpensslOpinion, SignaturesAreMadeOfTheSameHashAndKey) {
    int num_compared = 0;
    for (const spelled_row_t& row : spelled_cert_sign_rows) {
        int hash = NID_undef, key = NID_undef;
        if (!OBJ_find_sigid_algs(OBJ_obj2nid(object_of(row.dotted).get()), &hash, &key)) continue;
        if (key == NID_rsassaPss) continue; // the hash is in the parameters, and the key has no row of its own
        ++num_compared;
        EXPECT_EQ(value_text(hash_of(hash)), value_text(row.alg & 0x00FF0000)) << row.dotted;
        if (key == NID_rsa) continue; // the X.500 key of the second SHA-1 with RSA
        EXPECT_EQ(value_text(key_of(key)), value_text(row.alg & 0x0000FFFF)) << row.dotted;
    }
    EXPECT_EQ(num_compared, 15);
}

TEST(OpensslOpinion, IkeIdentifiersAreDerOfTheSameAlgorithm) {
    for (std::size_t i = 0; i < std::size(ike_rows); ++i) {
        const bytes_t der = bytes_of(ike_rows[i].oid);
        const uint8_t* at = der.data();
        const algor_ptr_t algor(d2i_X509_ALGOR(nullptr, &at, static_cast<long>(der.size())));
        ASSERT_NE(algor, nullptr) << "row " << i + 1;
        EXPECT_EQ(at, der.data() + der.size()) << "row " << i + 1;
        EXPECT_EQ(bytes_of(algor->algorithm), bytes_of(cert_sign_rows[i].oid)) << "row " << i + 1;

        bytes_t written(static_cast<std::size_t>(i2d_X509_ALGOR(algor.get(), nullptr)));
        uint8_t* to = written.data();
        i2d_X509_ALGOR(algor.get(), &to);
        EXPECT_EQ(written, der) << "row " << i + 1;
    }
}

TEST(OpensslOpinion, PssParametersNameTheHash) {
    int num_named = 0;
    for (const alg_row_t& row : ike_rows) {
        asn_ike_signalg_t signalg;
        ASSERT_TRUE(asn_read_ike_signalg(row.oid.data, row.oid.len, signalg));
        if (PKI_OID_TO_CERT_SIGN_ALG(signalg.oid, signalg.oid_len) != PKI_ALG_RSASSA_PSS) continue;
        if (signalg.params_len == 0) continue;
        const uint8_t* at = signalg.params;
        const pss_ptr_t params(d2i_RSA_PSS_PARAMS(nullptr, &at, static_cast<long>(signalg.params_len)));
        ASSERT_NE(params, nullptr) << value_text(row.alg);
        EXPECT_EQ(params->maskGenAlgorithm, nullptr) << value_text(row.alg);
        EXPECT_EQ(params->saltLength, nullptr) << value_text(row.alg);
        EXPECT_EQ(params->trailerField, nullptr) << value_text(row.alg);
        const int hash = params->hashAlgorithm == nullptr ? NID_sha1 : OBJ_obj2nid(params->hashAlgorithm->algorithm);
        EXPECT_EQ(value_text(hash_of(hash) | PKI_ALG_RSASSA_PSS), value_text(row.alg));
        ++num_named;
    }
    EXPECT_EQ(num_named, 5);
}

} // namespace
