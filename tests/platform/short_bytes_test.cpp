#include "platform/short_bytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <vector>

using namespace pkider;

namespace {

constexpr std::size_t longest_piece = 40; // beyond 16, where memcpy takes over

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

TEST(CopyShort, TakesNullForNoBytes) {
    copy_short(nullptr, nullptr, 0);
}

} // namespace
