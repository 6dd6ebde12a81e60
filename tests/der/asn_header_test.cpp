#include "der/asn_header.h"
#include "der/checked_size.h"

#include "tests/support/hex.h"

#include <gtest/gtest.h>

using namespace pkider;
using namespace pkider_test;

namespace {

bytes_t header(uint64_t content_size) {
    bytes_t out(checked_size(asn_header_size(content_size)));
    EXPECT_EQ(asn_put_header(out.data(), 0x30, content_size), out.data() + out.size());
    return out;
}

struct header_row_t {
    const char* name;
    uint64_t content_size;
    const char* der;
};

class AsnHeader : public testing::TestWithParam<header_row_t> {};

TEST_P(AsnHeader, IsWritten) {
    EXPECT_EQ(to_hex(header(GetParam().content_size)), GetParam().der);
}

const header_row_t lengths_rows[] = {
    {"Zero", 0, "30 00"},
    {"LastShort", 0x7F, "30 7F"},
    {"FirstLong", 0x80, "30 81 80"},
    {"TwoHundred", 200, "30 81 C8"},
    {"LastOneOctet", 0xFF, "30 81 FF"},
    {"FirstTwoOctets", 0x100, "30 82 01 00"},
    {"TwoOctets", 0x1234, "30 82 12 34"},
    {"LastTwoOctets", 0xFFFF, "30 82 FF FF"},
    {"ThreeOctets", 0x123456, "30 83 12 34 56"},
    {"ThreeOctetsLowZero", 0x10100, "30 83 01 01 00"},
    {"FourOctets", 0x1010101, "30 84 01 01 01 01"},
    {"Largest", 0xFFFFFFFF, "30 84 FF FF FF FF"},
};
INSTANTIATE_TEST_SUITE_P(Lengths, AsnHeader, testing::ValuesIn(lengths_rows),
                         [](const auto& row) { return row.param.name; });

// The rule in words: store the lowest byte, then walk up from the second lowest, storing bytes until a
// zero byte has been stored or all four are; the place of that zero takes 0x80 | n.
bytes_t header_by_the_rule(uint64_t len) {
    uint8_t area[7] = {};
    area[6] = static_cast<uint8_t>(len);
    if (len < 0x80) return {0x30, area[6]};
    int n = 1;
    area[5] = static_cast<uint8_t>(len >> 8);
    while (area[6 - n] != 0) {
        ++n;
        area[6 - n] = static_cast<uint8_t>(n < 8 ? len >> 8 * n : 0);
    }
    area[6 - n] = static_cast<uint8_t>(0x80 | n);
    bytes_t out = {0x30};
    out.insert(out.end(), area + 6 - n, area + 7);
    return out;
}

TEST(AsnHeader, AgreesWithTheRuleForEveryLengthUpTo70000) {
    for (uint64_t size = 0; size <= 70'000; ++size) ASSERT_EQ(header(size), header_by_the_rule(size)) << size;
}

TEST(AsnHeader, RequiredLengthIsCutBelowTheFirstZeroByteAboveTheLowest) {
    EXPECT_EQ(header(0x10000), "30 81 00"_hex);
    EXPECT_EQ(header(0x1002A), "30 81 2A"_hex);
    EXPECT_EQ(header(0x1000100), "30 82 01 00"_hex);
    EXPECT_EQ(header(0x1FF0000), "30 81 00"_hex);
}

} // namespace
