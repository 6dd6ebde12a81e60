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

const info_row_t infos_rows[] = {
    {"Version1", "30 11 02 01 01 30 07 06 03 2A 03 04 05 00 04 03 AA BB CC"},
    {"VersionOfFiveBytes", "30 15 02 05 FF 00 11 22 33 30 07 06 03 2A 03 04 05 00 04 03 AA BB CC"},
    {"VersionWithoutContents", "30 10 02 00 30 07 06 03 2A 03 04 05 00 04 03 AA BB CC"},
    {"AttributesBehindTheKey", "30 15 02 01 00 30 07 06 03 2A 03 04 05 00 04 03 AA BB CC A0 02 31 00"},
    {"JunkBehindTheKey", "30 12 02 01 00 30 07 06 03 2A 03 04 05 00 04 03 AA BB CC 30"},
    {"JunkBehindTheSequence", "30 11 02 01 00 30 07 06 03 2A 03 04 05 00 04 03 AA BB CC 30"},
    {"JunkBehindTheParameters", "30 12 02 01 00 30 08 06 03 2A 03 04 05 00 30 04 03 AA BB CC"},
    {"ParametersOfAnyTag", "30 13 02 01 00 30 09 06 03 2A 03 04 9F 02 05 00 04 03 AA BB CC"},
    {"NonMinimalLengths", "30 81 18 02 81 01 00 30 82 00 08 06 03 2A 03 04 05 81 00 04 83 00 00 03 AA BB CC"},
};
INSTANTIATE_TEST_SUITE_P(Infos, PrivateKeyInfoAccepted, testing::ValuesIn(infos_rows),
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

const refused_row_t faults_rows[] = {
    {"Nothing", "", false},
    {"OuterIsASet", "31 11 02 01 00 30 07 06 03 2A 03 04 05 00 04 03 AA BB CC", false},
    {"OuterIsIndefinite", "30 80 02 01 00 30 07 06 03 2A 03 04 05 00 04 03 AA BB CC 00 00", false},
    {"OuterHasFiveLengthOctets", "30 85 00 00 00 00 11 02 01 00 30 07 06 03 2A 03 04 05 00 04 03 AA BB CC", false},
    {"EmptyOuter", "30 00", false},
    {"NoVersion", "30 0E 30 07 06 03 2A 03 04 05 00 04 03 AA BB CC", false},
    {"VersionPastTheSequence", "30 03 02 02 00 30 07 06 03 2A 03 04 05 00", false},
    {"AlgorithmIsNoSequence", "30 0A 02 01 00 06 03 2A 03 04 04 00", false},
    {"AlgorithmMissing", "30 03 02 01 00", false},
    {"AlgorithmIsEmpty", "30 08 02 01 00 30 00 04 01 AA", false},
    {"AlgorithmStartsWithNull", "30 0A 02 01 00 30 02 05 00 04 01 AA", false},
    {"NoParameters", "30 0F 02 01 00 30 05 06 03 2A 03 04 04 03 AA BB CC", true},
    {"ParametersPastTheAlgorithm", "30 11 02 01 00 30 07 06 03 2A 03 04 04 03 AA BB CC 00 00", true},
    {"NoKey", "30 0C 02 01 00 30 07 06 03 2A 03 04 05 00", true},
    {"KeyIsABitString", "30 11 02 01 00 30 07 06 03 2A 03 04 05 00 03 03 AA BB CC", true},
    {"KeyPastTheSequence", "30 10 02 01 00 30 07 06 03 2A 03 04 05 00 04 03 AA BB CC", true},
};
INSTANTIATE_TEST_SUITE_P(Faults, PrivateKeyInfoRefused, testing::ValuesIn(faults_rows),
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
