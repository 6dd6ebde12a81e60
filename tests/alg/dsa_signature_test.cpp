#include "tests/alg/spans.h"
#include "tests/support/guarded.h"
#include "tests/support/hex.h"
#include "tests/support/identifier_changes.h"

#include <pkider/alg.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace pkider_test;

namespace {

two_spans_t read(const uint8_t* der, std::size_t size) {
    asn_dsa_certsign_t out{unwritten.len, unwritten.data, unwritten.len, unwritten.data};
    const bool read = asn_read_dsa_certsign(der, static_cast<uint32_t>(size), out);
    return {read, {out.r_len, out.r}, {out.s_len, out.s}};
}

TEST(DsaCertsign, GivesBothNumbers) {
    for_guarded("30 06 02 01 11 02 01 22"_hex, gives(read, {1, 4}, {1, 7}));
}

TEST(DsaCertsign, KeepsLeadingZeros) {
    for_guarded("30 0A 02 02 00 91 02 04 00 00 00 22"_hex, gives(read, {2, 4}, {4, 8}));
}

TEST(DsaCertsign, TakesNumbersOfAnyLength) {
    for_guarded("30 05 02 00 02 81 00"_hex, gives(read, {0, 4}, {0, 7}));
}

TEST(DsaCertsign, IgnoresBytesBehindTheNumbers) {
    for_guarded("30 08 02 01 11 02 01 22 05 00 AA BB"_hex, gives(read, {1, 4}, {1, 7}));
}

TEST(DsaCertsign, TakesAnyBytesAtTheEndOfTheSequence) {
    for_junk_in_each_constructed("30 06 02 01 11 02 01 22"_hex, "FF FF"_hex, gives(read, {1, 4}, {1, 7}));
}

TEST(DsaCertsign, RequiredSecondNumberMayRunPastTheSequence) {
    for_guarded("30 03 02 01 11 02 01 22"_hex, gives(read, {1, 4}, {1, 7}));
    for_guarded("30 05 02 01 11 02 03 22 33 44"_hex, gives(read, {1, 4}, {3, 7}));
}

struct refused_row_t {
    const char* name;
    const char* der;
    int r_at; // of one byte; -1: 0 and null; -2: unwritten
};

class DsaCertsignRefuses : public testing::TestWithParam<refused_row_t> {};

TEST_P(DsaCertsignRefuses, AndStoresWhatItReached) {
    const refused_row_t& row = GetParam();
    for_guarded(from_hex(row.der), [&](const uint8_t* der, std::size_t size) {
        const two_spans_t out = read(der, size);
        EXPECT_FALSE(out.read);
        EXPECT_EQ(out.first, row.r_at == -2 ? unwritten : row.r_at == -1 ? none : (span_t{1, der + row.r_at}));
        EXPECT_EQ(out.second, unwritten);
    });
}

const refused_row_t values_rows[] = {
    {"Nothing", "", -2},
    {"Set", "31 06 02 01 11 02 01 22", -2},
    {"Indefinite", "30 80 02 01 11 02 01 22 00 00", -2},
    {"FiveLengthOctets", "30 85 00 00 00 00 06 02 01 11 02 01 22", -2},
    {"SequenceCut", "30 07 02 01 11 02 01 22", -2},
    {"EmptySequence", "30 00 02 01 11 02 01 22", -1},
    {"FirstNoInteger", "30 06 03 01 11 02 01 22", -1},
    {"FirstPastTheSequence", "30 02 02 01 11 02 01 22", -1},
    {"FirstIndefinite", "30 06 02 80 11 02 01 22", -1},
    {"FirstOfFiveLengthOctets", "30 07 02 85 00 00 00 00 01", -1},
    {"NoSecond", "30 03 02 01 11", 4},
    {"SecondNoInteger", "30 06 02 01 11 04 01 22", 4},
    {"SecondIndefinite", "30 06 02 01 11 02 80 22", 4},
    {"SecondPastTheInput", "30 06 02 01 05 02 05 01", 4},
};
INSTANTIATE_TEST_SUITE_P(Values, DsaCertsignRefuses, testing::ValuesIn(values_rows),
                         [](const auto& row) { return row.param.name; });

TEST(DsaCertsign, EveryIdentifierIsCompared) {
    const auto reads = [](const uint8_t* der, std::size_t size) { return read(der, size).read; };
    EXPECT_THAT(identifiers_not_compared("30 06 02 01 11 02 01 22"_hex, reads), testing::IsEmpty());
}

TEST(DsaCertsign, EveryCutIsRefused) {
    for_every_prefix("30 81 08 02 02 00 91 02 02 00 92"_hex, [](const uint8_t* der, std::size_t size) {
        EXPECT_FALSE(read(der, size).read) << size << " bytes";
    });
}

} // namespace
