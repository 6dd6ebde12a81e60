#include "der/element_reader.h"

#include "tests/support/guarded.h"
#include "tests/support/hex.h"

#include <gtest/gtest.h>

using namespace pkider;
using namespace pkider_test;

namespace {

constexpr uint64_t unwritten = 0x5A5A5A5A5A5A5A5A;
constexpr uint32_t unwritten32 = 0x5A5A5A5A;
constexpr auto any = asn_tag_t::ANY;
constexpr auto sequence = asn_tag_t::SEQUENCE;
constexpr auto octet_string = asn_tag_t::OCTET_STRING;

asn_tag_t::Type tag(uint32_t value) {
    return static_cast<asn_tag_t::Type>(value);
}

struct read_row_t {
    const char* name;
    asn_tag_t::Type expected;
    const char* der;
    int content_at;   // -1: refused
    uint64_t out_len; // `unwritten`: unchanged
};

class ReadTag : public testing::TestWithParam<read_row_t> {};

TEST_P(ReadTag, BothWidthsGiveContentsAndLength) {
    const read_row_t& row = GetParam();
    for_guarded(from_hex(row.der), [&](const uint8_t* der, std::size_t size) {
        const uint8_t* const expected = row.content_at < 0 ? nullptr : der + row.content_at;

        uint64_t len = unwritten;
        EXPECT_EQ(asn1_read_tag_(row.expected, der, size, &len), expected);
        EXPECT_EQ(len, row.out_len);

        uint32_t len32 = unwritten32;
        EXPECT_EQ(asn1_read_tag32(row.expected, der, static_cast<uint32_t>(size), &len32), expected);
        EXPECT_EQ(len32, row.out_len == unwritten ? 0 : row.out_len);
    });
}

const read_row_t elements_rows[] = {
    // Fewer than two bytes
    {"Empty", any, "", -1, unwritten},
    {"OneByte", any, "30", -1, unwritten},
    {"OneByteOfTheTag", sequence, "30", -1, unwritten},
    // The identifier
    {"AnyTakesTag00", any, "00 00", 2, 0},
    {"AnyTakesTag1F", any, "1F 01 AA", 2, 1},
    {"OtherTag", sequence, "31 00", -1, unwritten},
    {"OnlyTheLowByteOfTheTagCounts", tag(0x130), "30 00", 2, 0},
    {"Tag0x100ComparesWith00", tag(0x100), "05 00", -1, unwritten},
    {"Tag0x100Takes00", tag(0x100), "00 00", 2, 0},
    // Short form
    {"EmptyContents", any, "05 00", 2, 0},
    {"ShortForm", octet_string, "04 02 AA BB", 2, 2},
    {"BytesBehindAreIgnored", octet_string, "04 01 AA BB CC", 2, 1},
    {"ContentsCutByOne", octet_string, "04 05 01 02 03 04", -1, 5},
    // Long form
    {"Indefinite", any, "30 80 05 00 00 00", -1, unwritten},
    {"IndefiniteOfTheTag", sequence, "30 80 00 00", -1, unwritten},
    {"RequiredNonMinimalLength", octet_string, "04 81 05 01 02 03 04 05", 3, 5},
    {"RequiredNonMinimalTwoOctets", octet_string, "04 82 00 05 01 02 03 04 05", 4, 5},
    // The header ends the input, or nearly so
    {"OneLengthOctetAtTheEnd", any, "05 81 00", 3, 0},
    {"TwoLengthOctetsAtTheEnd", any, "05 82 00 00", 4, 0},
    {"ThreeLengthOctetsAtTheEnd", any, "05 83 00 00 00", 5, 0},
    {"OneLengthOctetAndOneByte", octet_string, "04 81 01 AA", 3, 1},
    {"OneLengthOctetAndTwoBytes", octet_string, "04 81 02 AA BB", 3, 2},
    {"TwoLengthOctetsAndOneByte", octet_string, "04 82 00 01 AA", 4, 1},
    {"TwoLengthOctetsCut", octet_string, "04 82 01 02 AA", -1, 0x102},
    {"ThreeLengthOctetsCut", octet_string, "04 83 01 02 03", -1, 0x10203},
    {"FourLengthOctets", sequence, "30 84 00 00 00 01 AA", 6, 1},
    {"FourLengthOctetsCut", sequence, "30 84 00 00 00 01", -1, 1},
    {"FiveLengthOctets", any, "30 85 00 00 00 00 01 AA", -1, unwritten},
    {"ReservedFirstOctetFF", any, "30 FF 00 00 00 00 00", -1, unwritten},
    {"LengthOctetsPastTheEnd", sequence, "30 82 01", -1, unwritten},
    {"NoLengthOctet", sequence, "30 81", -1, unwritten},
    {"LargestLength", sequence, "30 84 FF FF FF FF", -1, 0xFFFFFFFF},
    {"LengthOf2To31", sequence, "30 84 80 00 00 00", -1, 0x80000000},
};
INSTANTIATE_TEST_SUITE_P(Elements, ReadTag, testing::ValuesIn(elements_rows),
                         [](const auto& row) { return row.param.name; });

TEST(ReadTag, EveryCutOfAnElementIsRefused) {
    for_every_prefix("30 81 06 02 01 11 02 01 22"_hex, [](const uint8_t* der, std::size_t size) {
        uint64_t len = 0;
        EXPECT_EQ(asn1_read_tag_(sequence, der, size, &len), nullptr) << size << " bytes";
    });
}

TEST(ReadTag, ComparesEveryTagWithEveryIdentifier) {
    for (uint32_t expected = 0; expected <= 0xFF; ++expected) {
        for (uint32_t identifier = 0; identifier <= 0xFF; ++identifier) {
            const uint8_t der[] = {static_cast<uint8_t>(identifier), 0x00};
            uint64_t len = unwritten;
            const bool matches = expected == 0 || expected == identifier;
            ASSERT_EQ(asn1_read_tag_(tag(expected), der, 2, &len), matches ? der + 2 : nullptr);
            ASSERT_EQ(len, matches ? 0 : unwritten) << expected << ' ' << identifier;
        }
    }
}

// The contents are not read, so that a caller's bound may be any number.
TEST(ReadTag, NoSumWrapsAtTheLargestSizes) {
    const bytes_t der = "04 84 FF FF FF FF"_hex;
    uint64_t len = unwritten;
    EXPECT_EQ(asn1_read_tag_(octet_string, der.data(), UINT64_MAX, &len), der.data() + 6);
    EXPECT_EQ(len, 0xFFFFFFFFu);
    EXPECT_EQ(asn1_read_tag_(octet_string, der.data(), 0x100000005, &len), der.data() + 6);
    EXPECT_EQ(asn1_read_tag_(octet_string, der.data(), 0x100000004, &len), nullptr);

    uint32_t len32 = unwritten32;
    EXPECT_EQ(asn1_read_tag32(octet_string, der.data(), UINT32_MAX, &len32), nullptr);
    EXPECT_EQ(len32, 0xFFFFFFFFu);
    const bytes_t largest_that_fits = "04 84 FF FF FF F9"_hex;
    EXPECT_EQ(asn1_read_tag32(octet_string, largest_that_fits.data(), UINT32_MAX, &len32),
              largest_that_fits.data() + 6);
}

TEST(ReadTag, TakesNullForNoBytes) {
    uint64_t len = unwritten;
    EXPECT_EQ(asn1_read_tag_(any, nullptr, 0, &len), nullptr);
    EXPECT_EQ(len, unwritten);
}

TEST(ReadTag, FindsTheContentsForEveryLengthUpTo70000) {
    bytes_t der(70'005);
    for (uint64_t length = 0; length <= 70'000; ++length) {
        der[0] = 0x04;
        der[1] = 0x83;
        der[2] = static_cast<uint8_t>(length >> 16);
        der[3] = static_cast<uint8_t>(length >> 8);
        der[4] = static_cast<uint8_t>(length);
        uint64_t len = unwritten;
        const uint8_t* const content = asn1_read_tag_(octet_string, der.data(), length + 5, &len);
        ASSERT_EQ(content, der.data() + 5) << length;
        ASSERT_EQ(len, length);
        ASSERT_EQ(asn1_read_tag_(octet_string, der.data(), length + 4, &len), nullptr) << length;
    }
}

TEST(AsnNextElement, WalksTheChildrenToTheEnd) {
    const bytes_t der = "02 01 11 04 81 02 AA BB 05 00"_hex;
    asn_element_t parent = asn_contents(der.data(), der.size());
    asn_element_t child;

    ASSERT_TRUE(asn_next_element(asn_tag_t::INTEGER, parent, child));
    EXPECT_EQ(child.start, der.data());
    EXPECT_EQ(child.content, der.data() + 2);
    EXPECT_EQ(child.length, 1u);
    EXPECT_EQ(parent.content, der.data() + 3);
    EXPECT_EQ(parent.length, 7u);

    ASSERT_TRUE(asn_next_element(any, parent, child));
    EXPECT_EQ(child.content, der.data() + 6);
    EXPECT_EQ(child.length, 2u);

    ASSERT_TRUE(asn_next_element(any, parent, child));
    EXPECT_EQ(child.length, 0u);
    EXPECT_EQ(parent.content, der.data() + der.size());
    EXPECT_EQ(parent.length, 0u);
}

TEST(AsnNextElement, LeavesTheParentWhenNothingIsLeft) {
    const bytes_t der = "05 00"_hex;
    asn_element_t parent = asn_contents(der.data() + 2, 0);
    asn_element_t child = asn_contents(der.data(), 77);
    EXPECT_FALSE(asn_next_element(any, parent, child));
    EXPECT_EQ(parent.content, der.data() + 2);
    EXPECT_EQ(parent.length, 0u);
    EXPECT_EQ(child.start, der.data() + 2);
    EXPECT_EQ(child.content, nullptr);
    EXPECT_EQ(child.length, 77u);
}

TEST(AsnNextElement, LeavesTheParentAtAnotherTag) {
    const bytes_t der = "05 00"_hex;
    asn_element_t parent = asn_contents(der.data(), der.size());
    asn_element_t child = asn_contents(der.data(), 77);
    EXPECT_FALSE(asn_next_element(sequence, parent, child));
    EXPECT_EQ(parent.content, der.data());
    EXPECT_EQ(parent.length, 2u);
    EXPECT_EQ(child.start, der.data());
    EXPECT_EQ(child.content, nullptr);
    EXPECT_EQ(child.length, 77u);
}

TEST(AsnNextElement, GivesTheDecodedLengthOfAChildThatRunsPastTheParent) {
    const bytes_t der = "04 05 01 02"_hex;
    asn_element_t parent = asn_contents(der.data(), der.size());
    asn_element_t child;
    EXPECT_FALSE(asn_next_element(octet_string, parent, child));
    EXPECT_EQ(parent.length, der.size());
    EXPECT_EQ(child.content, nullptr);
    EXPECT_EQ(child.length, 5u);
}

TEST(AsnNextContextElement, AsksForTheConstructedContextTag) {
    for (uint8_t number = 0; number < 0x1F; ++number) {
        const bytes_t der = {static_cast<uint8_t>(0xA0 + number), 0x00};
        asn_element_t parent = asn_contents(der.data(), der.size());
        asn_element_t child;
        EXPECT_TRUE(asn_next_context_element(number, parent, child)) << int{number};
        EXPECT_EQ(child.content, der.data() + 2);
        EXPECT_EQ(parent.length, 0u);

        parent = {nullptr, der.data(), der.size()};
        child = {nullptr, der.data(), 77};
        EXPECT_FALSE(asn_next_context_element(static_cast<uint8_t>(number + 1), parent, child)) << int{number};
        EXPECT_EQ(parent.content, der.data());
        EXPECT_EQ(parent.length, der.size());
        EXPECT_EQ(child.start, der.data());
        EXPECT_EQ(child.content, nullptr);
        EXPECT_EQ(child.length, 77u);
    }
}

TEST(AsnNextContextElement, TakesTheLowFiveBitsOfTheNumber) {
    const bytes_t der = "BF 00"_hex;
    for (const uint8_t number : "1F 3F FF"_hex) {
        asn_element_t parent = asn_contents(der.data(), der.size());
        asn_element_t child;
        EXPECT_TRUE(asn_next_context_element(number, parent, child)) << int{number};
    }
}

struct uint32_row_t {
    const char* name;
    const char* content;
    bool accepted;
    uint32_t out;
};

class AsnReadUint32 : public testing::TestWithParam<uint32_row_t> {};

TEST_P(AsnReadUint32, ReadsContents) {
    const uint32_row_t& row = GetParam();
    for_guarded(from_hex(row.content), [&](const uint8_t* content, std::size_t size) {
        uint32_t out = unwritten32;
        EXPECT_EQ(asn_read_uint32(content, size, &out), row.accepted);
        EXPECT_EQ(out, row.out);
    });
}

const uint32_row_t contents_rows[] = {
    {"EmptyLeavesTheOutput", "", true, unwritten32},
    {"Zero", "00", true, 0},
    {"OneByte", "7F", true, 127},
    {"Negative", "80", false, unwritten32},
    {"NegativeFF", "FF FF", false, unwritten32},
    {"LeadingZeros", "00 00 00 00 00 FF", true, 255},
    {"Largest", "00 FF FF FF FF", true, 0xFFFFFFFF},
    {"SixSignificantBytes", "01 00 00 00 00 00", false, unwritten32},
    {"ZerosThenSix", "00 01 00 00 00 00 00", false, unwritten32},
};
INSTANTIATE_TEST_SUITE_P(Contents, AsnReadUint32, testing::ValuesIn(contents_rows),
                         [](const auto& row) { return row.param.name; });

TEST(AsnReadUint32, RequiredFiveSignificantBytesAreTruncated) {
    const bytes_t zero = "01 00 00 00 00"_hex;
    uint32_t out = unwritten32;
    EXPECT_TRUE(asn_read_uint32(zero.data(), zero.size(), &out));
    EXPECT_EQ(out, 0u);

    const bytes_t low = "7F 12 34 56 78"_hex;
    EXPECT_TRUE(asn_read_uint32(low.data(), low.size(), &out));
    EXPECT_EQ(out, 0x12345678u);

    const bytes_t with_sign_byte = "00 FF FF FF FF 05"_hex;
    EXPECT_TRUE(asn_read_uint32(with_sign_byte.data(), with_sign_byte.size(), &out));
    EXPECT_EQ(out, 0xFFFFFF05u);
}

} // namespace
