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

INSTANTIATE_TEST_SUITE_P(Counts, IterationCount,
                         testing::Values(count_row_t{"Zero", 0, false, 0, 1},                        //
                                         count_row_t{"One", 1, true, 0, 2},                          //
                                         count_row_t{"LastOfOneByte", 255, true, 254, 257},          //
                                         count_row_t{"FirstOfTwoBytes", 256, false, 255, 257},       //
                                         count_row_t{"TwoThousand", 2000, true, 1999, 2001},         //
                                         count_row_t{"OpenSslDefault", 2048, false, 2047, 2049},     //
                                         count_row_t{"TwoToTwelve", 4096, false, 4095, 4097},        //
                                         count_row_t{"TwoToSixteen", 65536, false, 65535, 65793},    //
                                         count_row_t{"HoleInside", 65537, false, 65535, 65793},      //
                                         count_row_t{"Million", 1000000, true, 999999, 1000001},     //
                                         count_row_t{"GnuTlsDefault", 600000, true, 599999, 600001}, //
                                         count_row_t{"FarFromBoth", 0x0100FFFF, false, 0x00FFFFFF, 0x01010101},
                                         count_row_t{"AllOnes", 0xFFFFFFFF, true, 0xFFFFFFFE, 0}),
                         [](const auto& row) { return row.param.name; });

} // namespace
