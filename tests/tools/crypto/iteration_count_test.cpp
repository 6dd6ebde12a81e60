#include "tools/pkider/crypto/iteration_count.h"

#include <gtest/gtest.h>

#include <ostream>

namespace {

using tool::is_storable_count;
using tool::storable_neighbours;

struct count_row_t {
    const char* name;
    uint32_t count;
    bool storable;
    uint32_t below, above; // 0: there is none
};

void PrintTo(const count_row_t& row, std::ostream* stream) {
    *stream << row.name; // not its bytes: some of them are padding
}

class IterationCount : public testing::TestWithParam<count_row_t> {};

TEST_P(IterationCount, IsJudgedAndHasNeighbours) {
    const count_row_t& row = GetParam();
    EXPECT_EQ(is_storable_count(row.count), row.storable);
    EXPECT_EQ(storable_neighbours(row.count).below.value_or(0), row.below);
    EXPECT_EQ(storable_neighbours(row.count).above.value_or(0), row.above);
}

const count_row_t counts_rows[] = {
    {"Zero", 0, false, 0, 1},
    {"One", 1, true, 0, 2},
    {"LastOfOneByte", 255, true, 254, 257},
    {"FirstOfTwoBytes", 256, false, 255, 257},
    {"TwoThousand", 2000, true, 1999, 2001},
    {"OpenSslDefault", 2048, false, 2047, 2049},
    {"TwoToTwelve", 4096, false, 4095, 4097},
    {"TwoToSixteen", 65536, false, 65535, 65793},
    {"HoleInside", 65537, false, 65535, 65793},
    {"Million", 1000000, true, 999999, 1000001},
    {"GnuTlsDefault", 600000, true, 599999, 600001},
    {"FarFromBoth", 0x0100FFFF, false, 0x00FFFFFF, 0x01010101},
    {"AllOnes", 0xFFFFFFFF, true, 0xFFFFFFFE, 0},
};
INSTANTIATE_TEST_SUITE_P(Counts, IterationCount, testing::ValuesIn(counts_rows),
                         [](const auto& row) { return row.param.name; });

} // namespace
