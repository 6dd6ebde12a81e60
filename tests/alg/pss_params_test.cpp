#include "alg/pss_params.h"

#include "tests/alg/spans.h"
#include "tests/support/guarded.h"
#include "tests/support/hex.h"
#include "tests/support/identifier_changes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace pkider_test;

namespace {

struct params_row_t {
    const char* name;
    const char* der;
    bool read;
    int oid_at; // -1: 0 and null
    uint32_t oid_len;
};

class PssParams : public testing::TestWithParam<params_row_t> {};

TEST_P(PssParams, Reads) {
    const params_row_t& row = GetParam();
    for_guarded(from_hex(row.der), [&](const uint8_t* der, std::size_t size) {
        asn_algorid_t hash{unwritten.len, unwritten.data};
        EXPECT_EQ(pkider::asn_read_pss_params(der, static_cast<uint32_t>(size), hash), row.read);
        EXPECT_EQ((span_t{hash.oid_len, hash.oid}), row.oid_at < 0 ? none : (span_t{row.oid_len, der + row.oid_at}));
    });
}

#define SHA256_OID "06 09 60 86 48 01 65 03 04 02 01 "
#define HASH "A0 0F 30 0D " SHA256_OID "05 00 "
#define MGF "A1 02 30 00 "
#define SALT "A2 03 02 01 14 "
#define TRAILER "A3 03 02 01 01 "

const auto row_name = [](const auto& row) { return row.param.name; };

const params_row_t well_formed_rows[] = {
    {"Empty", "30 00", true, -1, 0},
    {"HashOnly", "30 11 " HASH, true, 8, 9},
    {"HashWithoutParameters", "30 0F A0 0D 30 0B " SHA256_OID, true, 8, 9},
    {"HashWithOtherParameters", "30 11 A0 0F 30 0D " SHA256_OID "30 00", true, 8, 9},
    {"EmptyHashOid", "30 08 A0 06 30 04 06 00 05 00", true, 8, 0},
    {"SaltOnly", "30 05 " SALT, true, -1, 0},
    {"MaskOnly", "30 04 " MGF, true, -1, 0},
    {"TrailerOnly", "30 05 " TRAILER, true, -1, 0},
    {"AllFields", "30 1F " HASH MGF SALT TRAILER, true, 8, 9},
    {"HashAndTrailer", "30 16 " HASH TRAILER, true, 8, 9},
    {"MaskContentsAreNotExamined", "30 06 A1 04 30 02 FF FF", true, -1, 0},
    {"SaltValueIsNotExamined", "30 04 A2 02 02 00", true, -1, 0},
    {"TrailerValueIsNotExamined", "30 05 A3 03 02 01 FF", true, -1, 0},
    {"NonMinimalLengths", "30 81 05 A2 81 02 02 00", true, -1, 0},
};
INSTANTIATE_TEST_SUITE_P(WellFormed, PssParams, testing::ValuesIn(well_formed_rows), row_name);

const params_row_t tolerated_rows[] = {
    {"OtherElementEndsTheReading", "30 02 05 00", true, -1, 0},
    {"LoneByteOfAnotherTag", "30 01 05", true, -1, 0},
    {"MalformedElementOfAnotherTag", "30 03 04 80 00", true, -1, 0},
    {"TrailerThenHash", "30 16 " TRAILER HASH, true, -1, 0},
    {"SaltThenMalformedMask", "30 08 " SALT "A1 01 02", true, -1, 0},
    {"SecondHash", "30 22 " HASH HASH, true, 8, 9},
    {"ElementBehindTheTrailer", "30 07 " TRAILER "05 00", true, -1, 0},
    {"HighestTagNumber", "30 05 BF 03 02 01 14", true, -1, 0},
    {"BytesBehindTheParameters", "30 05 " SALT "A1 01", true, -1, 0},
    {"BytesBehindTheHashAlgorithm", "30 13 A0 11 30 0D " SHA256_OID "05 00 FF FF", true, 8, 9},
    {"BytesBehindTheHashParameters", "30 13 A0 11 30 0F " SHA256_OID "05 00 FF FF", true, 8, 9},
    {"BytesBehindTheMask", "30 06 A1 04 30 00 FF FF", true, -1, 0},
    {"BytesBehindTheSalt", "30 07 A2 05 02 01 14 FF FF", true, -1, 0},
};
INSTANTIATE_TEST_SUITE_P(Tolerated, PssParams, testing::ValuesIn(tolerated_rows), row_name);

const params_row_t refused_rows[] = {
    {"Nothing", "", false, -1, 0},
    {"Null", "05 00", false, -1, 0},
    {"Indefinite", "30 80 00 00", false, -1, 0},
    {"FiveLengthOctets", "30 85 00 00 00 00 00", false, -1, 0},
    {"SequenceCut", "30 06 " SALT, false, -1, 0},
    {"LoneHashTag", "30 01 A0", false, -1, 0},
    {"EmptyHash", "30 02 A0 00", false, -1, 0},
    {"HashPastTheParameters", "30 10 " HASH, false, -1, 0},
    {"HashNoSequence", "30 04 A0 02 31 00", false, -1, 0},
    {"HashSequenceWithoutOid", "30 06 A0 04 30 02 05 00", false, -1, 0},
    {"HashOidPastItsSequence", "30 08 A0 06 30 02 06 03 2A 03", false, -1, 0},
    {"HashParametersCut", "30 0A A0 08 30 06 06 01 2A 04 05 00", false, 8, 1},
    {"HashParametersIndefinite", "30 0B A0 09 30 07 06 01 2A 30 80 00 00", false, 8, 1},
    {"LoneMaskTag", "30 01 A1", false, -1, 0},
    {"MaskHoldsAnInteger", "30 05 A1 03 02 01 14", false, -1, 0},
    {"EmptyMask", "30 02 A1 00", false, -1, 0},
    {"MalformedMaskBehindAHash", "30 15 " HASH "A1 02 05 00", false, 8, 9},
    {"LoneSaltTag", "30 01 A2", false, -1, 0},
    {"SaltHoldsASequence", "30 04 A2 02 30 00", false, -1, 0},
    {"SaltIntegerCut", "30 05 A2 03 02 02 14", false, -1, 0},
    {"LoneTrailerTag", "30 01 A3", false, -1, 0},
    {"TrailerHoldsASequence", "30 04 A3 02 30 00", false, -1, 0},
    {"MalformedTrailerBehindTheOthers", "30 1D " HASH MGF SALT "A3 01 02", false, 8, 9},
};
INSTANTIATE_TEST_SUITE_P(Refused, PssParams, testing::ValuesIn(refused_rows), row_name);

// A field with another identifier is taken as absent; the hash's parameters may be anything.
TEST(PssParams, IdentifiersInsideTheFieldsAreCompared) {
    const auto reads = [](const uint8_t* der, std::size_t size) {
        asn_algorid_t hash;
        return pkider::asn_read_pss_params(der, static_cast<uint32_t>(size), hash);
    };
    constexpr std::size_t hash = 2, hash_params = 17, mask = 19, salt = 23, trailer = 28;
    EXPECT_THAT(identifiers_not_compared("30 1F " HASH MGF SALT TRAILER ""_hex, reads),
                testing::ElementsAre(hash, hash_params, mask, salt, trailer));
}

TEST(PssParams, EveryCutIsRefused) {
    for_every_prefix("30 1F " HASH MGF SALT TRAILER ""_hex, [](const uint8_t* der, std::size_t size) {
        asn_algorid_t hash{unwritten.len, unwritten.data};
        EXPECT_FALSE(pkider::asn_read_pss_params(der, static_cast<uint32_t>(size), hash)) << size << " bytes";
        EXPECT_EQ((span_t{hash.oid_len, hash.oid}), none);
    });
}

TEST(PssParams, RequiredTrailingElementsAreIgnored) {
    for_junk_in_each_constructed("30 1F " HASH MGF SALT TRAILER ""_hex, "04 01 AA"_hex,
                                 [](const uint8_t* der, std::size_t size) {
                                     asn_algorid_t hash;
                                     EXPECT_TRUE(pkider::asn_read_pss_params(der, static_cast<uint32_t>(size), hash));
                                     EXPECT_EQ((span_t{hash.oid_len, hash.oid}), (span_t{9, der + 8}));
                                 });
}

} // namespace
