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
        if (expected.empty()) return; // a part may stand in `out`
        EXPECT_EQ(bytes_t(out.begin(), out.end() - 3), expected);
        EXPECT_EQ(bytes_t(out.end() - 3, out.end()), "5A 5A 5A"_hex);
    });
}

INSTANTIATE_TEST_SUITE_P(Bmp, Kodex,
                         testing::Values(convert_row_t{"Empty", bmp, "", ""}, convert_row_t{"OneByte", bmp, "41", ""},
                                         convert_row_t{"OddSize", bmp, "00 41 00", ""},
                                         convert_row_t{"Nul", bmp, "00 00", "00"},
                                         convert_row_t{"LastOfOneByte", bmp, "00 7F", "7F"},
                                         convert_row_t{"FirstOfTwoBytes", bmp, "00 80", "C2 80"},
                                         convert_row_t{"LastOfTwoBytes", bmp, "07 FF", "DF BF"},
                                         convert_row_t{"FirstOfThreeBytes", bmp, "08 00", "E0 A0 80"},
                                         convert_row_t{"Noncharacter", bmp, "FF FE", "EF BF BE"},
                                         convert_row_t{"LastOfThreeBytes", bmp, "FF FF", "EF BF BF"},
                                         convert_row_t{"LastBeforeTheSurrogates", bmp, "D7 FF", "ED 9F BF"},
                                         convert_row_t{"FirstSurrogate", bmp, "D8 00", ""},
                                         convert_row_t{"LastSurrogate", bmp, "DF FF", ""},
                                         convert_row_t{"FirstBehindTheSurrogates", bmp, "E0 00", "EE 80 80"},
                                         convert_row_t{"SurrogatePair", bmp, "D8 3D DE 00", ""},
                                         convert_row_t{"FaultBehindText", bmp, "00 41 DC 00", ""},
                                         convert_row_t{"Text", bmp, "00 41 04 16 20 AC", "41 D0 96 E2 82 AC"}),
                         [](const auto& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(Universal, Kodex,
                         testing::Values(convert_row_t{"Empty", universal, "", ""},
                                         convert_row_t{"ThreeBytes", universal, "00 00 41", ""},
                                         convert_row_t{"SixBytes", universal, "00 00 00 41 00 00", ""},
                                         convert_row_t{"Nul", universal, "00 00 00 00", "00"},
                                         convert_row_t{"OneByte", universal, "00 00 00 7F", "7F"},
                                         convert_row_t{"TwoBytes", universal, "00 00 00 E9", "C3 A9"},
                                         convert_row_t{"ThreeByteText", universal, "00 00 20 AC", "E2 82 AC"},
                                         convert_row_t{"Surrogate", universal, "00 00 D8 00", ""},
                                         convert_row_t{"LastSurrogate", universal, "00 00 DF FF", ""},
                                         convert_row_t{"LastOfThreeBytes", universal, "00 00 FF FF", "EF BF BF"},
                                         convert_row_t{"FirstOfFourBytes", universal, "00 01 00 00", "F0 90 80 80"},
                                         convert_row_t{"Face", universal, "00 01 F6 00", "F0 9F 98 80"},
                                         convert_row_t{"LargestCharacter", universal, "00 10 FF FF", "F4 8F BF BF"},
                                         convert_row_t{"AboveTheLargest", universal, "00 11 00 00", ""},
                                         convert_row_t{"HighBit", universal, "80 00 00 41", ""},
                                         convert_row_t{"Text", universal, "00 00 00 41 00 01 F6 00", "41 F0 9F 98 80"}),
                         [](const auto& row) { return row.param.name; });

TEST(Kodex, ConvertsEveryBmpUnit) {
    const kodex_converter_t converter(bmp, utf8);
    for (uint32_t code = 0; code <= 0xFFFF; ++code) {
        const uint8_t in[] = {static_cast<uint8_t>(code >> 8), static_cast<uint8_t>(code)};
        const std::string expected = code >= 0xD800 && code <= 0xDFFF ? "" : utf8_by_the_rule(code);
        char out[4];
        const uint64_t size = converter.convert_safe(in, 2, out, sizeof(out));
        ASSERT_EQ(std::string(out, size), expected) << code;
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
        ASSERT_EQ(std::string(out, size), expected) << code;
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
