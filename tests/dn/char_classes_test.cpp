#include "dn/char_classes.h"

#include "tests/dn/char_sets.h"

#include <gtest/gtest.h>

#include <cstring>

using namespace pkider;
using namespace pkider_test;

namespace {

bool contains(const char* set, int c) {
    return c != 0 && std::strchr(set, c) != nullptr;
}

// Every byte, each set spelt a second time.
TEST(CharClasses, EveryByteIsInItsSets) {
    for (int c = 0; c < 256; ++c) {
        int expected = 0;
        if (is_special_char(c)) expected |= CHAR_SPECIAL;
        if (c < 0x80 && !is_printable_string_char(c)) expected |= CHAR_NOT_PRINTABLE;
        if (c >= 0x80) expected |= CHAR_NOT_ASCII;
        if (c == 0 || contains(" \t=", c)) expected |= CHAR_ENDS_TYPE;
        if (c == 0 || contains("\"\\+,", c)) expected |= CHAR_STOPS_VALUE;
        if (contains(" \t", c)) expected |= CHAR_BLANK;
        EXPECT_EQ(char_class(static_cast<char>(c)), expected) << c;
    }
}

TEST(CharClasses, NineCharactersAreSpecialAnd74Printable) {
    EXPECT_EQ(special_chars.size(), 9u);
    EXPECT_EQ(printable_chars.size(), 26u + 26 + 10 + 12);
}

TEST(HexDigitValue, EveryByteHasItsValue) {
    for (int c = 0; c < 256; ++c) {
        int expected = not_a_hex_digit;
        if (c >= '0' && c <= '9') expected = c - '0';
        if (c >= 'A' && c <= 'F') expected = c - 'A' + 10;
        if (c >= 'a' && c <= 'f') expected = c - 'a' + 10;
        EXPECT_EQ(hex_digit_value(static_cast<char>(c)), expected) << c;
    }
}

} // namespace
