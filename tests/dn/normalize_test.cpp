#include <pkider/dn.h>

#include "tests/support/alloc_failure.h"
#include "tests/support/hex.h"
#include "tests/support/parsed_map.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

#include <string>

using namespace pkider_test;

namespace {

const std::string untouched = "untouched";
constexpr oid_map_handle_t no_map{};

struct normal_row_t {
    const char* name;
    const char* line;
    const char* normal;
};

class DnNormalize : public testing::TestWithParam<normal_row_t> {};

TEST_P(DnNormalize, GivesNormalFormAndDer) {
    const normal_row_t& row = GetParam();
    std::string expected_der;
    ASSERT_TRUE(printable_to_asn_dn(row.line, expected_der, OID_MAP_HANDLE_DEFAULT));

    std::string out = untouched;
    std::string der = untouched;
    const asn_dn_result_t result = printable_dn_normalize_r(row.line, out, &der, OID_MAP_HANDLE_DEFAULT);
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.position, 0);
    EXPECT_EQ(out, row.normal);
    EXPECT_EQ(der, expected_der);

    out = untouched;
    EXPECT_TRUE(printable_dn_normalize(row.line, out, nullptr, OID_MAP_HANDLE_DEFAULT));
    EXPECT_EQ(out, row.normal);

    // The normal form is its own normal form. String types may be others: a BMPString has become a UTF8String.
    std::string again;
    EXPECT_TRUE(printable_dn_normalize(row.normal, again, nullptr, OID_MAP_HANDLE_DEFAULT));
    EXPECT_EQ(again, row.normal);
}

const normal_row_t lines_rows[] = {
    {"Empty", "", ""},
    {"Blanks", " \t", ""},
    {"Plain", "CN=abc", "CN=abc"},
    {"BlanksOfSeparators", " CN=a, O=b+\tOU =c", "CN=a,O=b+OU=c"},
    {"BlanksOfValuesStay", "CN = abc , O=x", "CN= abc ,O=x"},
    {"ShortNamesInUpperCase", "cn=a,2.5.4.10=b", "CN=a,O=b"},
    {"BothNamesOfTheState", "S=a,ST=b", "ST=a,ST=b"},
    {"UnknownTypesStayDotted", "01.2.03.4=a", "1.2.3.4=a"},
    {"QuotesBecomeEscapes", "CN=\"a,b\",O=\"\\\"\"", "CN=a\\,b,O=\\\""},
    {"HexPairsBecomeText", "CN=\\61\\2C", "CN=a\\,"},
    {"HexStringsBecomeText", "CN=#0C03616263", "CN=abc"},
    {"OtherHexValuesStay", "CN=#0481020102", "CN=#04020102"},
    {"BmpBecomesUtf8", "CN=#1E020410", "CN=\xD0\x90"},
    {"MembersStayInOrder", "O=b+CN=a", "O=b+CN=a"},
};
INSTANTIATE_TEST_SUITE_P(Lines, DnNormalize, testing::ValuesIn(lines_rows),
                         [](const auto& row) { return row.param.name; });

TEST(DnNormalize, EncoderFaultsTouchNothing) {
    for (const char* const line : {"CN=a,", "XX=a", "CN=a;b"}) {
        std::string out = untouched;
        std::string der = untouched;
        EXPECT_NE(printable_dn_normalize_r(line, out, &der, OID_MAP_HANDLE_DEFAULT).code, 0);
        EXPECT_FALSE(printable_dn_normalize(line, out, &der, OID_MAP_HANDLE_DEFAULT));
        EXPECT_EQ(out, untouched);
        EXPECT_EQ(der, untouched);
    }
    std::string out = untouched;
    const asn_dn_result_t result = printable_dn_normalize_r("O=x,CN=a;b", out, nullptr, OID_MAP_HANDLE_DEFAULT);
    EXPECT_EQ(result.code, 10);
    EXPECT_EQ(result.position, 8);
    EXPECT_EQ(out, untouched);
}

TEST(DnNormalize, DecoderFaultsLeaveTheDerAndThePartialText) {
    std::string out = untouched;
    std::string der = untouched;
    const asn_dn_result_t result = printable_dn_normalize_r("CN=#140124", out, &der, OID_MAP_HANDLE_DEFAULT);
    EXPECT_EQ(result.code, 17);
    EXPECT_EQ(result.position, 13); // in the DER
    EXPECT_EQ(out, "CN=");
    EXPECT_EQ(to_hex(der), "30 0C 31 0A 30 08 06 03 55 04 03 14 01 24");

    out = untouched;
    EXPECT_FALSE(printable_dn_normalize("O=a,CN=#140124", out, nullptr, OID_MAP_HANDLE_DEFAULT));
    EXPECT_EQ(out, "O=a,CN=");
}

