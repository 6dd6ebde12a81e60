#include <pkider/pkcs8.h>

#include "tests/support/guarded.h"
#include "tests/support/hex.h"
#include "tests/support/identifier_changes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace pkider_test;

namespace {

constexpr uint32_t unwritten = 0x5A5A5A5A;
const uint8_t somewhere = 0;

asn_pkcs8_priv_key_info_t unwritten_info() {
    asn_pkcs8_priv_key_info_t info;
    info.alg_oid_len = info.private_key_len = unwritten;
    info.alg_oid = info.private_key = &somewhere;
    return info;
}

const bytes_t sample = "30 11"
                       "   02 01 00"
                       "   30 07 06 03 2A 03 04 05 00"
                       "   04 03 AA BB CC"_hex;

TEST(PrivateKeyInfo, GivesAlgorithmAndKeyInPlace) {
    for_guarded(sample, [](const uint8_t* der, std::size_t size) {
        asn_pkcs8_priv_key_info_t info = unwritten_info();
        ASSERT_TRUE(asn_read_pkcs8_priv_key_info(der, static_cast<uint32_t>(size), info));
        EXPECT_EQ(info.alg_oid, der + 9);
        EXPECT_EQ(info.alg_oid_len, 3u);
        EXPECT_EQ(info.private_key, der + 16);
        EXPECT_EQ(info.private_key_len, 3u);
    });
}

struct info_row_t {
    const char* name;
    const char* der;
};

class PrivateKeyInfoAccepted : public testing::TestWithParam<info_row_t> {};

TEST_P(PrivateKeyInfoAccepted, SameFields) {
    for_guarded(from_hex(GetParam().der), [](const uint8_t* der, std::size_t size) {
        asn_pkcs8_priv_key_info_t info = unwritten_info();
        ASSERT_TRUE(asn_read_pkcs8_priv_key_info(der, static_cast<uint32_t>(size), info));
        EXPECT_EQ(bytes_t(info.alg_oid, info.alg_oid + info.alg_oid_len), "2A 03 04"_hex);
        EXPECT_EQ(bytes_t(info.private_key, info.private_key + info.private_key_len), "AA BB CC"_hex);
    });
}

INSTANTIATE_TEST_SUITE_P(
    Infos, PrivateKeyInfoAccepted,
    testing::Values(
        info_row_t{"Version1", "30 11 02 01 01 30 07 06 03 2A 03 04 05 00 04 03 AA BB CC"},
        info_row_t{"VersionOfFiveBytes", "30 15 02 05 FF 00 11 22 33 30 07 06 03 2A 03 04 05 00 04 03 AA BB CC"},
        info_row_t{"VersionWithoutContents", "30 10 02 00 30 07 06 03 2A 03 04 05 00 04 03 AA BB CC"},
        info_row_t{"AttributesBehindTheKey", "30 15 02 01 00 30 07 06 03 2A 03 04 05 00 04 03 AA BB CC A0 02 31 00"},
        info_row_t{"JunkBehindTheKey", "30 12 02 01 00 30 07 06 03 2A 03 04 05 00 04 03 AA BB CC 30"},
        info_row_t{"JunkBehindTheSequence", "30 11 02 01 00 30 07 06 03 2A 03 04 05 00 04 03 AA BB CC 30"},
        info_row_t{"JunkBehindTheParameters", "30 12 02 01 00 30 08 06 03 2A 03 04 05 00 30 04 03 AA BB CC"},
        info_row_t{"ParametersOfAnyTag", "30 13 02 01 00 30 09 06 03 2A 03 04 9F 02 05 00 04 03 AA BB CC"},
        info_row_t{"NonMinimalLengths",
                   "30 81 18 02 81 01 00 30 82 00 08 06 03 2A 03 04 05 81 00 04 83 00 00 03 AA BB CC"}),
    [](const auto& row) { return row.param.name; });

struct refused_row_t {
    const char* name;
    const char* der;
    bool oid_stored;
};

class PrivateKeyInfoRefused : public testing::TestWithParam<refused_row_t> {};

TEST_P(PrivateKeyInfoRefused, KeepsTheFieldsNotReached) {
    const refused_row_t& row = GetParam();
    for_guarded(from_hex(row.der), [&](const uint8_t* der, std::size_t size) {
        asn_pkcs8_priv_key_info_t info = unwritten_info();
        EXPECT_FALSE(asn_read_pkcs8_priv_key_info(der, static_cast<uint32_t>(size), info));
        if (row.oid_stored) {
            EXPECT_EQ(bytes_t(info.alg_oid, info.alg_oid + info.alg_oid_len), "2A 03 04"_hex);
        } else {
            EXPECT_EQ(info.alg_oid_len, unwritten);
            EXPECT_EQ(info.alg_oid, &somewhere);
        }
        EXPECT_EQ(info.private_key_len, unwritten);
        EXPECT_EQ(info.private_key, &somewhere);
    });
}

INSTANTIATE_TEST_SUITE_P(
    Faults, PrivateKeyInfoRefused,
    testing::Values(
        refused_row_t{"Nothing", "", false},
        refused_row_t{"OuterIsASet", "31 11 02 01 00 30 07 06 03 2A 03 04 05 00 04 03 AA BB CC", false},
        refused_row_t{"OuterIsIndefinite", "30 80 02 01 00 30 07 06 03 2A 03 04 05 00 04 03 AA BB CC 00 00", false},
        refused_row_t{"OuterHasFiveLengthOctets",
                      "30 85 00 00 00 00 11 02 01 00 30 07 06 03 2A 03 04 05 00 04 03 AA BB CC", false},
        refused_row_t{"EmptyOuter", "30 00", false},
        refused_row_t{"NoVersion", "30 0E 30 07 06 03 2A 03 04 05 00 04 03 AA BB CC", false},
        refused_row_t{"VersionPastTheSequence", "30 03 02 02 00 30 07 06 03 2A 03 04 05 00", false},
        refused_row_t{"AlgorithmIsNoSequence", "30 0A 02 01 00 06 03 2A 03 04 04 00", false},
        refused_row_t{"AlgorithmMissing", "30 03 02 01 00", false},
        refused_row_t{"AlgorithmIsEmpty", "30 08 02 01 00 30 00 04 01 AA", false},
        refused_row_t{"AlgorithmStartsWithNull", "30 0A 02 01 00 30 02 05 00 04 01 AA", false},
        refused_row_t{"NoParameters", "30 0F 02 01 00 30 05 06 03 2A 03 04 04 03 AA BB CC", true},
        refused_row_t{"ParametersPastTheAlgorithm", "30 11 02 01 00 30 07 06 03 2A 03 04 04 03 AA BB CC 00 00", true},
        refused_row_t{"NoKey", "30 0C 02 01 00 30 07 06 03 2A 03 04 05 00", true},
        refused_row_t{"KeyIsABitString", "30 11 02 01 00 30 07 06 03 2A 03 04 05 00 03 03 AA BB CC", true},
        refused_row_t{"KeyPastTheSequence", "30 10 02 01 00 30 07 06 03 2A 03 04 05 00 04 03 AA BB CC", true}),
    [](const auto& row) { return row.param.name; });

TEST(PrivateKeyInfo, EveryIdentifierButThatOfTheParametersIsCompared) {
    const auto reads = [](const uint8_t* der, std::size_t size) {
        asn_pkcs8_priv_key_info_t info;
        return asn_read_pkcs8_priv_key_info(der, static_cast<uint32_t>(size), info);
    };
    EXPECT_THAT(identifiers_not_compared(sample, reads), testing::ElementsAre(12));
}

TEST(PrivateKeyInfo, EveryCutIsRefused) {
    for_every_prefix(sample, [](const uint8_t* der, std::size_t size) {
        asn_pkcs8_priv_key_info_t info;
        EXPECT_FALSE(asn_read_pkcs8_priv_key_info(der, static_cast<uint32_t>(size), info)) << size << " bytes";
    });
}

TEST(PrivateKeyInfo, JunkAtTheEndOfAnyElementIsIgnored) {
    for_junk_in_each_constructed(sample, "05 00"_hex, [](const uint8_t* der, std::size_t size) {
        asn_pkcs8_priv_key_info_t info;
        ASSERT_TRUE(asn_read_pkcs8_priv_key_info(der, static_cast<uint32_t>(size), info));
        EXPECT_EQ(bytes_t(info.private_key, info.private_key + info.private_key_len), "AA BB CC"_hex);
    });
}

TEST(PrivateKeyInfo, TakesNullForNoBytes) {
    asn_pkcs8_priv_key_info_t info;
    EXPECT_FALSE(asn_read_pkcs8_priv_key_info(nullptr, 0, info));
}

} // namespace
