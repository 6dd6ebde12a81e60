#include "der/uint32_content.h"

#include "tests/support/alloc_failure.h"
#include "tests/support/hex.h"

#include <gtest/gtest.h>

using namespace pkider;
using namespace pkider_test;

namespace {

std::string content(uint32_t value) {
    std::string out;
    asn_add_uint32_content(value, out);
    return to_hex(out);
}

TEST(AsnAddUint32Content, WritesNumbersWithoutZeroBytes) {
    EXPECT_EQ(content(0), "00");
    EXPECT_EQ(content(1), "01");
    EXPECT_EQ(content(0x7F), "7F");
    EXPECT_EQ(content(1000), "03 E8");
    EXPECT_EQ(content(0x12345678), "12 34 56 78");
}

TEST(AsnAddUint32Content, KeepsTheNumberPositive) {
    EXPECT_EQ(content(0x80), "00 80");
    EXPECT_EQ(content(0xFFFFFFFF), "00 FF FF FF FF");
    EXPECT_EQ(content(0x7F80), "7F 80");
}

// The form that writes into a block, of which not a byte more is touched.
TEST(AsnPutUint32Content, WritesTheSameContents) {
    for (const uint32_t value : {0u, 1u, 0x80u, 0x0800u, 0x010001u, 0xFF00u, 0x00800080u, 0x80000000u, 0xFFFFFFFFu}) {
        uint8_t block[asn_max_uint32_content_size + 1] = {};
        block[asn_max_uint32_content_size] = 0x5A;
        const uint8_t* const end = asn_put_uint32_content(block, value);
        EXPECT_EQ(to_hex(bytes_t(static_cast<const uint8_t*>(block), end)), content(value)) << value;
        EXPECT_EQ(block[asn_max_uint32_content_size], 0x5A);
    }
}

TEST(AsnAddUint32Content, AppendsToWhatStands) {
    std::string out = "x";
    asn_add_uint32_content(1, out);
    EXPECT_EQ(out, "x\x01");
}

TEST(AsnAddUint32Content, AFailedAllocationLeavesTheText) {
    const std::string full(std::string().capacity(), 'x'); // one byte more needs a block
    const auto add = [&] {
        std::string out = full;
        try {
            asn_add_uint32_content(0x12345678, out);
        } catch (const std::bad_alloc&) {
            EXPECT_EQ(out, full);
            throw;
        }
    };
    EXPECT_EQ(for_each_failing_allocation(add, [] {}), 1u);
}

TEST(AsnAddUint32Content, RequiredZeroBytesAreDroppedEverywhere) {
    EXPECT_EQ(content(0x0800), "08");
    EXPECT_EQ(content(4096), "10");
    EXPECT_EQ(content(1024), "04");
    EXPECT_EQ(content(65'536), "01");
    EXPECT_EQ(content(0x010001), "01 01");
    EXPECT_EQ(content(0xFF00), "00 FF");
    EXPECT_EQ(content(0x80000000), "00 80");
    EXPECT_EQ(content(0x00800080), "00 80 80");
    EXPECT_EQ(content(0x01800000), "01 80");
    EXPECT_EQ(content(0x7F000000), "7F");
}

} // namespace