TEST(DnNormalize, OutputMayBeTheLine) {
    std::string line = "CN = abc";
    EXPECT_EQ(printable_dn_normalize_r(line, line, nullptr, OID_MAP_HANDLE_DEFAULT).code, 0);
    EXPECT_EQ(line, "CN= abc");
    EXPECT_FALSE(printable_dn_normalize("CN", line, nullptr, OID_MAP_HANDLE_DEFAULT));
    EXPECT_EQ(line, "CN= abc");
}

TEST(DnNormalize, DerMayBeTheLine) {
    std::string line = "CN=abc";
    std::string out;
    EXPECT_TRUE(printable_dn_normalize(line, out, &line, OID_MAP_HANDLE_DEFAULT));
    EXPECT_EQ(out, "CN=abc");
    EXPECT_EQ(to_hex(line), "30 0E 31 0C 30 0A 06 03 55 04 03 13 03 61 62 63");
}

TEST(DnNormalize, MapIsUsedInBothDirections) {
    std::string out;
    EXPECT_TRUE(printable_dn_normalize("2.5.4.3=a", out, nullptr, no_map));
    EXPECT_EQ(out, "2.5.4.3=a");
    EXPECT_EQ(printable_dn_normalize_r("CN=a", out, nullptr, no_map).code, 2);

    const parsed_map_t map("2.5.4.3 = NAME");
    EXPECT_TRUE(printable_dn_normalize("name=a", out, nullptr, map));
    EXPECT_EQ(out, "NAME=a");
}

TEST(DnNormalize, RequiredLineEndsAtItsFirstNul) {
    std::string out;
    EXPECT_TRUE(printable_dn_normalize(std::string("CN=a\0,O=b", 9), out, nullptr, OID_MAP_HANDLE_DEFAULT));
    EXPECT_EQ(out, "CN=a");
}

TEST(DnNormalize, EscapedNulIsPrintedUnchanged) {
    std::string out;
    EXPECT_TRUE(printable_dn_normalize("CN=\\00", out, nullptr, OID_MAP_HANDLE_DEFAULT));
    EXPECT_EQ(out, std::string("CN=\0", 4));
}

// The length of the value is cut below the first zero octet above its lowest one, at every level alike.
TEST(DnNormalize, RequiredValueOf0x10000BytesReadsAsAnother) {
    std::string out;
    EXPECT_TRUE(printable_dn_normalize("CN=" + std::string(65'536, 'a'), out, nullptr, OID_MAP_HANDLE_DEFAULT));
    EXPECT_EQ(out, "CN=");
    EXPECT_TRUE(printable_dn_normalize("CN=" + std::string(65'541, 'a'), out, nullptr, OID_MAP_HANDLE_DEFAULT));
    EXPECT_EQ(out, "CN=aaaaa");
}

// The outermost SEQUENCE is the first to reach 65,536 bytes: with a value of 65,519.
TEST(DnNormalize, LongestFaithfulValueHas65518Bytes) {
    const std::string longest = "CN=" + std::string(65'518, 'a');
    std::string out;
    EXPECT_TRUE(printable_dn_normalize(longest, out, nullptr, OID_MAP_HANDLE_DEFAULT));
    EXPECT_TRUE(out == longest);
    printable_dn_normalize(longest + "a", out, nullptr, OID_MAP_HANDLE_DEFAULT);
    EXPECT_FALSE(out == longest + "a");
}

TEST(DnNormalize, LeavesBothOutputsWhenAllocationFails) {
    const std::string line = "CN=a,O=\"quoted, and long enough for the heap\",L=\\2C and another long text,C=#1E020410";
    const std::size_t num_failures = for_each_failing_allocation(
        [&line] {
            std::string out = "untouched";
            std::string der = "untouched";
            try {
                printable_dn_normalize(line, out, &der, OID_MAP_HANDLE_DEFAULT);
            } catch (...) {
                EXPECT_EQ(out, "untouched");
                EXPECT_EQ(der, "untouched");
                throw;
            }
            EXPECT_NE(out, "untouched");
        },
        [] {});
    EXPECT_GE(num_failures, 3u);
}

// A text can give two types one short name: docs/dn_syntax.md, "What is printed".
TEST(DnNormalize, NormalFormChangesAgainWhereTwoTypesShareAShortName) {
    const temp_dir_t dir;
    dir.write(u8"vpnoids.cfg", "1.2.2 = S");
    set_oid_default_file_dir(dir.utf8(u8"").c_str());
    std::string once, twice;
    EXPECT_TRUE(printable_dn_normalize("1.2.2=v", once, nullptr, OID_MAP_HANDLE_DEFAULT_FILE));
    EXPECT_TRUE(printable_dn_normalize(once, twice, nullptr, OID_MAP_HANDLE_DEFAULT_FILE));
    EXPECT_EQ(once, "S=v");
    EXPECT_EQ(twice, "ST=v");
    set_oid_default_file_dir(dir.utf8(u8"no such directory/").c_str());
}

} // namespace
