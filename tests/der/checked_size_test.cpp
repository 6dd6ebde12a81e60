#include "der/checked_size.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <stdexcept>

using namespace pkider;

namespace {

constexpr bool has_wide_addresses = sizeof(std::size_t) >= sizeof(uint64_t);

TEST(CheckedSize, GivesASizeThatFitsMemory) {
    for (const uint64_t size : {0ull, 1ull, 0xFFFFull, 0x7FFFFFFFull}) {
        EXPECT_TRUE(fits_memory(size)) << size;
        EXPECT_EQ(checked_size(size), size);
    }
}

TEST(CheckedSize, RefusesMoreThanHalfOfAnAddressSpaceOf32Bits) {
    for (const uint64_t size : {0x80000000ull, 0xFFFFFFFFull, 0x100000000ull, 0x100000005ull}) {
        EXPECT_EQ(fits_memory(size), has_wide_addresses) << size;
        if (has_wide_addresses) {
            EXPECT_EQ(checked_size(size), size);
        } else {
            EXPECT_THROW(checked_size(size), std::length_error) << size;
        }
    }
}

} // namespace
