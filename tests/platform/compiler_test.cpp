#include "platform/compiler.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>

using namespace pkider;

namespace {

TEST(Overwrite, LeavesZerosThereAndNowhereElse) {
    std::string text = "<secret>";
    overwrite(text.data() + 1, 6);
    EXPECT_EQ(text, std::string("<\0\0\0\0\0\0>", 8));
    overwrite(text.data(), 0);
    EXPECT_EQ(text.front(), '<');
    overwrite(nullptr, 0);
}

char_block_t block_from(uint8_t first) {
    uint8_t chars[sizeof(char_block_t)];
    for (std::size_t i = 0; i < sizeof chars; ++i) chars[i] = static_cast<uint8_t>(first + i);
    char_block_t block;
    std::memcpy(&block, chars, sizeof block);
    return block;
}

TEST(CharBlock, EveryOperationWorksOnEachCharacter) {
    for (int first = 0; first < 256; first += 16) {
        const char_block_t block = block_from(static_cast<uint8_t>(first));
        const char_block_t masked = block & 0xFE;
        const char_block_t less = block - 0x2B;
        const char_block_t equal = block == 0x5C;
        const char_block_t smaller = block < 0x7B;
        char_block_t either = equal | masked;
        either |= smaller;
        for (int i = 0; i < 16; ++i) {
            const auto at = static_cast<std::size_t>(i);
            const int c = first + i;
            EXPECT_EQ(block[at], c);
            EXPECT_EQ(masked[at], c & 0xFE) << c;
            EXPECT_EQ(less[at], (c - 0x2B) & 0xFF) << c;
            EXPECT_EQ(equal[at], c == 0x5C ? 0xFF : 0) << c;
            EXPECT_EQ(smaller[at], c < 0x7B ? 0xFF : 0) << c;
            EXPECT_EQ(either[at], equal[at] | masked[at] | smaller[at]) << c;
        }
    }
}

TEST(CharBlock, OfTwoHalvesHasTheFirstOneFirst) {
    const uint64_t halves[] = {0x0102030405060708, 0x1112131415161718};
    const char_block_t block = block_of(halves[0], halves[1]);
    EXPECT_EQ(std::memcmp(&block, halves, sizeof block), 0);
}

} // namespace
