#include "alg/display_names.h"
#include "tests/support/hex.h"
#include "tools/pkider/facts/alg_names.h"
#include "tools/pkider/facts/oid_names.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace pkider_test {
namespace {

TEST(AlgNames, AreThoseOfTheLibraryInItsOrder) {
    std::vector<std::pair<pki_alg_t, std::string>> ours;
    for (const tool::alg_row_t& row : tool::alg_rows()) ours.emplace_back(row.alg, row.name);
    std::vector<std::pair<pki_alg_t, std::string>> theirs;
    for (const auto& row : pkider::display_names) {
        if (row.alg != PKI_ALG_NONE) theirs.emplace_back(row.alg, row.name);
    }
    EXPECT_EQ(ours.size(), 62u);
    EXPECT_THAT(ours, testing::UnorderedElementsAreArray(theirs));
}

TEST(AlgNames, AreFoundWithoutRegardToCase) {
    for (const tool::alg_row_t& row : tool::alg_rows()) {
        EXPECT_EQ(tool::find_alg(row.alg), &row);
        EXPECT_EQ(tool::find_alg(std::string(row.name)), &row) << row.name;
        EXPECT_EQ(tool::find_alg(std::string(row.enumerator)), &row) << row.enumerator;
    }
    EXPECT_EQ(tool::find_alg("SHA256rsa")->alg, PKI_ALG_SHA256_RSA);
    EXPECT_EQ(tool::find_alg("pki_alg_sha256_rsa")->alg, PKI_ALG_SHA256_RSA);
}

TEST(AlgNames, AreUnknownForOtherValues) {
    EXPECT_EQ(tool::find_alg(PKI_ALG_NONE), nullptr);
    EXPECT_EQ(tool::find_alg(static_cast<pki_alg_t>(0x12345678)), nullptr);
    EXPECT_EQ(tool::find_alg(""), nullptr);
    EXPECT_EQ(tool::find_alg("sha256RS"), nullptr);
    EXPECT_STREQ(tool::alg_name(static_cast<pki_alg_t>(0x12345678)), "unknown");
    EXPECT_EQ(tool::alg_value_text(static_cast<pki_alg_t>(0x12345678)), "0x12345678");
}

TEST(AlgNames, KnowTheSizeOfEveryHash) {
    for (const tool::alg_row_t& row : tool::alg_rows()) {
        EXPECT_EQ(tool::hash_size(row.alg) != 0, tool::hash_field(row.alg) != PKI_ALG_NONE) << row.name;
    }
    EXPECT_EQ(tool::hash_size(PKI_ALG_MD5), 16u);
    EXPECT_EQ(tool::hash_size(PKI_ALG_SHA384_RSA), 48u);
    EXPECT_EQ(tool::hash_size(PKI_ALG_GOST3411_94_TIK), 32u);
}

TEST(AlgNames, TellHashesFromOtherOids) {
    EXPECT_TRUE(tool::is_hash_oid("2B 0E 03 02 1A"_hex)) << "SHA-1";
    EXPECT_TRUE(tool::is_hash_oid("60 86 48 01 65 03 04 02 08"_hex)) << "SHA3-256, which the library does not know";
    EXPECT_FALSE(tool::is_hash_oid("60 86 48 01 65 03 04 02"_hex));
    EXPECT_FALSE(tool::is_hash_oid("2A 86 48 86 F7 0D 01 05 0D"_hex)) << "PBES2";
    EXPECT_FALSE(tool::is_hash_oid({}));
}

struct oid_row_t {
    const char* name;
    bytes_t contents;
    const char* label;
};

class OidLabel : public testing::TestWithParam<oid_row_t> {};

TEST_P(OidLabel, SaysWhatIsKnown) {
    EXPECT_EQ(tool::oid_label(tool::describe_oid(GetParam().contents, OID_MAP_HANDLE_DEFAULT)), GetParam().label);
}

const oid_row_t oids_rows[] = {
    {"OfTheMap", "55 04 03"_hex, "CN (2.5.4.3)"},
    {"OfTheCatalogue", "60 86 48 01 65 03 04 02 01"_hex, "SHA256 (2.16.840.1.101.3.4.2.1)"},
    {"OfAStandard", "55 1D 0F"_hex, "keyUsage (2.5.29.15)"},
    {"OfNobody", "2A 03 04"_hex, "1.2.3.4"},
    {"BeyondTwoThirtyNine", "88 37"_hex, "2.999"},
    {"WithAWideArc", "2A 90 80 80 80 00"_hex, "1.2.4294967296"},
    {"NotMinimal", "2A 80 03"_hex, "1.2.3, not minimal"},
    {"Cut", "2A 86"_hex, "not an object identifier"},
    {"Empty", {}, "not an object identifier"},
};
INSTANTIATE_TEST_SUITE_P(Oids, OidLabel, testing::ValuesIn(oids_rows), [](const auto& row) { return row.param.name; });

TEST(OidLabel, LeavesShortNamesOutWithoutAMap) {
    EXPECT_EQ(tool::oid_label(tool::describe_oid("55 04 03"_hex, {})), "2.5.4.3");
}

TEST(OidLabel, IsNullInJsonWhereNothingIsKnown) {
    EXPECT_EQ(tool::oid_json(tool::describe_oid("2A 03 04"_hex, {})).dump(), R"({"name":null,"oid":"1.2.3.4"})");
    EXPECT_EQ(tool::oid_json(tool::describe_oid({}, {})).dump(), R"({"name":null,"oid":null})");
}

} // namespace
} // namespace pkider_test
