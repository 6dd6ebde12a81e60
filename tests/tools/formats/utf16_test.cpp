#include "tests/support/hex.h"
#include "tools/pkider/formats/utf16.h"

#include <gtest/gtest.h>

namespace {

using namespace pkider_test::literals;
using pkider_test::bytes_t;
using pkider_test::to_bytes;
using tool::append_utf16be;
using tool::utf16be_to_utf8;

struct text_row_t {
    const char* name;
    const char* utf8;
    bytes_t utf16;
};

class Utf16 : public testing::TestWithParam<text_row_t> {};

TEST_P(Utf16, ConvertsBothWays) {
    std::string out = "before";
    EXPECT_TRUE(append_utf16be(GetParam().utf8, out));
    EXPECT_EQ(to_bytes(out), to_bytes("before" + GetParam().utf16.str()));
    EXPECT_EQ(utf16be_to_utf8(GetParam().utf16), GetParam().utf8);
}

const text_row_t texts_rows[] = {
    {"Nothing", "", {}},
    {"Latin", "aZ", "00 61 00 5A"_hex},
    {"Cyrillic", "Имя", "04 18 04 3C 04 4F"_hex},
    {"EndsOfTwoBytes", "\xC2\x80\xDF\xBF", "00 80 07 FF"_hex},
    {"EndsOfThreeBytes", "\xE0\xA0\x80\xEF\xBF\xBF", "08 00 FF FF"_hex},
    {"AroundSurrogates", "\xED\x9F\xBF\xEE\x80\x80", "D7 FF E0 00"_hex},
    {"EndsOfFourBytes", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", "D8 00 DC 00 DB FF DF FF"_hex},
};
INSTANTIATE_TEST_SUITE_P(Texts, Utf16, testing::ValuesIn(texts_rows), [](const auto& row) { return row.param.name; });

struct refused_row_t {
    const char* name;
    const char* utf8;
};

class Utf16Refusal : public testing::TestWithParam<refused_row_t> {};

TEST_P(Utf16Refusal, RefusesMalformedUtf8) {
    std::string out;
    EXPECT_FALSE(append_utf16be(GetParam().utf8, out));
}

const refused_row_t utf16_refusal_texts_rows[] = {
    {"ContinuationAlone", "a\x80"},
    {"CutShort", "a\xD0"},
    {"NoContinuation", "\xD0z"},
    {"OverlongTwoBytes", "\xC1\xBF"},
    {"OverlongThreeBytes", "\xE0\x9F\xBF"},
    {"OverlongFourBytes", "\xF0\x8F\xBF\xBF"},
    {"Surrogate", "\xED\xA0\x80"},
    {"TooLarge", "\xF4\x90\x80\x80"},
    {"NoSuchFirstByte", "\xFF"},
};
INSTANTIATE_TEST_SUITE_P(Texts, Utf16Refusal, testing::ValuesIn(utf16_refusal_texts_rows),
                         [](const auto& row) { return row.param.name; });

TEST(Utf16Reading, ShowsWhatIsNoCharacter) {
    EXPECT_EQ(utf16be_to_utf8("D8 00 00 61"_hex), "\xEF\xBF\xBD"
                                                  "a");
    EXPECT_EQ(utf16be_to_utf8("DC 00"_hex), "\xEF\xBF\xBD");
    EXPECT_EQ(utf16be_to_utf8("D8 00"_hex), "\xEF\xBF\xBD");
    EXPECT_EQ(utf16be_to_utf8("00 61 00"_hex), "a\xEF\xBF\xBD");
}

} // namespace
