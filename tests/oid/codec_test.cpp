#include <pkider/oid.h>

#include "tests/support/alloc_failure.h"
#include "tests/support/guarded.h"
#include "tests/support/hex.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace pkider_test;

namespace {

bytes_t contents_of(std::string_view text) {
    bytes_t result;
    for_guarded(to_bytes(text), [&](const uint8_t* data, std::size_t size) {
        uint8_t out[512];
        const auto* const begin = reinterpret_cast<const char*>(data);
        const uint64_t count = oid_str_to_asn_(begin, begin + size, out);
        ASSERT_LE(count, 506u);
        result.assign(out, out + count);
    });
    return result;
}

std::string repeated(std::string_view text, int times) {
    std::string out;
    for (int i = 0; i < times; ++i) out += text;
    return out;
}

struct text_row_t {
    const char* name;
    const char* text;
    const char* contents; // empty: refused
};

class OidStrToAsn : public testing::TestWithParam<text_row_t> {};

TEST_P(OidStrToAsn, GivesContents) {
    EXPECT_EQ(contents_of(GetParam().text), from_hex(GetParam().contents));
}

const text_row_t accepted_rows[] = {
    {"CommonName", "2.5.4.3", "55 04 03"},
    {"RsaEncryption", "1.2.840.113549.1.1.1", "2A 86 48 86 F7 0D 01 01 01"},
    {"Smallest", "0.0", "00"},
    {"LastOfFirstArc0", "0.39", "27"},
    {"FirstOfFirstArc1", "1.0", "28"},
    {"LastOfFirstArc1", "1.39", "4F"},
    {"FirstOfFirstArc2", "2.0", "50"},
    {"SecondArcOfTwoBytes", "2.999", "88 37"},
    {"LeadingZeros", "02.05.004.3", "55 04 03"},
    {"ArcsOfZerosOnly", "000.00.0000", "00 00"},
    {"LongRunOfZeros", "2.5.00000000000000000000000004.3", "55 04 03"},
    {"LastOfOneByte", "1.2.127", "2A 7F"},
    {"FirstOfTwoBytes", "1.2.128", "2A 81 00"},
    {"LastOfTwoBytes", "1.2.16383", "2A FF 7F"},
    {"FirstOfThreeBytes", "1.2.16384", "2A 81 80 00"},
    {"LastOfThreeBytes", "1.2.2097151", "2A FF FF 7F"},
    {"FirstOfFourBytes", "1.2.2097152", "2A 81 80 80 00"},
    {"LastOfFourBytes", "1.2.268435455", "2A FF FF FF 7F"},
    {"FirstOfFiveBytes", "1.2.268435456", "2A 81 80 80 80 00"},
    {"LargestArc", "1.2.4294967295", "2A 8F FF FF FF 7F"},
    {"LargestSecondArcThatDoesNotWrap", "2.4294967215", "8F FF FF FF 7F"},
};
INSTANTIATE_TEST_SUITE_P(Accepted, OidStrToAsn, testing::ValuesIn(accepted_rows),
                         [](const auto& row) { return row.param.name; });

const text_row_t refused_rows[] = {
    {"Empty", "", ""},
    {"SingleArc0", "0", ""},
    {"SingleArc1", "1", ""},
    {"SingleArc2", "2", ""},
    {"SingleArcWithZeros", "007", ""},
    {"SingleArcWithZerosInRange", "001", ""},
    {"FirstArc3", "3.1", ""},
    {"FirstArcAbove32Bits", "4294967296.1", ""},
    {"FirstArcAbove64Bits", "18446744073709551617.1", ""},
    {"TrailingDot", "2.", ""},
    {"TrailingDotOfOne", "1.", ""},
    {"TrailingDotBehindTwoArcs", "1.2.", ""},
    {"LeadingDot", ".1", ""},
    {"LoneDot", ".", ""},
    {"DoubledDot", "1..2", ""},
    {"LeadingBlank", " 1.2", ""},
    {"TrailingBlank", "1.2 ", ""},
    {"BlankBehindDot", "1. 2", ""},
    {"BlankBeforeDot", "1 .2", ""},
    {"Plus", "1.+2", ""},
    {"Minus", "-1.2", ""},
    {"MinusArc", "1.-2", ""},
    {"Letter", "1.2a", ""},
    {"LetterForAnArc", "1.2.a", ""},
    {"LetterForTheSecondArc", "1.a", ""},
    {"LetterFirst", "a1.2", ""},
    {"LetterInFirstArc", "1a.2", ""},
    {"Comma", "1,2", ""},
    {"HighByte", "1.2.\xC3\xA9", ""},
    {"HighByteFirst", "\xB2.1", ""},
    {"SecondArcAbove32Bits", "1.4294967296", ""},
    {"ThirdArcAbove32Bits", "1.2.4294967296", ""},
    {"ArcAbove64Bits", "1.2.18446744073709551617", ""},
    {"ColonBehindNine", "1.2:", ""},
    {"SlashBeforeZero", "1./2", ""},
};
INSTANTIATE_TEST_SUITE_P(Refused, OidStrToAsn, testing::ValuesIn(refused_rows),
                         [](const auto& row) { return row.param.name; });

TEST(OidStrToAsn, RefusesAnEmbeddedNul) {
    EXPECT_EQ(contents_of(std::string_view("1.2\0", 4)), ""_hex);
    EXPECT_EQ(contents_of(std::string_view("1.\0"
                                           "2",
                                           4)),
              ""_hex);
}

TEST(OidStrToAsn, LooksAtNoByteBehindTheRange) {
    const char text[] = "2.5.4.35";
    uint8_t out[512];
    ASSERT_EQ(oid_str_to_asn_(text, text + 7, out), 3u);
    EXPECT_EQ(out[2], 3);
}

TEST(OidStrToAsn, TakesAnEmptyRangeAtNull) {
    uint8_t out[512];
    EXPECT_EQ(oid_str_to_asn_(nullptr, nullptr, out), 0u);
}

TEST(OidStrToAsn, Takes506BytesAndNoMore) {
    EXPECT_EQ(contents_of("2.5" + repeated(".1", 505)).size(), 506u);
    EXPECT_EQ(contents_of("2.5" + repeated(".1", 506)).size(), 0u);
    // The limit may fall inside a subidentifier.
    EXPECT_EQ(contents_of("2.5" + repeated(".4294967295", 101)).size(), 506u);
    EXPECT_EQ(contents_of("2.5.1" + repeated(".4294967295", 101)).size(), 0u);
    EXPECT_EQ(contents_of("2.5" + repeated(".4294967295", 100) + ".128.128").size(), 505u);
    EXPECT_EQ(contents_of("2.5" + repeated(".4294967295", 100) + ".128.128.128").size(), 0u);
}

TEST(OidStrToAsn, RequiredLastSixBytesAreNeverWritten) {
    uint8_t out[512];
    const std::string full = "2.5" + repeated(".1", 505);
    const std::string too_long = "2.5" + repeated(".1", 600);
    for (const std::string& text : {full, too_long}) {
        std::fill(std::begin(out), std::end(out), 0x5A);
        oid_str_to_asn_(text.data(), text.data() + text.size(), out);
        EXPECT_EQ(bytes_t(out + 505, out + 512), "01 5A 5A 5A 5A 5A 5A"_hex);
    }
}

TEST(OidStrToAsn, RequiredSecondArcIsNotLimitedTo39) {
    EXPECT_EQ(contents_of("1.50"), "5A"_hex);
    EXPECT_EQ(contents_of("2.10"), "5A"_hex);
    EXPECT_EQ(contents_of("0.40"), "28"_hex);
    EXPECT_EQ(contents_of("0.999"), "87 67"_hex);
}

TEST(OidStrToAsn, RequiredSecondArcWraps) {
    EXPECT_EQ(contents_of("2.4294967295"), "4F"_hex); // 80 + 2^32 - 1 = 79
    EXPECT_EQ(contents_of("2.4294967216"), "00"_hex);
    EXPECT_EQ(contents_of("1.4294967295"), "27"_hex);
    EXPECT_EQ(contents_of("0.4294967295"), "8F FF FF FF 7F"_hex);
}

struct print_row_t {
    const char* name;
    const char* contents;
    bool accepted;
    const char* text; // appended, also when refused
};

class OidAsnToStr : public testing::TestWithParam<print_row_t> {};

TEST_P(OidAsnToStr, AppendsText) {
    const print_row_t& row = GetParam();
    for_guarded(from_hex(row.contents), [&](const uint8_t* data, std::size_t size) {
        std::string out = "before:";
        EXPECT_EQ(oid_asn_to_str_(data, data + size, out), row.accepted);
        EXPECT_EQ(out, std::string("before:") + row.text);
    });
}

const print_row_t oid_asn_to_str_accepted_rows[] = {
    {"CommonName", "55 04 03", true, "2.5.4.3"},
    {"ThreeArcs", "2A 86 48", true, "1.2.840"},
    {"RsaEncryption", "2A 86 48 86 F7 0D 01 01 01", true, "1.2.840.113549.1.1.1"},
    {"Smallest", "00", true, "0.0"},
    {"LastOfFirstArc0", "27", true, "0.39"},
    {"FirstOfFirstArc1", "28", true, "1.0"},
    {"FirstOfFirstArc2", "50", true, "2.0"},
    {"LargestOfOneByte", "7F", true, "3.7"},
    {"LargestArc", "2A 8F FF FF FF 7F", true, "1.2.4294967295"},
    {"ZeroArcs", "2A 00 00", true, "1.2.0.0"},
    {"NonMinimalFirst", "80 01", true, "0.1"},
    {"NonMinimalLater", "2A 80 80 03", true, "1.2.3"},
};
INSTANTIATE_TEST_SUITE_P(Accepted, OidAsnToStr, testing::ValuesIn(oid_asn_to_str_accepted_rows),
                         [](const auto& row) { return row.param.name; });

const print_row_t oid_asn_to_str_refused_rows[] = {
    {"Empty", "", false, ""},
    {"FirstCut", "86", false, ""},
    {"FirstCutBehindMany", "86 86 86 86 86 86", false, ""},
};
INSTANTIATE_TEST_SUITE_P(Refused, OidAsnToStr, testing::ValuesIn(oid_asn_to_str_refused_rows),
                         [](const auto& row) { return row.param.name; });

TEST(OidAsnToStr, TakesAnEmptyRangeAtNull) {
    std::string out = "before";
    EXPECT_FALSE(oid_asn_to_str_(nullptr, nullptr, out));
    EXPECT_EQ(out, "before");
}

std::string text_of(const bytes_t& contents) {
    std::string out;
    EXPECT_TRUE(oid_asn_to_str_(contents.data(), contents.data() + contents.size(), out));
    return out;
}

TEST(OidAsnToStr, RequiredFirstArcIsNeverClamped) {
    EXPECT_EQ(text_of("88 37"_hex), "26.39"); // 2.999, shown as 1079 / 40 and the rest
    EXPECT_EQ(text_of("78"_hex), "3.0");
    EXPECT_EQ(text_of("8F FF FF FF 7F"_hex), "107374182.15");
}

TEST(OidAsnToStr, RequiredWideSubidentifiersWrap) {
    EXPECT_EQ(text_of("90 80 80 80 00"_hex), "0.0");
    EXPECT_EQ(text_of("2A 90 80 80 80 05"_hex), "1.2.5");
    EXPECT_EQ(text_of("2A FF FF FF FF FF FF FF FF 7F"_hex), "1.2.4294967295");
}

TEST(OidAsnToStr, RequiredTextBeforeTheFaultStays) {
    std::string out = "x";
    const bytes_t cut = "2A 86"_hex;
    EXPECT_FALSE(oid_asn_to_str_(cut.data(), cut.data() + cut.size(), out));
    EXPECT_EQ(out, "x1.2.");

    out.clear();
    const bytes_t cut_later = "2A 86 48 86 F7"_hex;
    EXPECT_FALSE(oid_asn_to_str_(cut_later.data(), cut_later.data() + cut_later.size(), out));
    EXPECT_EQ(out, "1.2.840.");
}

TEST(OidAsnToStr, PrintsContentsOfAnyLength) {
    bytes_t contents = "2A"_hex;
    std::string expected = "1.2";
    for (int i = 0; i < 1000; ++i) {
        contents.insert(contents.end(), {0x8F, 0xFF, 0xFF, 0xFF, 0x7F, 0x05});
        expected += ".4294967295.5";
    }
    EXPECT_EQ(text_of(contents), expected);

    contents.push_back(0x80);
    std::string out;
    EXPECT_FALSE(oid_asn_to_str_(contents.data(), contents.data() + contents.size(), out));
    EXPECT_EQ(out, expected + ".");
}

TEST(OidAsnToStr, AFailedAllocationPassesThrough) {
    bytes_t contents(300, 0x7F);
    const std::size_t failures = for_each_failing_allocation(
        [&] {
            std::string out;
            oid_asn_to_str_(contents.data(), contents.data() + contents.size(), out);
        },
        [] {});
    EXPECT_GT(failures, 0u);
}

// Each subidentifier is a number of its own; one arc at a time is every case there is.
TEST(OidCodec, EverySecondArcBelow40ComesBack) {
    for (int first = 0; first < 2; ++first) {
        for (int second = 0; second < 40; ++second) {
            const std::string text = std::to_string(first) + "." + std::to_string(second);
            EXPECT_EQ(text_of(contents_of(text)), text);
        }
    }
}

TEST(OidCodec, EveryArcUpTo70000ComesBack) {
    for (int arc = 0; arc <= 70'000; ++arc) {
        const std::string text = "1.2." + std::to_string(arc);
        uint8_t out[512];
        const uint64_t count = oid_str_to_asn_(text.data(), text.data() + text.size(), out);
        std::string back;
        ASSERT_TRUE(oid_asn_to_str_(out, out + count, back));
        ASSERT_EQ(back, text);
    }
}

} // namespace
