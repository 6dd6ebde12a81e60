#include "platform/short_bytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <vector>

using namespace pkider;

namespace {

constexpr std::size_t longest_piece = 40; // beyond 16, where memcpy and memcmp take over

// A heap block of exactly that size, so that a byte too many shows under sanitizers; no two bytes are equal.
std::vector<uint8_t> distinct_bytes(std::size_t size) {
    std::vector<uint8_t> bytes(size);
    std::iota(bytes.begin(), bytes.end(), uint8_t{1});
    return bytes;
}

TEST(CopyShort, CopiesEveryLengthAndNothingBehindIt) {
    constexpr uint8_t untouched = 0xEE;
    for (std::size_t size = 0; size <= longest_piece; ++size) {
        const std::vector<uint8_t> from = distinct_bytes(size);
        std::vector<uint8_t> to(size + 1, untouched);
        copy_short(to.data(), from.data(), size);
        EXPECT_TRUE(std::equal(from.begin(), from.end(), to.begin())) << size;
        EXPECT_EQ(to.back(), untouched) << size;
    }
}

TEST(EqualShort, SeesADifferenceInEveryPlaceOfEveryLength) {
    for (std::size_t size = 0; size <= longest_piece; ++size) {
        const std::vector<uint8_t> piece = distinct_bytes(size);
        std::vector<uint8_t> other = piece;
        EXPECT_TRUE(equal_short(piece.data(), other.data(), size)) << size;
        for (uint8_t& byte : other) {
            byte ^= 0x80;
            EXPECT_FALSE(equal_short(piece.data(), other.data(), size)) << size;
            byte ^= 0x80;
        }
    }
}

TEST(ShortBytes, TakesNullForNoBytes) {
    copy_short(nullptr, nullptr, 0);
    EXPECT_TRUE(equal_short(nullptr, nullptr, 0));
}

} // namespace
