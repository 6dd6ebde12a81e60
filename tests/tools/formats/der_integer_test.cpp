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

const integer_row_t numbers_rows[] = {
    {"NoBytes", {}, 0, 0, "0"},
    {"Zero", "00"_hex, 1, 0, "0"},
    {"ManyZeros", "00 00 00"_hex, 1, 0, "0"},
    {"One", "01"_hex, 1, 1, "1"},
    {"HighBit", "00 80"_hex, 1, 8, "128"},
    {"TwoBytes", "01 00"_hex, 2, 9, "256"},
    {"LargestInDecimal", "00 FF FF FF FF FF FF FF FF"_hex, 8, 64, "18446744073709551615"},
    {"SmallestInHex", "01 00 00 00 00 00 00 00 00"_hex, 9, 65, "0x010000000000000000"},
};
INSTANTIATE_TEST_SUITE_P(Numbers, DerInteger, testing::ValuesIn(numbers_rows),
                         [](const auto& row) { return row.param.name; });

} // namespace
} // namespace pkider_test
