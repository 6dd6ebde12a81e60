#include "tests/support/alloc_failure.h"
#include "tests/support/guarded.h"

#include <pkider/dn.h>

#include <gtest/gtest.h>

#include <string>

using namespace pkider_test;

namespace {

struct reverse_row_t {
    const char* name;
    const char* line;
    const char* reversed; // null: a fault
};

class DnReverse : public testing::TestWithParam<reverse_row_t> {};

TEST_P(DnReverse, TurnsTheLineRound) {
    const reverse_row_t& row = GetParam();
    for_guarded_line(row.line, [&row](char* line) {
        char* const result = printable_dn_reverse(line);
        EXPECT_EQ(result, row.reversed == nullptr ? nullptr : line);
        EXPECT_STREQ(line, row.reversed == nullptr ? row.line : row.reversed);
    });
}

const reverse_row_t lines_rows[] = {
    {"Three", "C=RU,O=x,CN=a", "CN=a,O=x,C=RU"},
    {"Two", "C=RU,O=x", "O=x,C=RU"},
    {"Empty", "", ""},
    {"Blanks", " \t", " \t"},
    {"One", " CN = a ", " CN = a "},
    {"OneGroup", "CN=a+O=b", "CN=a+O=b"},
    {"OneGroupWithBlanks", " CN=a+ O=b ", " CN=a+ O=b "},
    {"MembersKeepTheirOrder", "CN=a+O=b,C=c+L=d+T=e", "C=c+L=d+T=e,CN=a+O=b"},
    {"RequiredBlanksMoveWithTheirRdn", "A=1, B=2", " B=2,A=1"},
    {"BlanksInFrontOfTheLine", " \tA=1,B=2", "B=2, \tA=1"},
    {"BlanksBehindAValue", "A=1 ,B=2 ", "B=2 ,A=1 "},
    {"BlanksInsideAGroup", "A=1+ B=2, C=3", " C=3,A=1+ B=2"},
    {"QuotedComma", "A=\"1,2\",B=3", "B=3,A=\"1,2\""},
    {"EscapedComma", "A=1\\,2,B=3", "B=3,A=1\\,2"},
    {"EmptyValues", "A=,B=", "B=,A="},
    {"Utf8", "A=\xC3\xA9,B=2", "B=2,A=\xC3\xA9"},
    {"ValuesAreNotLookedAt", "A=1;2,B=\\xx", "B=\\xx,A=1;2"},
    {"FaultOfTheType", "A=1,=2", nullptr},
    {"FaultOfTheEnd", "A=1,", nullptr},
    {"FaultOfAQuote", "A=1,B=\"2", nullptr},
};
INSTANTIATE_TEST_SUITE_P(Lines, DnReverse, testing::ValuesIn(lines_rows),
                         [](const auto& row) { return row.param.name; });

TEST(DnReverse, TwiceGivesALineWithoutBlanksBack) {
    const std::string line = "C=RU,O=\"x,y\"+OU=z,CN=a\\,b,L=";
    std::string turned = line;
    ASSERT_NE(printable_dn_reverse(turned.data()), nullptr);
    EXPECT_EQ(turned, "L=,CN=a\\,b,O=\"x,y\"+OU=z,C=RU");
    ASSERT_NE(printable_dn_reverse(turned.data()), nullptr);
    EXPECT_EQ(turned, line);
}

TEST(DnReverse, TurnsALongLine) {
    constexpr int num_rdns = 200'000;
    std::string line;
    std::string expected;
    for (int i = 0; i < num_rdns; ++i) {
        line += std::string("CN=") + static_cast<char>('a' + i % 26) + "bc,";
        expected += std::string("CN=") + static_cast<char>('a' + (num_rdns - 1 - i) % 26) + "bc,";
    }
    line.pop_back();
    expected.pop_back();
    ASSERT_NE(printable_dn_reverse(line.data()), nullptr);
    EXPECT_TRUE(line == expected);
}

TEST(DnReverse, LeavesTheLineWhenAllocationFails) {
    const std::string line = "A=1,B=2,C=3,D=4,E=5,F=6,G=7,H=8,I=9,J=10,K=11";
    std::string turned = line;
    const std::size_t num_failures = for_each_failing_allocation([&turned] { printable_dn_reverse(turned.data()); },
                                                                 [&] { EXPECT_EQ(turned, line); });
    EXPECT_GE(num_failures, 1u);
    EXPECT_EQ(turned, "K=11,J=10,I=9,H=8,G=7,F=6,E=5,D=4,C=3,B=2,A=1");
}

} // namespace
