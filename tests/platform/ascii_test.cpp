#include "platform/ascii.h"

#include <gtest/gtest.h>

#include <string>

using namespace pkider;

namespace {

// The rule in words: A to Z for a to z, every other byte for itself.
uint8_t upper_by_the_rule(int byte) {
    return static_cast<uint8_t>(byte >= 0x61 && byte <= 0x7A ? byte - 0x20 : byte);
}

TEST(Ascii, KnowsTheTenDigitsAmongAllBytes) {
    for (int byte = 0; byte < 256; ++byte) {
        const bool digit = byte >= 0x30 && byte <= 0x39;
        EXPECT_EQ(is_ascii_digit(static_cast<char>(byte)), digit) << byte;
    }
}

TEST(Ascii, FoldsTheSmallLettersAndNoOtherByte) {
    for (int byte = 0; byte < 256; ++byte) {
        EXPECT_EQ(static_cast<uint8_t>(ascii_upper(static_cast<char>(byte))), upper_by_the_rule(byte)) << byte;
    }
}

TEST(Ascii, ComparesEveryPairOfBytesByTheirFoldedValue) {
    for (int a = 0; a < 256; ++a) {
        for (int b = 0; b < 256; ++b) {
            const char left = static_cast<char>(a), right = static_cast<char>(b);
            const int order = ascii_compare_ignoring_case(&left, &right, 1);
            const int expected = upper_by_the_rule(a) - upper_by_the_rule(b);
            ASSERT_EQ(order < 0, expected < 0) << a << ' ' << b;
            ASSERT_EQ(order > 0, expected > 0) << a << ' ' << b;
        }
    }
}

TEST(Ascii, ComparesExactlyTheBytesCountedNulIncluded) {
    EXPECT_EQ(ascii_compare_ignoring_case("abX", "ABy", 2), 0);
    EXPECT_LT(ascii_compare_ignoring_case("abX", "ABy", 3), 0);
    EXPECT_EQ(ascii_compare_ignoring_case("a\0b", "A\0B", 3), 0); // a NUL ends nothing
    EXPECT_GT(ascii_compare_ignoring_case("a\0c", "A\0b", 3), 0);
    EXPECT_LT(ascii_compare_ignoring_case("Ab", "aC", 2), 0);
}

TEST(Ascii, NothingEqualsNothing) {
    EXPECT_EQ(ascii_compare_ignoring_case(nullptr, nullptr, 0), 0);
}

} // namespace
