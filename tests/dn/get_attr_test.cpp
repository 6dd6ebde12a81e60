#include <pkider/dn.h>

#include "tests/support/alloc_failure.h"

#include <gtest/gtest.h>

#include <string>

using namespace pkider_test;

namespace {

const std::string before = "before|";

struct get_row_t {
    const char* name;
    const char* line;
    const char* type;
    const char* value; // null: not found
    const char* pair;
};

class DnGetAttr : public testing::TestWithParam<get_row_t> {};

TEST_P(DnGetAttr, AppendsValueOrPair) {
    const get_row_t& row = GetParam();
    const auto get = [&row](PrintableDnGetAttr mode, const char* expected) {
        std::string out = before;
        EXPECT_EQ(printable_dn_get_attr(row.line, row.type, out, mode), expected != nullptr);
        EXPECT_EQ(out, before + (expected == nullptr ? "" : expected));
    };
    get(DN_GET_ATTR_VALUE, row.value);
    get(DN_GET_ATTR_PAIR, row.pair);
    get(static_cast<PrintableDnGetAttr>(7), row.pair);
    get(static_cast<PrintableDnGetAttr>(0xFFFFFFFF), row.pair);
}

const get_row_t lines_rows[] = {
    {"First", "CN=a,O=b", "CN", "a", "CN=a"},
    {"Second", "CN=a,O=b", "O", "b", "O=b"},
    {"Member", "CN=a+O=b", "O", "b", "O=b"},
    {"TheFirstOfTwo", "O=a,O=b", "O", "a", "O=a"},
    {"AsWritten", " CN \t= \"a,\\\"b\" , O=\\2C", "CN", " \"a,\\\"b\" ", "CN \t= \"a,\\\"b\" "},
    {"EscapesAsWritten", "CN=a,O=\\2C\\+", "O", "\\2C\\+", "O=\\2C\\+"},
    {"EmptyValue", "CN=,O=b", "CN", "", "CN="},
    {"DottedType", "2.5.4.3=a", "2.5.4.3", "a", "2.5.4.3=a"},
    {"DottedTextIsNotResolved", "2.5.4.3=a", "CN", nullptr, nullptr},
    {"Case", "CN=a,O=b", "cn", nullptr, nullptr},
    {"ShorterType", "CN=a", "C", nullptr, nullptr},
    {"LongerType", "C=a", "CN", nullptr, nullptr},
    {"EmptyType", "CN=a", "", nullptr, nullptr},
    {"EmptyLine", "", "CN", nullptr, nullptr},
    {"FaultBehindTheAttribute", "CN=a,O", "CN", nullptr, nullptr},
    {"FaultyValueIsNotLookedAt", "CN=a;b", "CN", "a;b", "CN=a;b"},
};
INSTANTIATE_TEST_SUITE_P(Lines, DnGetAttr, testing::ValuesIn(lines_rows),
                         [](const auto& row) { return row.param.name; });

TEST(DnGetAttr, MayAppendToTheLineItReads) {
    std::string line = "CN=a,O=b";
    ASSERT_TRUE(printable_dn_get_attr(line.c_str(), "O", line, DN_GET_ATTR_PAIR));
    EXPECT_EQ(line, "CN=a,O=bO=b");
}

TEST(DnGetAttr, LeavesTheOutputWhenAllocationFails) {
    const std::string line = "A=1,B=2,C=3,D=4,E=5,F=6,G=7,H=8,I=9,J=10,K=11,CN=" + std::string(200, 'a');
    const std::size_t num_failures = for_each_failing_allocation(
        [&line] {
            std::string out = "before";
            try {
                printable_dn_get_attr(line.c_str(), "CN", out, DN_GET_ATTR_VALUE);
            } catch (...) {
                EXPECT_EQ(out, "before");
                throw;
            }
            EXPECT_EQ(out.size(), 206u);
        },
        [] {});
    EXPECT_GE(num_failures, 2u);
}

struct before_row_t {
    const char* name;
    const char* line;
    bool expected;
};

class DnCBeforeCN : public testing::TestWithParam<before_row_t> {};

TEST_P(DnCBeforeCN, Answers) {
    EXPECT_EQ(printable_dn_C_before_CN(GetParam().line), GetParam().expected);
}

const before_row_t dn_c_before_c_n_lines_rows[] = {
    {"Before", "C=RU,CN=a", true},
    {"Behind", "CN=a,C=RU", false},
    {"Neither", "O=x", true},
    {"OnlyCN", "CN=a", true},
    {"OnlyC", "C=RU", true},
    {"Between", "CN=a,C=RU,CN=b", false},
    {"TheFirstCCounts", "C=RU,CN=a,C=DE", true},
    {"InOneGroup", "CN=a+C=RU", false},
    {"Case", "cn=a,C=RU", true},
    {"CaseOfC", "CN=a,c=RU", true},
    {"LongerType", "CNX=a,C=RU", true},
    {"DottedType", "2.5.4.3=a,C=RU", true},
    {"Empty", "", true},
    {"Fault", "C=RU,CN", false},
};
INSTANTIATE_TEST_SUITE_P(Lines, DnCBeforeCN, testing::ValuesIn(dn_c_before_c_n_lines_rows),
                         [](const auto& row) { return row.param.name; });

TEST(DnCBeforeCN, LeaksNothingWhenAllocationFails) {
    EXPECT_GE(for_each_failing_allocation([] { printable_dn_C_before_CN("C=RU,CN=a"); }, [] {}), 1u);
}

} // namespace
