#include "tests/c/c_output.h"

#include <gtest/gtest.h>

using namespace pkider_test;

namespace {

constexpr uint64_t four_gib = uint64_t{1} << 32;

using find_oid_t = pkider_status_t(pkider_alg_t, pkider_bytes_t*);
using find_alg_t = pkider_status_t(const uint8_t*, uint64_t, pkider_alg_t*);

struct lookup_t {
    const char* name;
    pkider_alg_t alg;
    const char* oid;
    find_oid_t* find_oid;
    find_alg_t* find_alg;
};

// A row that is printed by its address reads memory that was never written.
void PrintTo(const lookup_t& row, std::ostream* os) {
    *os << row.name;
}

class CAlg : public testing::TestWithParam<lookup_t> {};

} // namespace

TEST_P(CAlg, FindsOidAndAlgorithm) {
    pkider_bytes_t oid;
    ASSERT_EQ(GetParam().find_oid(GetParam().alg, &oid), PKIDER_OK);
    EXPECT_EQ(to_hex(bytes_of(oid)), GetParam().oid);

    pkider_alg_t alg = 77;
    ASSERT_EQ(GetParam().find_alg(oid.data, oid.size, &alg), PKIDER_OK);
    EXPECT_EQ(alg, GetParam().alg);
    ASSERT_EQ(pkider_alg_find(oid.data, oid.size, &alg), PKIDER_OK);
    EXPECT_EQ(alg, GetParam().alg);
}

TEST_P(CAlg, FindsNothingForAnUnknownOne) {
    pkider_bytes_t oid{reinterpret_cast<const uint8_t*>("x"), 1};
    EXPECT_EQ(GetParam().find_oid(0xFFFFFFFF, &oid), PKIDER_NOT_FOUND);
    EXPECT_EQ(oid.data, nullptr);
    EXPECT_EQ(oid.size, 0U);

    for (find_alg_t* const find : {GetParam().find_alg, pkider_alg_find}) {
        const bytes_t unknown = "2A 03 04"_hex;
        pkider_alg_t alg = 77;
        EXPECT_EQ(find(unknown.data(), unknown.size(), &alg), PKIDER_NOT_FOUND);
        EXPECT_EQ(alg, uint32_t{PKIDER_ALG_NONE});
        EXPECT_EQ(find(nullptr, 0, &alg), PKIDER_NOT_FOUND);
        EXPECT_EQ(find(unknown.data(), four_gib + 1, &alg), PKIDER_NOT_FOUND);
    }
}

TEST_P(CAlg, RefusesNullArguments) {
    EXPECT_EQ(GetParam().find_oid(GetParam().alg, nullptr), PKIDER_ARGUMENT);
    pkider_alg_t alg = 77;
    EXPECT_EQ(GetParam().find_alg(nullptr, 1, &alg), PKIDER_ARGUMENT);
    EXPECT_EQ(alg, uint32_t{PKIDER_ALG_NONE});
    EXPECT_EQ(GetParam().find_alg(nullptr, 0, nullptr), PKIDER_ARGUMENT);
}

INSTANTIATE_TEST_SUITE_P(Of, CAlg,
                         testing::Values(lookup_t{"Hash", PKIDER_ALG_SHA256, "60 86 48 01 65 03 04 02 01",
                                                  pkider_alg_find_hash_oid, pkider_alg_find_hash},
                                         lookup_t{"Key", PKIDER_ALG_RSA, "2A 86 48 86 F7 0D 01 01 01",
                                                  pkider_alg_find_key_oid, pkider_alg_find_key},
                                         lookup_t{"Signature", PKIDER_ALG_SHA256_RSA, "2A 86 48 86 F7 0D 01 01 0B",
                                                  pkider_alg_find_signature_oid, pkider_alg_find_signature}),
                         [](const auto& row) { return row.param.name; });

TEST(CIkeIdentifier, IsReadAgain) {
    pkider_bytes_t identifier;
    ASSERT_EQ(pkider_alg_find_ike_identifier(PKIDER_ALG_RSASSA_PSS_SHA256, &identifier), PKIDER_OK);
    pkider_ike_signature_t signature;
    ASSERT_EQ(pkider_ike_signature_read(identifier.data, identifier.size, &signature), PKIDER_OK);
    pkider_alg_t alg = 77;
    ASSERT_EQ(pkider_ike_signature_find_alg(&signature, &alg), PKIDER_OK);
    EXPECT_EQ(alg, uint32_t{PKIDER_ALG_RSASSA_PSS_SHA256});

    EXPECT_EQ(pkider_alg_find_ike_identifier(PKIDER_ALG_SHA_RSA, &identifier), PKIDER_NOT_FOUND);
    EXPECT_EQ(pkider_alg_find_ike_identifier(PKIDER_ALG_SHA_RSA, nullptr), PKIDER_ARGUMENT);
}

TEST(CIkeSignature, FindsNoAlgorithmOfAnUnknownOid) {
    pkider_ike_signature_t signature{};
    pkider_alg_t alg = 77;
    EXPECT_EQ(pkider_ike_signature_find_alg(&signature, &alg), PKIDER_NOT_FOUND);
    EXPECT_EQ(alg, uint32_t{PKIDER_ALG_NONE});
    signature.oid = {nullptr, 1};
    EXPECT_EQ(pkider_ike_signature_find_alg(&signature, &alg), PKIDER_ARGUMENT);
    signature.oid = {reinterpret_cast<const uint8_t*>("x"), four_gib};
    EXPECT_EQ(pkider_ike_signature_find_alg(&signature, &alg), PKIDER_TOO_LONG);
    EXPECT_EQ(pkider_ike_signature_find_alg(nullptr, &alg), PKIDER_ARGUMENT);
    EXPECT_EQ(pkider_ike_signature_find_alg(&signature, nullptr), PKIDER_ARGUMENT);
}

TEST(CDigestInfo, IsWrittenAndRead) {
    const bytes_t digest(20, 0x11);
    const result_t der = collect(
        [&](auto* out) { return pkider_digest_info_write(PKIDER_ALG_SHA1, digest.data(), digest.size(), out); });
    ASSERT_EQ(der.status, PKIDER_OK);
    EXPECT_EQ(to_hex(der.text.substr(0, 15)), "30 21 30 09 06 05 2B 0E 03 02 1A 05 00 04 14");

    EXPECT_EQ(collect([](auto* out) { return pkider_digest_info_write(PKIDER_ALG_SHA1, nullptr, 1, out); }).status,
              PKIDER_ARGUMENT);
}
