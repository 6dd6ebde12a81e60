#include "platform/kodex.h"

#include "tests/support/guarded.h"
#include "tests/support/hex.h"
#include "tests/support/utf8_by_the_rule.h"

#include <gtest/gtest.h>

#include <string>

using namespace pkider;
using namespace pkider_test;

namespace {

constexpr auto bmp = kodex_codepage_t::BMP;
constexpr auto universal = kodex_codepage_t::UNIVERSAL;
constexpr auto utf8 = kodex_codepage_t::UTF8;

struct convert_row_t {
    const char* name;
    kodex_codepage_t source;
    const char* in;
    const char* out; // empty: not convertible
};

class Kodex : public testing::TestWithParam<convert_row_t> {};

TEST_P(Kodex, ConvertsToUtf8OrNotAtAll) {
    const convert_row_t& row = GetParam();
    const bytes_t expected = from_hex(row.out);
    const kodex_converter_t converter(row.source, utf8);
    for_guarded(from_hex(row.in), [&](const uint8_t* in, std::size_t size) {
        EXPECT_EQ(converter.get_outsize(in, size), expected.size());

        bytes_t out(expected.size() + 3, 0x5A);
        char* const chars = reinterpret_cast<char*>(out.data());
        EXPECT_EQ(converter.convert_safe(in, size, chars, out.size()), expected.size());
        if (expected.empty()) return; // a part may be in `out`
        EXPECT_EQ(bytes_t(out.begin(), out.end() - 3), expected);
        EXPECT_EQ(bytes_t(out.end() - 3, out.end()), "5A 5A 5A"_hex);
    });
}

const convert_row_t bmp_rows[] = {
    {"Empty", bmp, "", ""},
    {"OneByte", bmp, "41", ""},
    {"OddSize", bmp, "00 41 00", ""},
    {"Nul", bmp, "00 00", "00"},
    {"LastOfOneByte", bmp, "00 7F", "7F"},
    {"FirstOfTwoBytes", bmp, "00 80", "C2 80"},
    {"LastOfTwoBytes", bmp, "07 FF", "DF BF"},
    {"FirstOfThreeBytes", bmp, "08 00", "E0 A0 80"},
    {"Noncharacter", bmp, "FF FE", "EF BF BE"},
    {"LastOfThreeBytes", bmp, "FF FF", "EF BF BF"},
    {"LastBeforeTheSurrogates", bmp, "D7 FF", "ED 9F BF"},
    {"FirstSurrogate", bmp, "D8 00", ""},
    {"LastSurrogate", bmp, "DF FF", ""},
    {"FirstBehindTheSurrogates", bmp, "E0 00", "EE 80 80"},
    {"SurrogatePair", bmp, "D8 3D DE 00", ""},
    {"FaultBehindText", bmp, "00 41 DC 00", ""},
    {"Text", bmp, "00 41 04 16 20 AC", "41 D0 96 E2 82 AC"},
};
INSTANTIATE_TEST_SUITE_P(Bmp, Kodex, testing::ValuesIn(bmp_rows), [](const auto& row) { return row.param.name; });

const convert_row_t universal_rows[] = {
    {"Empty", universal, "", ""},
    {"ThreeBytes", universal, "00 00 41", ""},
    {"SixBytes", universal, "00 00 00 41 00 00", ""},
    {"Nul", universal, "00 00 00 00", "00"},
    {"OneByte", universal, "00 00 00 7F", "7F"},
    {"TwoBytes", universal, "00 00 00 E9", "C3 A9"},
    {"ThreeByteText", universal, "00 00 20 AC", "E2 82 AC"},
    {"Surrogate", universal, "00 00 D8 00", ""},
    {"LastSurrogate", universal, "00 00 DF FF", ""},
    {"LastOfThreeBytes", universal, "00 00 FF FF", "EF BF BF"},
    {"FirstOfFourBytes", universal, "00 01 00 00", "F0 90 80 80"},
    {"Face", universal, "00 01 F6 00", "F0 9F 98 80"},
    {"LargestCharacter", universal, "00 10 FF FF", "F4 8F BF BF"},
    {"AboveTheLargest", universal, "00 11 00 00", ""},
    {"HighBit", universal, "80 00 00 41", ""},
    {"Text", universal, "00 00 00 41 00 01 F6 00", "41 F0 9F 98 80"},
};
INSTANTIATE_TEST_SUITE_P(Universal, Kodex, testing::ValuesIn(universal_rows),
                         [](const auto& row) { return row.param.name; });

TEST(Kodex, ConvertsEveryBmpUnit) {
    const kodex_converter_t converter(bmp, utf8);
    for (uint32_t code = 0; code <= 0xFFFF; ++code) {
        const uint8_t in[] = {static_cast<uint8_t>(code >> 8), static_cast<uint8_t>(code)};
        const std::string expected = code >= 0xD800 && code <= 0xDFFF ? "" : utf8_by_the_rule(code);
        char out[4];
        const uint64_t size = converter.convert_safe(in, 2, out, sizeof(out));
        ASSERT_EQ(std::string(out, out + size), expected) << code;
        ASSERT_EQ(converter.get_outsize(in, 2), expected.size()) << code;
    }
}

TEST(Kodex, ConvertsEveryUniversalCharacterAndNothingAbove) {
    const kodex_converter_t converter(universal, utf8);
    for (uint32_t code = 0; code <= 0x110100; ++code) {
        const uint8_t in[] = {0, static_cast<uint8_t>(code >> 16), static_cast<uint8_t>(code >> 8),
                              static_cast<uint8_t>(code)};
        const bool convertible = code < 0xD800 || (code > 0xDFFF && code < 0x110000);
        const std::string expected = convertible ? utf8_by_the_rule(code) : "";
        char out[4];
        const uint64_t size = converter.convert_safe(in, 4, out, sizeof(out));
        ASSERT_EQ(std::string(out, out + size), expected) << code;
        ASSERT_EQ(converter.get_outsize(in, 4), expected.size()) << code;
    }
}

TEST(Kodex, NeverWritesPastTheRoomGiven) {
    const bytes_t in = "00 41 20 AC 00 42"_hex; // five bytes of UTF-8
    const kodex_converter_t converter(bmp, utf8);
    for (std::size_t room = 0; room < 5; ++room) {
        std::string out(room + 2, 'z');
        EXPECT_EQ(converter.convert_safe(in.data(), in.size(), out.data(), room), 0u) << room;
        EXPECT_EQ(out.substr(room), "zz") << room;
    }
    std::string out(5, 'z');
    EXPECT_EQ(converter.convert_safe(in.data(), in.size(), out.data(), 5), 5u);
    EXPECT_EQ(to_hex(out), "41 E2 82 AC 42");
}

TEST(Kodex, OtherPairsOfCodePagesConvertNothing) {
    const bytes_t in = "00 00 00 41"_hex;
    const auto other = static_cast<kodex_codepage_t>(1251);
    for (const auto& [source, target] :
         {std::pair{utf8, utf8}, {other, utf8}, {bmp, other}, {bmp, universal}, {universal, bmp}}) {
        const kodex_converter_t converter(source, target);
        char out[8] = "seeded.";
        EXPECT_EQ(converter.get_outsize(in.data(), in.size()), 0u);
        EXPECT_EQ(converter.convert_safe(in.data(), in.size(), out, sizeof(out)), 0u);
        EXPECT_STREQ(out, "seeded.");
    }
}

} // namespace
