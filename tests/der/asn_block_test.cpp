#include "der/asn_block.h"
#include "der/checked_size.h"

#include "tests/support/alloc_failure.h"
#include "tests/support/hex.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>

using namespace pkider;
using namespace pkider_test;

namespace {

TEST(AsnBlock, SizesAreCheckedBeforeTheyAreCounted) {
    EXPECT_EQ(asn_checked_element_size(0), 2u);
    EXPECT_EQ(asn_checked_element_size(0x1234), 0x1234u + 4);
    EXPECT_EQ(asn_checked_element_size(0xFFFFFFFF), 0xFFFFFFFFu + uint64_t{6});
    EXPECT_THROW(asn_checked_element_size(0x100000000), std::length_error);
    EXPECT_THROW(asn_checked_element_size(0xFFFFFFFFFFFFFFFF), std::length_error);
}

TEST(AsnBlock, NullBytesAreZeros) {
    uint8_t block[5] = {1, 1, 1, 1, 1};
    const uint8_t two[] = {7, 8};
    uint8_t* const after_two = asn_put_bytes(block, two, 2);
    EXPECT_EQ(asn_put_bytes(after_two, nullptr, 2), block + 4);
    EXPECT_EQ(to_hex(bytes_t(block, block + 5)), "07 08 00 00 01");
}

TEST(AsnBlock, AppendsRoomAndSpansInOrder) {
    const std::string large(1000, 'L');
    std::string out = "before ";
    std::string expected = out;
    for (const std::size_t size : {0u, 1u, 15u, 1000u}) {
        uint8_t* const room = asn_append_room(out, asn_header_size(size));
        EXPECT_TRUE(std::all_of(room, room + asn_header_size(size), [](uint8_t byte) { return byte == 0; }));
        asn_put_header(room, 0x04, size);
        asn_append_bytes(out, reinterpret_cast<const uint8_t*>(large.data()), size);
        asn_append_bytes(out, nullptr, size);

        bytes_t header(checked_size(asn_header_size(size)));
        asn_put_header(header.data(), 0x04, size);
        expected += header.str() + large.substr(0, size) + std::string(size, '\0');
        EXPECT_EQ(out, expected) << size;
    }
}

TEST(AsnBlock, ReplacesTheOutputByWhatWasFilled) {
    for (const std::size_t size : {0u, 1u, 15u, 16u, 100'000u}) {
        std::string out = "before";
        asn_replace_by_block(out, size, {}, [&](uint8_t* at) { std::fill_n(at, size, uint8_t{'f'}); });
        EXPECT_EQ(out, std::string(size, 'f'));
    }
}

TEST(AsnBlock, FillsInPlaceWhereThereIsRoom) {
    std::string out(512, 'x');
    const char* const place = out.data();
    for (const std::size_t size : {512u, 511u, 0u, 512u}) {
        const auto fill = [&](uint8_t* at) { std::fill_n(at, size, uint8_t{'f'}); };
        EXPECT_EQ(count_allocations([&] { asn_replace_by_block(out, size, {nullptr}, fill); }), 0u);
        EXPECT_EQ(out, std::string(size, 'f'));
        EXPECT_EQ(out.data(), place);
    }
}

// The first byte of the storage, and its last.
TEST(AsnBlock, KeepsAnOutputThatHoldsAnInputUntilAllIsWritten) {
    for (const std::size_t place : {0u, 99u}) {
        std::string out(100, 'x');
        const auto* const input = reinterpret_cast<const uint8_t*>(out.data()) + place;
        asn_replace_by_block(out, 100, {nullptr, input}, [&](uint8_t* at) {
            std::fill_n(at, 100, uint8_t{'f'});
            at[50] = *input;
        });
        EXPECT_EQ(out, std::string(50, 'f') + 'x' + std::string(49, 'f'));
    }
}

TEST(AsnBlock, FailedAllocationLeavesTheOutput) {
    for (const std::size_t size : {100u, 1000u}) {
        const auto replace = [&] {
            std::string out = "before";
            try {
                asn_replace_by_block(out, size, {}, [&](uint8_t* at) { std::fill_n(at, size, uint8_t{'f'}); });
            } catch (...) {
                EXPECT_EQ(out, "before");
                throw;
            }
        };
        EXPECT_EQ(for_each_failing_allocation(replace, [] {}), 1u);
    }
}

} // namespace
