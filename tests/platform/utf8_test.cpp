#include "platform/utf8.h"

#include "tests/support/hex.h"

#include <gtest/gtest.h>

#include <string>

using namespace pkider;
using namespace pkider_test;

namespace {

std::string to_utf8(uint32_t code) {
    std::string out(8, 'z');
    const auto size = static_cast<std::size_t>(put_utf8(code, out.data()) - out.data());
    EXPECT_EQ(out.substr(size), std::string(8 - size, 'z')) << code;
    return out.substr(0, size);
}

struct character_row_t {
    const char* name;
    uint32_t code;
    const char* bytes;
};

class Utf8 : public testing::TestWithParam<character_row_t> {};

TEST_P(Utf8, WritesTheCharacter) {
    EXPECT_EQ(to_hex(to_utf8(GetParam().code)), GetParam().bytes);
}

const character_row_t characters_rows[] = {
    {"Nul", 0, "00"},
    {"LastOfOneByte", 0x7F, "7F"},
    {"FirstOfTwoBytes", 0x80, "C2 80"},
    {"TwoBytes", 0xE9, "C3 A9"},
    {"LastOfTwoBytes", 0x7FF, "DF BF"},
    {"FirstOfThreeBytes", 0x800, "E0 A0 80"},
    {"ThreeBytes", 0x20AC, "E2 82 AC"},
    {"LastOfThreeBytes", 0xFFFF, "EF BF BF"},
    {"FirstOfFourBytes", 0x10000, "F0 90 80 80"},
    {"FourBytes", 0x1F600, "F0 9F 98 80"},
    {"LargestCharacter", 0x10FFFF, "F4 8F BF BF"},
};
INSTANTIATE_TEST_SUITE_P(Characters, Utf8, testing::ValuesIn(characters_rows),
                         [](const auto& row) { return row.param.name; });

TEST(Utf8Size, IsThatOfTheBytesWritten) {
    for (uint32_t code = 0; code <= 0x10FFFF; ++code) {
        char out[4];
        ASSERT_EQ(utf8_size(code), static_cast<uint64_t>(put_utf8(code, out) - out)) << code;
    }
}

} // namespace
