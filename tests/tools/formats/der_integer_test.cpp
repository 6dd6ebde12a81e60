#include "tools/pkider/formats/der_integer.h"

#include "tests/support/hex.h"

#include <gtest/gtest.h>

namespace pkider_test {
namespace {

struct integer_row_t {
    const char* name;
    bytes_t contents;
    std::size_t num_bytes; // without leading zeros
    std::uint64_t num_bits;
    const char* text;
};

class DerInteger : public testing::TestWithParam<integer_row_t> {};

TEST_P(DerInteger, IsMeasuredAndPrinted) {
    const bytes_t& contents = GetParam().contents;
    const tool::bytes_t stripped = tool::without_leading_zeros(contents);
    EXPECT_EQ(stripped.size(), GetParam().num_bytes);
    EXPECT_EQ(stripped.data() + stripped.size(), contents.data() + contents.size());
    EXPECT_EQ(tool::bit_length(contents), GetParam().num_bits);
    EXPECT_EQ(tool::number_text(contents), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, DerInteger,
    testing::Values(integer_row_t{"NoBytes", {}, 0, 0, "0"}, integer_row_t{"Zero", "00"_hex, 1, 0, "0"},
                    integer_row_t{"ManyZeros", "00 00 00"_hex, 1, 0, "0"}, integer_row_t{"One", "01"_hex, 1, 1, "1"},
                    integer_row_t{"HighBit", "00 80"_hex, 1, 8, "128"},
                    integer_row_t{"TwoBytes", "01 00"_hex, 2, 9, "256"},
                    integer_row_t{"LargestInDecimal", "00 FF FF FF FF FF FF FF FF"_hex, 8, 64, "18446744073709551615"},
                    integer_row_t{"SmallestInHex", "01 00 00 00 00 00 00 00 00"_hex, 9, 65, "0x010000000000000000"}),
    [](const auto& row) { return row.param.name; });

} // namespace
} // namespace pkider_test
