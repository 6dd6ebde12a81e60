#include <pkider/der.h>

#include "tests/support/hex.h"

#include <gtest/gtest.h>

using namespace pkider_test;

TEST(InterfaceDer, ReadsAnElementHeader) {
    const bytes_t der = "30 03 02 01 05"_hex;
    uint64_t len = 0;
    const uint8_t* const contents = asn1_read_tag_(asn_tag_t::SEQUENCE, der.data(), der.size(), &len);
    ASSERT_EQ(contents, der.data() + 2);
    EXPECT_EQ(len, 3U);
}

TEST(InterfaceDer, RefusesAnotherTagAndKeepsTheLength) {
    const bytes_t der = "31 00"_hex;
    uint64_t len = 77;
    EXPECT_EQ(asn1_read_tag_(asn_tag_t::SEQUENCE, der.data(), der.size(), &len), nullptr);
    EXPECT_EQ(len, 77U);
}
