#include <pkider/dn.h>

#include "tests/support/guarded.h"

#include <gtest/gtest.h>

#include <string>

using namespace pkider_test;

namespace {

/// Asks with guarded copies of both texts.
bool contains(const char* dn, const char* attrs) {
    int num_true = 0;
    int num_calls = 0;
    for_guarded_line(dn, [&](const char* dn_copy) {
        for_guarded_line(attrs, [&](const char* attrs_copy) {
            ++num_calls;
            if (printable_dn_contain_attrs(dn_copy, attrs_copy)) ++num_true;
        });
    });
    EXPECT_TRUE(num_true == 0 || num_true == num_calls);
    return num_true != 0;
}

struct contain_row_t {
    const char* name;
    const char* dn;
    const char* attrs;
    bool expected;
};

class DnContainAttrs : public testing::TestWithParam<contain_row_t> {};

TEST_P(DnContainAttrs, Answers) {
    EXPECT_EQ(contains(GetParam().dn, GetParam().attrs), GetParam().expected);
}

const contain_row_t lines_rows[] = {
    // Whole pieces, in order
    {"TheWholeLine", "CN=a,O=b,C=RU", "CN=a,O=b,C=RU", true},
    {"First", "CN=a,O=b,C=RU", "CN=a", true},
    {"Middle", "CN=a,O=b,C=RU", "O=b", true},
    {"Last", "CN=a,O=b,C=RU", "C=RU", true},
    {"WithAGap", "CN=a,O=b,C=RU", "CN=a,C=RU", true},
    {"OtherOrder", "CN=a,O=b,C=RU", "C=RU,CN=a", false},
    {"BeginningOfAPiece", "CN=a,O=b,C=RU", "O=b,C", false},
    {"EndOfAPiece", "CN=a,O=b", "N=a", false},
    {"Missing", "CN=a,O=b", "O=c", false},
    {"OneMore", "CN=a", "CN=a,O=b", false},
    {"Case", "CN=a", "cn=a", false},
    {"MembersAreOnePiece", "CN=a+O=b,C=c", "CN=a", false},
    {"WholeGroup", "CN=a+O=b,C=c", "CN=a+O=b", true},
    {"RepeatedPiece", "A=1,B=2,B=2,C=3", "A=1,B=2,C=3", true},
    {"BlankInFront", "CN=a, O=b", "O=b", false},
    {"BlankInBoth", "CN=a, O=b", " O=b", true},
    {"SameBeginningEarlier", "CN=a,CN=ab", "CN=ab", true},
    // A longer piece with the same beginning
    {"RequiredLongerPieceWithTheSameBeginningEndsTheSearch", "O=bc,O=b", "O=b", false},
    {"LongerGroupWithTheSameBeginning", "X=1,CN=a+O=b,CN=a", "CN=a", false},
    {"LongerPieceBeforeItsTurn", "O=bc,X=1,O=b", "X=1,O=b", true},
    // Empty texts
    {"BothEmpty", "", "", true},
    {"EmptyDn", "", "O=b", false},
    {"EmptyAttrs", "CN=a", "", false},
    {"EmptyAttrsEmptyPiece", ",x", "", true},
    {"CommaAtTheEndOfBoth", "CN=a,", "CN=a,", true},
    {"CommaAtTheEndOfAttrs", "CN=a,O=b", "CN=a,", false},
    // Quotes and backslashes
    {"QuotedCommaIsNoBoundary", "CN=\"a,O=b\",C=RU", "O=b", false},
    {"QuotedCommaIsNoRestartPoint", "CN=\"a,c\",b\"", "CN=\"a,b\"", false},
    {"BehindAQuotedComma", "CN=\"a,O=b\",C=RU", "C=RU", true},
    {"QuotedPiece", "CN=\"a,O=b\",C=RU", "CN=\"a,O=b\",C=RU", true},
    {"EscapedCommaIsNoBoundary", "CN=a\\,O=b", "O=b", false},
    {"EscapedQuoteTogglesNothing", "CN=a\\\",O=b", "O=b", true},
    {"RequiredTwoBackslashesEscapeToo", "CN=a\\\\,O=b", "O=b", false},
    {"QuoteBehindTwoBackslashesStaysOpen", "CN=\"a\\\\\",O=b", "O=b", false},
    {"BackslashFirst", "\\,O=b", "O=b", false},
    {"RequiredEscapedCommaIsARestartPoint", "CN=a\\,b,O=x", "CN=a\\,O=x", true},
};
INSTANTIATE_TEST_SUITE_P(Lines, DnContainAttrs, testing::ValuesIn(lines_rows),
                         [](const auto& row) { return row.param.name; });

TEST(DnContainAttrs, EveryCutOfBothTextsStaysInside) {
    const std::string dn = "CN=\"a,b\",O=c\\,d,C=e";
    int num_equal = 0;
    for (std::size_t size = 0; size <= dn.size(); ++size) {
        for (std::size_t attrs_size = 0; attrs_size <= dn.size(); ++attrs_size) {
            const bool expected = contains(dn.substr(0, size).c_str(), dn.substr(0, attrs_size).c_str());
            if (size == attrs_size) {
                EXPECT_TRUE(expected) << size;
                ++num_equal;
            }
            EXPECT_FALSE(expected && attrs_size > size) << size << " " << attrs_size;
        }
    }
    EXPECT_EQ(num_equal, 20);
}

TEST(DnContainAttrs, WalksALongLine) {
    std::string dn;
    for (int i = 0; i < 200'000; ++i) dn += "CN=a,";
    EXPECT_TRUE(printable_dn_contain_attrs((dn + "O=b").c_str(), "O=b"));
    EXPECT_FALSE(printable_dn_contain_attrs((dn + "O=b").c_str(), "O=c"));
}

} // namespace
