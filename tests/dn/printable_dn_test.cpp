#include "dn/printable_dn.h"

#include "tests/support/alloc_failure.h"
#include "tests/support/guarded.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>

using namespace pkider;
using namespace pkider_test;
using testing::ElementsAre;

namespace {

constexpr const char* faulty_code_names[] = {"success", "type syntax", "", "unbalanced quote"};

/// A record as `type=value`, with a leading "+" when it is joined to the one before.
std::string to_text(const RDNdescr_t& record) {
    return (record.joined_to_previous ? "+" : "") + std::string(record.type_begin, record.type_end) + "=" +
           std::string(record.value_begin, record.value_end);
}

std::vector<std::string> to_texts(const std::vector<RDNdescr_t>& records) {
    std::vector<std::string> texts;
    for (const RDNdescr_t& record : records) texts.push_back(to_text(record));
    return texts;
}

struct split_row_t {
    const char* name;
    const char* line;
    std::vector<std::string> records;
};

class DnSplit : public testing::TestWithParam<split_row_t> {};

TEST_P(DnSplit, GivesTheRecords) {
    const split_row_t& row = GetParam();
    for_guarded_line(row.line, [&](const char* line) {
        std::vector<RDNdescr_t> records;
        const asn_dn_result_t result = printable_dn_split(line, records);
        EXPECT_EQ(result.code, 0);
        EXPECT_EQ(result.position, 0);
        EXPECT_EQ(to_texts(records), row.records);

        std::vector<RDNdescr_t> parsed;
        EXPECT_TRUE(printable_dn_parse(line, parsed));
        EXPECT_EQ(to_texts(parsed), row.records);
    });
}

const split_row_t lines_rows[] = {
    {"Empty", "", {}},
    {"Blanks", " \t ", {}},
    {"One", "CN=a", {"CN=a"}},
    {"CommaAndPlus", "CN=a,O=b+OU=c", {"CN=a", "O=b", "+OU=c"}},
    {"EmptyValue", "CN=", {"CN="}},
    {"EmptyValues", "CN=,O=+OU=", {"CN=", "O=", "+OU="}},
    {"BlanksInFront", " \tCN=a", {"CN=a"}},
    {"BlanksBehindAType", "CN \t=a", {"CN=a"}},
    {"BlanksBehindASeparator", "CN=a, \tO=b+\t OU=c", {"CN=a", "O=b", "+OU=c"}},
    {"RequiredBlanksOfValuesStay", "CN = abc , O=x ", {"CN= abc ", "O=x "}},
    {"ASeparatorMayBeginAType", "CN=a,,O=b", {"CN=a", ",O=b"}},
    {"APlusMayBeginAType", "+CN=a", {"+CN=a"}},
    {"SemicolonSeparatesNothing", "CN=a;O=b", {"CN=a;O=b"}},
    {"QuotesKeepSeparators", "CN=\"a,b+c\",O=d", {"CN=\"a,b+c\"", "O=d"}},
    {"QuotesInTheMiddle", "CN=a\",\"b,O=d", {"CN=a\",\"b", "O=d"}},
    {"QuotesOfOneValueAreOneRecord", "CN=\"a\"O=\"b\"", {"CN=\"a\"O=\"b\""}},
    {"EscapedComma", "CN=a\\,b,O=c", {"CN=a\\,b", "O=c"}},
    {"EscapedPlus", "CN=a\\+b+O=c", {"CN=a\\+b", "+O=c"}},
    {"EscapedBackslash", "CN=a\\\\,O=c", {"CN=a\\\\", "O=c"}},
    {"EscapedQuote", "CN=a\\\",O=c", {"CN=a\\\"", "O=c"}},
    {"EscapedQuoteInQuotes", "CN=\"a\\\",b\",O=c", {"CN=\"a\\\",b\"", "O=c"}},
    {"BackslashAtTheEnd", "CN=a\\", {"CN=a\\"}},
    {"EqualsInAValue", "CN=a=b", {"CN=a=b"}},
    {"ControlsAreOrdinary", "\x01\n=\r\n\x7F,O=\v", {"\x01\n=\r\n\x7F", "O=\v"}},
    {"BytesAboveAscii", "\xC3\xA9=\xFF", {"\xC3\xA9=\xFF"}},
};
INSTANTIATE_TEST_SUITE_P(Lines, DnSplit, testing::ValuesIn(lines_rows), [](const auto& row) { return row.param.name; });

struct split_fault_t {
    const char* name;
    const char* line;
    uint16_t code;
    uint16_t position;
    std::vector<std::string> records; // those before the fault
};

class DnSplitFault : public testing::TestWithParam<split_fault_t> {};

TEST_P(DnSplitFault, IsReported) {
    const split_fault_t& row = GetParam();
    for_guarded_line(row.line, [&](const char* line) {
        std::vector<RDNdescr_t> records;
        const asn_dn_result_t result = printable_dn_split(line, records);
        EXPECT_EQ(result.code, row.code) << faulty_code_names[row.code];
        EXPECT_EQ(result.position, row.position);
        EXPECT_EQ(to_texts(records), row.records);

        std::vector<RDNdescr_t> parsed;
        EXPECT_FALSE(printable_dn_parse(line, parsed));
        EXPECT_EQ(to_texts(parsed), row.records);
    });
}

const split_fault_t dn_split_fault_lines_rows[] = {
    // "=" where a type should begin
    {"EqualsBeforeAType", "=a", 1, 0, {}},
    {"EqualsBehindBlanks", "  =a", 1, 2, {}},
    {"EqualsBehindASeparator", "CN=a,=b", 1, 5, {"CN=a"}},
    {"EqualsBehindASeparatorAndABlank", "CN=a, =b", 1, 6, {"CN=a"}},
    // NUL before "="
    {"OnlyAType", "CN", 1, 2, {}},
    {"OnlyATypeAndABlank", "CN ", 1, 3, {}},
    {"SecondTypeOnly", "CN=a,O", 1, 6, {"CN=a"}},
    // Something else after the blanks
    {"TwoWords", "C N=a", 1, 2, {}},
    {"TwoWordsAndBlanks", "C \t N=a", 1, 4, {}},
    {"CommaBehindABlank", "CN ,O=a", 1, 3, {}},
    // Nothing after a separator
    {"NothingAfterComma", "CN=a,", 1, 5, {"CN=a"}},
    {"NothingAfterPlus", "CN=a+", 1, 5, {"CN=a"}},
    {"BlanksAfterComma", "CN=a,  ", 1, 5, {"CN=a"}},
    {"BlanksAfterTheSecondComma", "CN=a,O=b,\t", 1, 9, {"CN=a", "O=b"}},
    // Quotes left open
    {"QuoteLeftOpen", "CN=\"a", 3, 3, {}},
    {"QuoteAlone", "CN=\"", 3, 3, {}},
    {"QuoteLeftOpenAtABackslash", "CN=\"a\\", 3, 3, {}},
    {"EscapedQuoteClosesNothing", "CN=\"a\\\"", 3, 3, {}},
    {"ThreeQuotes", "CN=\"a\"\"", 3, 3, {}},
    {"QuoteLeftOpenInTheSecond", "CN=a, O= \"b,C=c", 3, 8, {"CN=a"}},
};
INSTANTIATE_TEST_SUITE_P(Lines, DnSplitFault, testing::ValuesIn(dn_split_fault_lines_rows),
                         [](const auto& row) { return row.param.name; });

TEST(DnSplitFault, PositionsBehind65535Wrap) {
    const std::string line = "CN=" + std::string(65'536, 'a') + ",=";
    std::vector<RDNdescr_t> records;
    const asn_dn_result_t result = printable_dn_split(line.c_str(), records);
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.position, 4);
    EXPECT_EQ(records.size(), 1u);
}

TEST(PrintableDnParse, AppendsToWhatIsThere) {
    std::vector<RDNdescr_t> records(1);
    EXPECT_TRUE(printable_dn_parse("CN=a", records));
    EXPECT_EQ(records.size(), 2u);
    EXPECT_FALSE(printable_dn_parse("O=b,", records));
    ASSERT_EQ(records.size(), 3u);
    EXPECT_EQ(records[0].type_begin, nullptr);
    EXPECT_EQ(to_text(records[1]), "CN=a");
    EXPECT_EQ(to_text(records[2]), "O=b");
}

TEST(PrintableDnParse, PointsIntoTheLine) {
    const char line[] = " CN = a,O=b";
    std::vector<RDNdescr_t> records;
    ASSERT_TRUE(printable_dn_parse(line, records));
    ASSERT_EQ(records.size(), 2u);
    EXPECT_EQ(records[0].type_begin, line + 1);
    EXPECT_EQ(records[0].type_end, line + 3);
    EXPECT_EQ(records[0].value_begin, line + 5);
    EXPECT_EQ(records[0].value_end, line + 7);
    EXPECT_EQ(records[1].value_end, line + sizeof line - 1);
}

TEST(PrintableDnParse, EveryByteMayStandInATypeAndAValue) {
    for (int c = 1; c < 256; ++c) {
        const auto character = static_cast<char>(c);
        const std::string line = std::string("x") + character + "y=x" + character + "y";
        std::vector<RDNdescr_t> records;
        const asn_dn_result_t result = printable_dn_split(line.c_str(), records);
        switch (character) {
        case ' ':
        case '\t':
            EXPECT_EQ(result.code, 1);
            continue;
        case '=':
            EXPECT_THAT(to_texts(records), ElementsAre("x=y=x=y"));
            continue;
        case '"':
            EXPECT_EQ(result.code, 3);
            continue;
        case ',':
        case '+':
            EXPECT_EQ(result.code, 1);
            break; // "y" has no "="
        default:
            EXPECT_EQ(result.code, 0);
        }
        ASSERT_EQ(records.size(), 1u) << c;
        EXPECT_EQ(std::string(records[0].type_begin, records[0].type_end), line.substr(0, 3)) << c;
    }
}

TEST(PrintableDnParse, EveryPrefixOfALineStaysInsideIt) {
    const std::string line = " CN = \"a\\\"b\" ,O=\\,\\2C+OU=#0C0161, C=\"RU\"";
    for (std::size_t size = 0; size <= line.size(); ++size) {
        for_guarded_line(line.substr(0, size), [&](const char* text) {
            std::vector<RDNdescr_t> records;
            printable_dn_parse(text, records);
            for (const RDNdescr_t& record : records) {
                EXPECT_TRUE(text <= record.type_begin && record.type_begin < record.type_end);
                EXPECT_TRUE(record.type_end < record.value_begin && record.value_begin <= record.value_end);
                EXPECT_TRUE(record.value_end <= text + size);
            }
        });
    }
}

TEST(PrintableDnParse, SplitsALongLine) {
    constexpr std::size_t num_pairs = 200'000;
    std::string line;
    for (std::size_t i = 0; i < num_pairs; ++i) line += "CN=a,";
    line.pop_back();
    std::vector<RDNdescr_t> records;
    ASSERT_TRUE(printable_dn_parse(line.c_str(), records));
    ASSERT_EQ(records.size(), num_pairs);
    EXPECT_EQ(records.back().value_end, line.c_str() + line.size());
}

TEST(PrintableDnParse, KeepsCompleteRecordsWhenAllocationFails) {
    const std::size_t num_failures = for_each_failing_allocation(
        [] {
            std::vector<RDNdescr_t> records;
            try {
                printable_dn_parse("CN=a,O=b,C=c", records);
            } catch (...) {
                for (const RDNdescr_t& record : records) EXPECT_EQ(record.value_end - record.value_begin, 1);
                throw;
            }
            EXPECT_EQ(records.size(), 3u);
        },
        [] {});
    EXPECT_GT(num_failures, 0u);
}

} // namespace
