#include "pkcs12/mac_data.h"

#include "tests/support/bottom_up_pfx.h"
#include "tests/support/der_builder.h"
#include "tests/support/guarded.h"
#include "tests/support/hex.h"
#include "tests/support/identifier_changes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

using namespace pkider;
using namespace pkider_test;

namespace {

constexpr uint32_t unwritten32 = 0x5A5A5A5A;

const bytes_t algorithm = "06 06 2A 85 03 02 02 09 05 00"_hex;
const bytes_t digest = "D1 D2 D3 D4"_hex;
const bytes_t salt = "51 52 53"_hex;

// The contents of a MacData, any piece of which a test can replace.
struct pieces_t {
    bytes_t digest_info = der(0x30, {der(0x30, algorithm), der(0x04, digest)});
    bytes_t salt_element = der(0x04, salt);
    bytes_t count = "02 02 07 D0"_hex;

    bytes_t content() const { return join({digest_info, salt_element, count}); }
};

bytes_t span(const uint8_t* data, uint64_t len) {
    return {data, data + len};
}

TEST(MacData, GivesItsPiecesInPlace) {
    for_guarded(pieces_t().content(), [](const uint8_t* data, std::size_t size) {
        pkcs12_mac_t mac;
        ASSERT_TRUE(asn_read_pkcs12_MacData(data, size, mac));
        EXPECT_EQ(span(mac.digest_alg, mac.digest_alg_len), algorithm);
        EXPECT_EQ(span(mac.digest, mac.digest_len), digest);
        EXPECT_EQ(span(mac.salt, mac.salt_len), salt);
        EXPECT_EQ(mac.iterations, 2000u);
        EXPECT_EQ(mac.digest_alg, data + 4);
        EXPECT_EQ(mac.salt, data + 24 - 2);
    });
}

struct count_row_t {
    const char* name;
    const char* der;
    bool accepted;
    uint32_t iterations;
};

class MacDataCount : public testing::TestWithParam<count_row_t> {};

TEST_P(MacDataCount, IsRead) {
    pieces_t pieces;
    pieces.count = from_hex(GetParam().der);
    for_guarded(pieces.content(), [](const uint8_t* data, std::size_t size) {
        pkcs12_mac_t mac;
        mac.iterations = unwritten32;
        EXPECT_EQ(asn_read_pkcs12_MacData(data, size, mac), GetParam().accepted);
        if (GetParam().accepted) {
            EXPECT_EQ(mac.iterations, GetParam().iterations);
        }
        EXPECT_EQ(span(mac.salt, mac.salt_len), salt);
    });
}

const count_row_t counts_rows[] = {
    {"Absent", "", true, 1},
    {"Empty", "02 00", true, 1},
    {"Zero", "02 01 00", true, 0},
    {"LeadingZero", "02 02 00 80", true, 128},
    {"Largest", "02 05 00 FF FF FF FF", true, 4294967295},
    {"JunkBehind", "02 01 07 05 00", true, 7},
    {"OtherElementInstead", "04 01 07", true, 1},
    {"LoneByteInstead", "30", true, 1},
    {"CountBehindAnother", "05 00 02 01 07", true, 1},
    {"Negative", "02 01 FF", false, 0},
    {"SixSignificantBytes", "02 06 01 00 00 00 00 00", false, 0},
    {"IdentifierAlone", "02", false, 0},
    {"Cut", "02 02 07", false, 0},
    {"Indefinite", "02 80 00 00", false, 0},
};
INSTANTIATE_TEST_SUITE_P(Counts, MacDataCount, testing::ValuesIn(counts_rows),
                         [](const auto& row) { return row.param.name; });

TEST(MacData, RequiredFiveByteCountLosesItsHighByte) {
    pieces_t pieces;
    pieces.count = "02 05 01 00 00 00 00"_hex;
    const bytes_t content = pieces.content();
    pkcs12_mac_t mac;
    EXPECT_TRUE(asn_read_pkcs12_MacData(content.data(), content.size(), mac));
    EXPECT_EQ(mac.iterations, 0u);
}

TEST(MacData, AlgorithmIsKeptAsItIs) {
    for (const bytes_t& contents : {""_hex, "05 00"_hex, "06 05 2B 0E 03 02 1A"_hex, "FF"_hex}) {
        pieces_t pieces;
        pieces.digest_info = der(0x30, {der(0x30, contents), der(0x04, digest)});
        const bytes_t content = pieces.content();
        pkcs12_mac_t mac;
        ASSERT_TRUE(asn_read_pkcs12_MacData(content.data(), content.size(), mac));
        EXPECT_EQ(span(mac.digest_alg, mac.digest_alg_len), contents);
    }
}

TEST(MacData, BytesBehindTheDigestAreIgnored) {
    pieces_t pieces;
    pieces.digest_info = der(0x30, {der(0x30, algorithm), der(0x04, digest), "30"_hex});
    const bytes_t content = pieces.content();
    pkcs12_mac_t mac;
    ASSERT_TRUE(asn_read_pkcs12_MacData(content.data(), content.size(), mac));
    EXPECT_EQ(span(mac.digest, mac.digest_len), digest);
    EXPECT_EQ(mac.iterations, 2000u);
}

struct refused_row_t {
    const char* name;
    const char* der;
};

class MacDataRefused : public testing::TestWithParam<refused_row_t> {};

TEST_P(MacDataRefused, IsFalse) {
    for_guarded(from_hex(GetParam().der), [](const uint8_t* data, std::size_t size) {
        pkcs12_mac_t mac;
        EXPECT_FALSE(asn_read_pkcs12_MacData(data, size, mac));
    });
}

const refused_row_t faults_rows[] = {
    {"Nothing", ""},
    {"OneByte", "30"},
    {"DigestInfoIsASet", "31 06 30 02 06 00 04 00 04 00"},
    {"DigestInfoIsIndefinite", "30 80 30 02 06 00 04 00 04 00"},
    {"DigestInfoHasFiveLengthOctets", "30 85 00 00 00 00 06 30 02 06 00 04 00 04 00"},
    {"DigestInfoPastTheEnd", "30 0B 30 02 06 00 04 00 04 00"},
    {"EmptyDigestInfo", "30 00 04 00"},
    {"AlgorithmIsAnOid", "30 04 06 00 04 00 04 00"},
    {"NoDigest", "30 04 30 02 06 00 04 00"},
    {"DigestIsABitString", "30 07 30 02 06 00 03 01 00 04 00"},
    {"DigestPastTheDigestInfo", "30 06 30 02 06 00 04 01 04 00"},
    {"NoSalt", "30 06 30 02 06 00 04 00"},
    {"SaltIsAnInteger", "30 06 30 02 06 00 04 00 02 01 07"},
    {"SaltCut", "30 06 30 02 06 00 04 00 04 03 51 52"},
};
INSTANTIATE_TEST_SUITE_P(Faults, MacDataRefused, testing::ValuesIn(faults_rows),
                         [](const auto& row) { return row.param.name; });

TEST(MacData, TheWholeElementInsteadOfItsContentsIsRefused) {
    const bytes_t whole = der(0x30, pieces_t().content());
    pkcs12_mac_t mac;
    EXPECT_FALSE(asn_read_pkcs12_MacData(whole.data(), whole.size(), mac));

    // With an OCTET STRING after it, it is read as something else.
    const bytes_t with_more = join({whole, "04 01 77"_hex});
    ASSERT_TRUE(asn_read_pkcs12_MacData(with_more.data(), with_more.size(), mac));
    EXPECT_EQ(span(mac.digest, mac.digest_len), salt);
    EXPECT_EQ(span(mac.salt, mac.salt_len), "77"_hex);
    EXPECT_EQ(mac.iterations, 1u);
}

// The algorithm is ignored, and a count with another identifier is read as absent.
TEST(MacData, IdentifiersButThoseOfAlgorithmAndCountAreCompared) {
    const auto reads = [](const uint8_t* data, std::size_t size) {
        pkcs12_mac_t mac;
        return asn_read_pkcs12_MacData(data, size, mac);
    };
    const bytes_t content = pieces_t().content();
    EXPECT_THAT(identifiers_not_compared(content, reads), testing::ElementsAre(4, 12, content.size() - 4));
}

TEST(MacData, SizeIsNotCutTo32Bits) {
    const bytes_t content = join({pieces_t().content(), "05 00"_hex});
    pkcs12_mac_t mac;
    EXPECT_TRUE(asn_read_pkcs12_MacData(content.data(), 0x100000000, mac));
    EXPECT_EQ(mac.iterations, 2000u);
}

// The cut between salt and count is a MacData with the default count.
TEST(MacData, EveryOtherCutIsRefused) {
    const bytes_t content = pieces_t().content();
    const std::size_t without_count = content.size() - 4;
    for_every_prefix(content, [&](const uint8_t* data, std::size_t size) {
        pkcs12_mac_t mac;
        EXPECT_EQ(asn_read_pkcs12_MacData(data, size, mac), size == without_count) << size << " bytes";
    });
}

TEST(MacData, JunkAtTheEndOfAnyElementIsIgnored) {
    for_junk_in_each_constructed(pieces_t().content(), "05 00"_hex, [](const uint8_t* data, std::size_t size) {
        pkcs12_mac_t mac;
        ASSERT_TRUE(asn_read_pkcs12_MacData(data, size, mac));
        EXPECT_EQ(span(mac.digest, mac.digest_len), digest);
        EXPECT_EQ(mac.iterations, 2000u);
    });
}

TEST(MacData, TakesNullForNoBytes) {
    pkcs12_mac_t mac;
    EXPECT_FALSE(asn_read_pkcs12_MacData(nullptr, 0, mac));
}

std::string written(const pkcs12_mac_t& mac) {
    const mac_data_writer_t writer(mac);
    std::string out = "before ";
    writer.append_to(out);
    EXPECT_EQ(out.size(), 7 + writer.size());
    EXPECT_EQ(out.substr(0, 7), "before ");
    return out.substr(7);
}

pkcs12_mac_t sample_mac() {
    pkcs12_mac_t mac;
    mac.digest_len = digest.size();
    mac.digest = digest.data();
    mac.salt_len = salt.size();
    mac.salt = salt.data();
    mac.iterations = 2000;
    return mac;
}

TEST(MacDataWriter, WhatIsWrittenIsReadBack) {
    EXPECT_EQ(to_hex(written(sample_mac())), to_hex(der(0x30, pieces_t().content())));
}

TEST(MacDataWriter, RequiredDigestAlgorithmIsAlwaysThatOf1994) {
    pkcs12_mac_t mac = sample_mac();
    const std::string expected = written(mac);
    const bytes_t other = "06 05 2B 0E 03 02 1A 05 00"_hex;
    mac.digest_alg_len = other.size();
    mac.digest_alg = other.data();
    EXPECT_EQ(written(mac), expected);
    EXPECT_EQ(to_hex(expected.substr(4, 12)), "30 0A 06 06 2A 85 03 02 02 09 05 00");
}

TEST(MacDataWriter, ACountOfOneIsWritten) {
    pkcs12_mac_t mac = sample_mac();
    mac.iterations = 1;
    const std::string out = written(mac);
    EXPECT_EQ(to_hex(out.substr(out.size() - 3)), "02 01 01");
}

TEST(MacDataWriter, AnEmptyRecordIsWritten) {
    EXPECT_EQ(to_hex(written({})), "30 15 30 0E 30 0A 06 06 2A 85 03 02 02 09 05 00 04 00 04 00 02 01 00");
}

TEST(MacDataWriter, RequiredZeroBytesOfTheCountAreDropped) {
    pkcs12_mac_t mac = sample_mac();
    mac.iterations = 2048;
    const std::string out = written(mac);
    EXPECT_EQ(to_hex(out.substr(out.size() - 3)), "02 01 08");
}

TEST(MacDataWriter, IsWrittenAsNestedElementsWouldBe) {
    const bytes_t bytes(0x10200, 0xA5);
    for (uint64_t pkcs12_mac_t::*const len : {&pkcs12_mac_t::digest_len, &pkcs12_mac_t::salt_len}) {
        for (const std::size_t near : {0x80u, 0x100u, 0x10000u, 0x10100u}) {
            for (std::size_t size = near - 0x40; size < near + 4; ++size) {
                pkcs12_mac_t mac = sample_mac();
                mac.digest = mac.salt = bytes.data();
                mac.*len = size;
                ASSERT_EQ(written(mac), bottom_up_mac_data(mac)) << size;
            }
        }
    }
}

TEST(MacDataWriter, NullSpansAreWrittenAsZeros) {
    pkcs12_mac_t mac;
    mac.digest_len = 4;
    mac.salt_len = 2;
    EXPECT_EQ(written(mac), bottom_up_mac_data(mac));
}

TEST(MacDataWriter, TooLongASpanIsALengthError) {
    for (uint64_t pkcs12_mac_t::*const len : {&pkcs12_mac_t::digest_len, &pkcs12_mac_t::salt_len}) {
        for (const uint64_t size : {0xFFFFFFFFull, 0x100000000ull, 0xFFFFFFFFFFFFFFFFull}) {
            pkcs12_mac_t mac;
            mac.*len = size;
            EXPECT_THROW(mac_data_writer_t{mac}, std::length_error) << size;
        }
    }
}

} // namespace
