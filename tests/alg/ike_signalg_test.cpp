#include "tests/alg/spans.h"
#include "tests/alg/value_text.h"
#include "tests/support/guarded.h"
#include "tests/support/hex.h"
#include "tests/support/identifier_changes.h"

#include <pkider/alg.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace pkider_test;

namespace {

two_spans_t read(const uint8_t* der, std::size_t size) {
    asn_ike_signalg_t out{unwritten.len, unwritten.data, unwritten.len, unwritten.data};
    const bool read = asn_read_ike_signalg(der, static_cast<uint32_t>(size), out);
    return {read, {out.oid_len, out.oid}, {out.params_len, out.params}};
}

const char* const sha1_with_rsa = "30 0D 06 09 2A 86 48 86 F7 0D 01 01 05 05 00";

TEST(IkeSignalg, GivesObjectIdentifierAndParameters) {
    for_guarded(from_hex(sha1_with_rsa), gives(read, {9, 4}, {2, 13}));
}

TEST(IkeSignalg, GivesNoParametersWhenTheInputEndsWithTheObjectIdentifier) {
    for_guarded("30 05 06 03 2A 03 04"_hex, gives(read, {3, 4}, {0, 7}));
}

TEST(IkeSignalg, DoesNotExamineTheParameters) {
    for_guarded("30 07 06 01 2A FF 80 00 00"_hex, gives(read, {1, 4}, {4, 5}));
}

TEST(IkeSignalg, TakesAnEmptyObjectIdentifier) {
    for_guarded("30 02 06 00"_hex, gives(read, {0, 4}, {0, 4}));
}

TEST(IkeSignalg, RequiredBytesAfterTheElementAreParameters) {
    for_guarded(from_hex(std::string(sha1_with_rsa) + "01 02 03 04"), gives(read, {9, 4}, {6, 13}));
}

struct refused_row_t {
    const char* name;
    const char* der;
    bool oid_reset; // to 0 and null
};

class IkeSignalgRefuses : public testing::TestWithParam<refused_row_t> {};

TEST_P(IkeSignalgRefuses, AndStoresWhatItReached) {
    const refused_row_t& row = GetParam();
    for_guarded(from_hex(row.der), [&](const uint8_t* der, std::size_t size) {
        const two_spans_t out = read(der, size);
        EXPECT_FALSE(out.read);
        EXPECT_EQ(out.first, row.oid_reset ? none : unwritten);
        EXPECT_EQ(out.second, unwritten);
    });
}

const refused_row_t identifiers_rows[] = {
    {"Nothing", "", false},
    {"NoSequence", "06 03 2A 03 04", false},
    {"Indefinite", "30 80 06 03 2A 03 04 00 00", false},
    {"FiveLengthOctets", "30 85 00 00 00 00 05 06 03 2A 03 04", false},
    {"SequenceCut", "30 06 06 03 2A 03 04", false},
    {"EmptySequence", "30 00 06 03 2A 03 04", true},
    {"NoObjectIdentifier", "30 05 04 03 2A 03 04", true},
    {"ObjectIdentifierPastTheSequence", "30 04 06 03 2A 03 04", true},
    {"ObjectIdentifierIndefinite", "30 05 06 80 2A 00 00", true},
};
INSTANTIATE_TEST_SUITE_P(Identifiers, IkeSignalgRefuses, testing::ValuesIn(identifiers_rows),
                         [](const auto& row) { return row.param.name; });

TEST(IkeSignalg, EveryIdentifierButThatOfTheParametersIsCompared) {
    const auto reads = [](const uint8_t* der, std::size_t size) { return read(der, size).read; };
    EXPECT_THAT(identifiers_not_compared(from_hex(sha1_with_rsa), reads), testing::ElementsAre(13));
}

TEST(IkeSignalg, EveryCutIsRefused) {
    for_every_prefix(from_hex(sha1_with_rsa), [](const uint8_t* der, std::size_t size) {
        EXPECT_FALSE(read(der, size).read) << size << " bytes";
    });
}

struct to_alg_row_t {
    const char* name;
    const char* der;
    uint32_t alg;
};

class IkeSignalgToPkiAlg : public testing::TestWithParam<to_alg_row_t> {};

TEST_P(IkeSignalgToPkiAlg, Names) {
    for_guarded(from_hex(GetParam().der), [](const uint8_t* der, std::size_t size) {
        asn_ike_signalg_t signalg;
        ASSERT_TRUE(asn_read_ike_signalg(der, static_cast<uint32_t>(size), signalg));
        EXPECT_EQ(value_text(signalg.to_pki_alg()), value_text(GetParam().alg));
    });
}

#define PSS_OID "06 09 2A 86 48 86 F7 0D 01 01 0A "
const to_alg_row_t ike_signalg_to_pki_alg_identifiers_rows[] = {
    {"Sha1Rsa", sha1_with_rsa, PKI_ALG_SHA1_RSA},
    {"Sha1RsaSecondOid", "30 09 06 05 2B 0E 03 02 1D 05 00", PKI_ALG_SHA1_RSA},
    {"GostStandardNotItsVariant", "30 08 06 06 2A 85 03 02 02 03", PKI_ALG_GOST3411_94_GOST3410_2001},
    {"Unknown", "30 05 06 03 2A 03 04", PKI_ALG_NONE},
    {"KeyIsNoSignature", "30 0D 06 09 2A 86 48 86 F7 0D 01 01 01 05 00", PKI_ALG_NONE},
    {"EmptyOid", "30 02 06 00", PKI_ALG_NONE},
    {"ParametersOfOthersAreNotRead", "30 0D 06 09 2A 86 48 86 F7 0D 01 01 05 30 80", PKI_ALG_SHA1_RSA},
    {"PssWithoutParameters", "30 0B " PSS_OID, PKI_ALG_RSASSA_PSS_SHA1},
    {"PssEmptyParameters", "30 0D " PSS_OID "30 00", PKI_ALG_RSASSA_PSS_SHA1},
    {"PssSaltOnly", "30 12 " PSS_OID "30 05 A2 03 02 01 14", PKI_ALG_RSASSA_PSS_SHA1},
    {"PssSha1Named", "30 1A " PSS_OID "30 0D A0 0B 30 09 06 05 2B 0E 03 02 1A 05 00", PKI_ALG_RSASSA_PSS_SHA1},
    {"PssSha256", "30 1E " PSS_OID "30 11 A0 0F 30 0D 06 09 60 86 48 01 65 03 04 02 01 05 00",
     PKI_ALG_RSASSA_PSS_SHA256},
    {"PssSha256WithoutNull", "30 1C " PSS_OID "30 0F A0 0D 30 0B 06 09 60 86 48 01 65 03 04 02 01",
     PKI_ALG_RSASSA_PSS_SHA256},
    {"RequiredPssEmptyHashOid", "30 15 " PSS_OID "30 08 A0 06 30 04 06 00 05 00", PKI_ALG_RSASSA_PSS_SHA1},
    {"PssUnknownHash", "30 16 " PSS_OID "30 09 A0 07 30 05 06 03 2A 03 04", PKI_ALG_NONE},
    {"PssMd5HasNoNameOfItsOwn", "30 1B " PSS_OID "30 0E A0 0C 30 0A 06 08 2A 86 48 86 F7 0D 02 05", 0x00080002},
    {"PssGost", "30 19 " PSS_OID "30 0C A0 0A 30 08 06 06 2A 85 03 02 02 09", 0x00090002},
    {"PssNullParameters", "30 0D " PSS_OID "05 00", PKI_ALG_NONE},
    {"PssMalformedSalt", "30 11 " PSS_OID "30 04 A2 02 30 00", PKI_ALG_NONE},
    {"PssMalformedSaltBehindAHash",
     "30 22 " PSS_OID "30 15 A0 0F 30 0D 06 09 60 86 48 01 65 03 04 02 01 05 00 A2 02 30 00", PKI_ALG_NONE},
};
INSTANTIATE_TEST_SUITE_P(Identifiers, IkeSignalgToPkiAlg, testing::ValuesIn(ike_signalg_to_pki_alg_identifiers_rows),
                         [](const auto& row) { return row.param.name; });

TEST(IkeSignalgToPkiAlg, RequiredVariantOfTheHashIsDropped) {
    const bytes_t der = "30 1C " PSS_OID "30 0F A0 0D 30 0B 06 09 2B 06 01 04 01 9C 56 01 05"_hex;
    asn_ike_signalg_t signalg;
    ASSERT_TRUE(asn_read_ike_signalg(der.data(), static_cast<uint32_t>(der.size()), signalg));
    EXPECT_EQ(signalg.to_pki_alg(), 0x00090002u); // of PKI_ALG_GOST3411_94_TIK, 0x01090000
}

TEST(IkeSignalgToPkiAlg, EmptyRecordIsNoAlgorithm) {
    EXPECT_EQ(asn_ike_signalg_t{}.to_pki_alg(), PKI_ALG_NONE);
}

TEST(IkeSignalgToPkiAlg, BytesBehindTheElementCountAsParameters) {
    // With its own size the identifier has no parameters; with two bytes more those are malformed parameters.
    const bytes_t der = "30 0B " PSS_OID "05 00"_hex;
    asn_ike_signalg_t signalg;
    ASSERT_TRUE(asn_read_ike_signalg(der.data(), 13, signalg));
    EXPECT_EQ(signalg.to_pki_alg(), PKI_ALG_RSASSA_PSS_SHA1);
    ASSERT_TRUE(asn_read_ike_signalg(der.data(), 15, signalg));
    EXPECT_EQ(signalg.to_pki_alg(), PKI_ALG_NONE);
}

} // namespace
