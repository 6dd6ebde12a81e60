#include "dn/dn_encoder.h"

#include "tests/support/alloc_failure.h"
#include "tests/support/bottom_up_name.h"
#include "tests/support/guarded.h"
#include "tests/support/hex.h"
#include "tests/support/parsed_map.h"

#include <gtest/gtest.h>

#include <string>

using namespace pkider;
using namespace pkider_test;

namespace {

const std::string untouched = "not DER";
constexpr oid_map_handle_t no_map{};

std::string expected_name(const std::string& line, oid_map_handle_t map = OID_MAP_HANDLE_DEFAULT) {
    std::string der;
    EXPECT_EQ(bottom_up_name(line.c_str(), map, der).code, 0) << line;
    return der;
}

struct encode_row_t {
    const char* name;
    const char* line;
    const char* der;
};

class DnEncoder : public testing::TestWithParam<encode_row_t> {};

TEST_P(DnEncoder, WritesTheName) {
    const encode_row_t& row = GetParam();
    for_guarded_line(row.line, [&row](const char* line) {
        std::string der = untouched;
        EXPECT_TRUE(printable_to_asn_dn(line, der, OID_MAP_HANDLE_DEFAULT));
        EXPECT_EQ(to_hex(der), to_hex(from_hex(row.der)));

        der = untouched;
        const asn_dn_result_t result = printable_to_asn_dn_r(line, der, OID_MAP_HANDLE_DEFAULT);
        EXPECT_EQ(result.code, 0);
        EXPECT_EQ(result.position, 0);
        EXPECT_EQ(der, expected_name(line));
    });
}

const encode_row_t lines_rows[] = {
    {"Empty", "", "30 00"},
    {"Blanks", "\t ", "30 00"},
    {"ShortName", "CN=abc", "30 0E 31 0C 30 0A 06 03 55 04 03 13 03 61 62 63"},
    {"CaseOfAShortName", "cN=abc", "30 0E 31 0C 30 0A 06 03 55 04 03 13 03 61 62 63"},
    {"DottedText", "2.5.4.3=abc", "30 0E 31 0C 30 0A 06 03 55 04 03 13 03 61 62 63"},
    {"DottedTextWithZeros", "02.05.004.3=a", "30 0C 31 0A 30 08 06 03 55 04 03 13 01 61"},
    {"BothNamesOfTheState", "ST=a,S=b",
     "30 18 31 0A 30 08 06 03 55 04 08 13 01 61 31 0A 30 08 06 03 55 04 08 13 01 62"},
    {"RequiredMembersOfASetAreNotSorted", "O=b+CN=a",
     "30 16 31 14 30 08 06 03 55 04 0A 13 01 62 30 08 06 03 55 04 03 13 01 61"},
    {"RequiredRdnsStayInTheOrderOfTheText", "CN=a,O=b",
     "30 18 31 0A 30 08 06 03 55 04 03 13 01 61 31 0A 30 08 06 03 55 04 0A 13 01 62"},
    {"SetsOfDifferentSizes", "CN=a,O=b+OU=c,C=d",
     "30 2E 31 0A 30 08 06 03 55 04 03 13 01 61"
     "31 14 30 08 06 03 55 04 0A 13 01 62 30 08 06 03 55 04 0B 13 01 63"
     "31 0A 30 08 06 03 55 04 06 13 01 64"},
    {"TwoMembersBehindABlank", " CN=a+O=b", "30 16 31 14 30 08 06 03 55 04 03 13 01 61 30 08 06 03 55 04 0A 13 01 62"},
    {"EmptyValue", "CN=", "30 0B 31 09 30 07 06 03 55 04 03 13 00"},
    {"BlankIsPrintable", "CN=a b", "30 0E 31 0C 30 0A 06 03 55 04 03 13 03 61 20 62"},
    {"BlanksOfValuesStay", "CN = a , O=b",
     "30 1A 31 0C 30 0A 06 03 55 04 03 13 03 20 61 20 31 0A 30 08 06 03 55 04 0A 13 01 62"},
    {"UnderscoreIsIa5", "CN=a_b", "30 0E 31 0C 30 0A 06 03 55 04 03 16 03 61 5F 62"},
    {"Utf8", "CN=\xC3\xA9", "30 0D 31 0B 30 09 06 03 55 04 03 0C 02 C3 A9"},
    {"EscapedNul", "CN=\\00", "30 0C 31 0A 30 08 06 03 55 04 03 16 01 00"},
    {"Escapes", "CN=a\\,b\\2B", "30 0F 31 0D 30 0B 06 03 55 04 03 13 04 61 2C 62 2B"},
    {"Quotes", "CN=\"a,b\"", "30 0E 31 0C 30 0A 06 03 55 04 03 13 03 61 2C 62"},
    {"QuotesWithAnEscape", "CN=\"a\\\"b\",O=c",
     "30 1A 31 0C 30 0A 06 03 55 04 03 13 03 61 22 62 31 0A 30 08 06 03 55 04 0A 13 01 63"},
    {"HexValue", "CN=#0C03616263", "30 0E 31 0C 30 0A 06 03 55 04 03 0C 03 61 62 63"},
    {"HexValueGetsAFreshLength", "CN=#0C8103616263", "30 0E 31 0C 30 0A 06 03 55 04 03 0C 03 61 62 63"},
    {"HexValueWithoutContents", "CN=#0500", "30 0B 31 09 30 07 06 03 55 04 03 05 00"},
    {"SeveralRewrittenPieces", "1.2.3=\\,,1.2.4=#040155+CN=\\+,1.2.5=\"\\\"\"",
     "30 2B 31 09 30 07 06 02 2A 03 13 01 2C"
     "31 13 30 07 06 02 2A 04 04 01 55 30 08 06 03 55 04 03 13 01 2B"
     "31 09 30 07 06 02 2A 05 13 01 22"},
};
INSTANTIATE_TEST_SUITE_P(Lines, DnEncoder, testing::ValuesIn(lines_rows),
                         [](const auto& row) { return row.param.name; });

struct encode_fault_t {
    const char* name;
    const char* line;
    uint16_t code;
    uint16_t position;
};

class DnEncoderFault : public testing::TestWithParam<encode_fault_t> {};

TEST_P(DnEncoderFault, IsReported) {
    const encode_fault_t& row = GetParam();
    for_guarded_line(row.line, [&row](const char* line) {
        std::string der = untouched;
        const asn_dn_result_t result = printable_to_asn_dn_r(line, der, OID_MAP_HANDLE_DEFAULT);
        EXPECT_EQ(result.code, row.code);
        EXPECT_EQ(result.position, row.position);
        EXPECT_EQ(der, untouched);

        EXPECT_FALSE(printable_to_asn_dn(line, der, OID_MAP_HANDLE_DEFAULT));
        EXPECT_EQ(der, untouched);
    });
}

const encode_fault_t dn_encoder_fault_lines_rows[] = {
    // The line
    {"NothingAfterComma", "CN=a,", 1, 5},
    {"NothingAfterPlus", "CN=a+", 1, 5},
    {"QuoteLeftOpen", "CN=a,O=\"b", 3, 7},
    {"ALaterFaultOfTheLineGoesFirst", "XX=a;b,", 1, 7},
    // The type
    {"UnknownType", "CN=a, XX=b", 2, 6},
    {"CommaBeginsAType", "CN=a,,O=b", 2, 5},
    {"SecondOfASet", "CN=a+XX=b,O=c", 2, 5},
    {"OneArc", "2=a", 2, 0},
    {"FirstArcTooLarge", "CN=a,3.1=b", 2, 5},
    {"TypeAboveAscii", "\xC3\xA9=a", 2, 0},
    {"OidPrefix", "OID.2.5.4.3=a", 2, 0},
    {"LongName", "commonName=a", 2, 0},
    {"TypeGoesBeforeItsValue", "XX=a;b", 2, 0},
    {"AnEarlierValueGoesFirst", "CN=a;b,XX=c", 10, 4},
    // Plain values
    {"BackslashAtTheEnd", "CN=a\\", 7, 5},
    {"OneHexDigit", "CN=a\\4", 8, 6},
    {"EscapedLetter", "CN=a\\xb", 9, 5},
    {"EscapedByteAboveAscii", "CN=a\\\xC3", 9, 5},
    {"Semicolon", "O=x,CN=a;b", 10, 8},
    {"LoneNumberSign", "CN=#", 10, 3},
    {"BlankBeforeQuotes", "CN= \"a,b\"", 10, 4},
    {"BlankBehindQuotes", "CN=\"a\" ,O=x", 10, 3},
    {"TwoEquals", "CN=a=b", 10, 4},
    // Quoted and "#" values count from after the quote or "#"
    {"RequiredHexAndQuotedPositionsAreOneBeforeTheFault", "CN=#0C0G", 5, 6},
    {"QuotedBackslashIsOneBeforeTheFault", "CN=\"x\"\\\"", 7, 6},
    {"FirstHexDigitBad", "CN=#GG0C", 5, 3},
    {"TwoBlanksBehindHex", "CN=#0C0161  ", 5, 9},
    {"OddHexDigits", "CN=#0C0", 4, 3},
    {"BlankBehindHex", "CN=#0C0161 ", 4, 3},
    {"CountGoesBeforeDigits", "CN=#0G", 4, 3},
    {"HexIndefinite", "CN=#0C8000", 6, 3},
    {"HexLengthMissing", "CN=#0C82", 6, 3},
    {"HexTooLong", "O=x, CN=#0C05616263", 6, 8},
};
INSTANTIATE_TEST_SUITE_P(Lines, DnEncoderFault, testing::ValuesIn(dn_encoder_fault_lines_rows),
                         [](const auto& row) { return row.param.name; });

TEST(DnEncoderFault, ShortNamesNeedAMap) {
    std::string der = untouched;
    const asn_dn_result_t first = printable_to_asn_dn_r("CN=abc", der, no_map);
    EXPECT_EQ(first.code, 2);
    EXPECT_EQ(first.position, 0);
    const asn_dn_result_t second = printable_to_asn_dn_r("2.5.4.3=a,CN=abc", der, no_map);
    EXPECT_EQ(second.code, 2);
    EXPECT_EQ(second.position, 10);
    EXPECT_EQ(der, untouched);
}

TEST(DnEncoderFault, PositionsBehind65535Wrap) {
    std::string der;
    const std::string line = "CN=" + std::string(65'536, 'a') + ",O=b;c";
    const asn_dn_result_t result = printable_to_asn_dn_r(line.c_str(), der, OID_MAP_HANDLE_DEFAULT);
    EXPECT_EQ(result.code, 10);
    EXPECT_EQ(result.position, 7);
}

TEST(DnEncoder, DottedTextNeedsNoMap) {
    std::string der;
    ASSERT_TRUE(printable_to_asn_dn("2.5.4.3=abc", der, no_map));
    EXPECT_EQ(to_hex(der), "30 0E 31 0C 30 0A 06 03 55 04 03 13 03 61 62 63");
}

TEST(DnEncoder, ShortNamesGoBeforeDottedText) {
    const parsed_map_t map("1.2.3 = 2.5.4.3");
    std::string der;
    EXPECT_TRUE(printable_to_asn_dn("2.5.4.3=a,2.5.4.4=b", der, map));
    EXPECT_EQ(to_hex(der), "30 17 31 09 30 07 06 02 2A 03 13 01 61 31 0A 30 08 06 03 55 04 04 13 01 62");
}

TEST(DnEncoder, TakesALineThatStandsInItsOutput) {
    std::string der = "CN=abc,O=\\,";
    ASSERT_TRUE(printable_to_asn_dn(der.c_str(), der, OID_MAP_HANDLE_DEFAULT));
    EXPECT_EQ(to_hex(der), "30 1A 31 0C 30 0A 06 03 55 04 03 13 03 61 62 63 31 0A 30 08 06 03 55 04 0A 13 01 2C");
}

TEST(DnEncoder, TakesTheLongestOid) {
    std::string type = "2.5";
    for (int i = 0; i < 505; ++i) type += ".1";
    std::string der;
    ASSERT_TRUE(printable_to_asn_dn((type + "=a").c_str(), der, no_map));
    EXPECT_EQ(der, expected_name(type + "=a", no_map));
    const asn_dn_result_t result = printable_to_asn_dn_r((type + ".1=a").c_str(), der, no_map);
    EXPECT_EQ(result.code, 2);
}

// Every size of a value up to far beyond one length octet, so that each level of the nest changes its header.
TEST(DnEncoder, EqualsTheWritersForEveryValueLengthUpTo700) {
    for (std::size_t length = 0; length <= 700; ++length) {
        const std::string value(length, 'a');
        for (const std::string& line :
             {"CN=" + value, "CN=" + value + "+O=b", "CN=" + value + ",O=" + value, "CN=\\61" + value}) {
            std::string der;
            ASSERT_TRUE(printable_to_asn_dn(line.c_str(), der, OID_MAP_HANDLE_DEFAULT));
            ASSERT_EQ(der, expected_name(line)) << length;
        }
    }
}

TEST(DnEncoder, EqualsTheWritersAtTheEndOfTheShortForms) {
    for (const char* type : {"C", "CN", "DC", "2.5.4.3", "1.2.840.113549.1.9.1"}) {
        for (std::size_t length = 95; length <= 140; ++length) {
            const std::string pair = std::string(type) + "=" + std::string(length, 'a');
            for (const std::string& line : {pair, pair + ",C=RU", pair + "+C=RU", "C=RU+" + pair}) {
                std::string der;
                ASSERT_TRUE(printable_to_asn_dn(line.c_str(), der, OID_MAP_HANDLE_DEFAULT));
                ASSERT_EQ(der, expected_name(line)) << line;
            }
        }
    }
}

// Around 65,536 a length loses octets, at each level for another value length.
TEST(DnEncoder, EqualsTheWritersAroundLength0x10000) {
    for (std::size_t length = 65'500; length <= 65'540; ++length) {
        const std::string value(length, 'a');
        for (const std::string& line : {"CN=" + value, "CN=" + value + "+O=b", "C=c,O=b+CN=" + value + ",L=d"}) {
            std::string der;
            ASSERT_TRUE(printable_to_asn_dn(line.c_str(), der, OID_MAP_HANDLE_DEFAULT));
            ASSERT_TRUE(der == expected_name(line)) << length;
        }
    }
}

TEST(DnEncoder, RequiredValueOf0x10000BytesLosesItsLength) {
    std::string der;
    ASSERT_TRUE(printable_to_asn_dn(("CN=" + std::string(65'536, 'a')).c_str(), der, OID_MAP_HANDLE_DEFAULT));
    EXPECT_EQ(der.size(), 65'553u);
    EXPECT_EQ(to_hex(der.substr(0, 18)), "30 81 0E 31 81 0B 30 81 08 06 03 55 04 03 13 81 00 61");
}

TEST(DnEncoder, SetOfExactly0x10000BytesEqualsTheWriters) {
    // Each member takes 0x100 bytes: 3 of its own header, 5 of the OID, 3 of the value's header and 245 of text.
    std::string line;
    for (int i = 0; i < 0x100; ++i) line += (i == 0 ? "CN=" : "+CN=") + std::string(245, 'a');
    std::string der;
    ASSERT_TRUE(printable_to_asn_dn(line.c_str(), der, OID_MAP_HANDLE_DEFAULT));
    EXPECT_EQ(der, expected_name(line));
    EXPECT_EQ(to_hex(der.substr(0, 6)), "30 81 03 31 81 00");
}

struct long_line_t {
    const char* name;
    char separator;
};

class DnEncoderLongLine : public testing::TestWithParam<long_line_t> {};

TEST_P(DnEncoderLongLine, Encodes200000Pairs) {
    constexpr std::size_t num_pairs = 200'000;
    std::string line;
    std::string members;
    for (std::size_t i = 0; i < num_pairs; ++i) {
        line += "0.0=";
        line.push_back(GetParam().separator);
        members +=
            GetParam().separator == ',' ? "31 07 30 05 06 01 00 13 00"_hex.str() : "30 05 06 01 00 13 00"_hex.str();
    }
    line.pop_back();
    std::string der;
    ASSERT_TRUE(printable_to_asn_dn(line.c_str(), der, no_map));

    // 1,800,000 is 1B 77 40, and so is written whole; 1,400,000 is 15 5C C0, and its SET 15 5C C5.
    const std::string headers =
        GetParam().separator == ',' ? "30 83 1B 77 40"_hex.str() : "30 83 15 5C C5 31 83 15 5C C0"_hex.str();
    ASSERT_EQ(der.size(), headers.size() + members.size());
    EXPECT_TRUE(der == headers + members);
}

const long_line_t dn_encoder_long_line_lines_rows[] = {
    {"AsManyRdns", ','},
    {"OneSet", '+'},
};
INSTANTIATE_TEST_SUITE_P(Lines, DnEncoderLongLine, testing::ValuesIn(dn_encoder_long_line_lines_rows),
                         [](const auto& row) { return row.param.name; });

TEST(DnEncoder, LeavesTheOutputWhenAllocationFails) {
    std::string line = "CN=a\\,b,2.5.4.10=\"c\\\"\",O=#0C0161";
    for (int i = 0; i < 30; ++i) line += ",OU=a much longer value than would go without the heap\\, of course";
    std::string der = untouched;
    std::string expected;
    ASSERT_TRUE(printable_to_asn_dn(line.c_str(), expected, OID_MAP_HANDLE_DEFAULT));

    const std::size_t num_failures = for_each_failing_allocation(
        [&] {
            std::string encoding = untouched;
            try {
                printable_to_asn_dn(line.c_str(), encoding, OID_MAP_HANDLE_DEFAULT);
            } catch (...) {
                EXPECT_EQ(encoding, untouched);
                throw;
            }
            EXPECT_TRUE(encoding == expected);
        },
        [] {});
    EXPECT_GE(num_failures, 3u); // DER aside, values, output
}

TEST(DnEncoder, NeedsAtMostThreeTimesItsOutput) {
    for (const char separator : {',', '+'}) {
        std::string line;
        for (int i = 0; i < 10'000; ++i) line += "OU=Example Unit" + std::string(i < 9'999, separator);
        std::string der;
        const std::size_t peak =
            peak_allocated_bytes([&] { printable_to_asn_dn(line.c_str(), der, OID_MAP_HANDLE_DEFAULT); });
        EXPECT_LE(peak, 3 * der.size()) << separator;
    }
}

TEST(DnEncoder, TypicalNameTakesOneAllocation) {
    const char line[] = "C=RU,ST=Moscow,O=Example Org,OU=Unit,CN=www.example.com";
    std::string der;
    EXPECT_EQ(count_allocations([&] { EXPECT_TRUE(printable_to_asn_dn(line, der, OID_MAP_HANDLE_DEFAULT)); }), 1u);
}

TEST(DnEncoder, EveryPrefixOfALineStaysInsideIt) {
    const std::string line = " CN = \"a\\\"b\",O=\\,\\2C+OU=#0C0161, 2.5.4.6=\"RU\"";
    for (std::size_t size = 0; size <= line.size(); ++size) {
        for_guarded_line(line.substr(0, size), [&](const char* text) {
            std::string der = untouched;
            const asn_dn_result_t result = printable_to_asn_dn_r(text, der, OID_MAP_HANDLE_DEFAULT);
            std::string expected = untouched;
            const asn_dn_result_t fault = bottom_up_name(text, OID_MAP_HANDLE_DEFAULT, expected);
            EXPECT_EQ(result.code, fault.code);
            EXPECT_EQ(result.position, fault.position);
            EXPECT_EQ(der, expected);
        });
    }
}

} // namespace
