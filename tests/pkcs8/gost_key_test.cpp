#include <pkider/pkcs8.h>

#include "der/checked_size.h"
#include "tests/support/alloc_failure.h"
#include "tests/support/bottom_up_keys.h"
#include "tests/support/der_builder.h"
#include "tests/support/dotted_oid.h"
#include "tests/support/guarded.h"
#include "tests/support/hex.h"
#include "tests/support/identifier_changes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <span>
#include <stdexcept>
#include <string>

using namespace pkider_test;

namespace {

constexpr uint64_t unwritten = 0x5A5A5A5A5A5A5A5A;
constexpr uint32_t unwritten32 = 0x5A5A5A5A;
const uint8_t somewhere = 0;

pkcs8_pki_gost_t unwritten_key() {
    pkcs8_pki_gost_t key;
    key.key_type = unwritten32;
    key.key_len = unwritten;
    key.key = &somewhere;
    return key;
}

pkcs8_pki_gost_t key_of(uint32_t kind, const bytes_t& bytes) {
    pkcs8_pki_gost_t key;
    key.key_type = kind;
    key.key_len = bytes.size();
    key.key = bytes.data();
    return key;
}

std::string written(const pkcs8_pki_gost_t& key) {
    std::string out = "the previous text of the output";
    asn_write_pkcs8_pki_gost(key, out);
    return out;
}

const bytes_t key_bytes = "00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F"
                          "10 11 12 13 14 15 16 17 18 19 1A 1B 1C 1D 1E FF"_hex;

struct kind_row_t {
    const char* name;
    uint32_t kind;
    const char* algorithm; // the privateKeyAlgorithm, whole
    const char *dotted_algorithm, *dotted_params;
};

class GostKeyKind : public testing::TestWithParam<kind_row_t> {};

TEST_P(GostKeyKind, IsWrittenAndReadBack) {
    const kind_row_t& row = GetParam();
    const bytes_t der_key = der(0x30, {"02 01 00"_hex, from_hex(row.algorithm), der(0x04, der(0x04, key_bytes))});
    EXPECT_EQ(to_hex(written(key_of(row.kind, key_bytes))), to_hex(der_key));

    for_guarded(der_key, [&](const uint8_t* data, std::size_t size) {
        pkcs8_pki_gost_t key = unwritten_key();
        ASSERT_TRUE(asn_read_pkcs8_pki_gost(data, size, key));
        EXPECT_EQ(key.key_type, row.kind);
        EXPECT_EQ(key.key_len, key_bytes.size());
        EXPECT_EQ(key.key, data + size - key_bytes.size());
    });
}

const kind_row_t kinds_rows[] = {
    {"Gost2001", 0,
     "30 1C 06 06 2A 85 03 02 02 13"
     "      30 12 06 07 2A 85 03 02 02 23 01 06 07 2A 85 03 02 02 1E 01",
     "1.2.643.2.2.19", "1.2.643.2.2.35.1"},
    {"Gost2012Of256Bits", 1,
     "30 20 06 08 2A 85 03 07 01 01 01 01"
     "      30 14 06 09 2A 85 03 07 01 02 01 01 01 06 07 2A 85 03 02 02 1E 01",
     "1.2.643.7.1.1.1.1", "1.2.643.7.1.2.1.1.1"},
    {"Gost2012Of512Bits", 2,
     "30 20 06 08 2A 85 03 07 01 01 01 02"
     "      30 14 06 09 2A 85 03 07 01 02 01 02 01 06 07 2A 85 03 02 02 1E 01",
     "1.2.643.7.1.1.1.2", "1.2.643.7.1.2.1.2.1"},
};
INSTANTIATE_TEST_SUITE_P(Kinds, GostKeyKind, testing::ValuesIn(kinds_rows),
                         [](const auto& row) { return row.param.name; });

TEST_P(GostKeyKind, IdentifiersAreTheDottedOnes) {
    const bytes_t algorithm =
        der(0x30, {dotted_oid(GetParam().dotted_algorithm),
                   der(0x30, {dotted_oid(GetParam().dotted_params), dotted_oid("1.2.643.2.2.30.1")})});
    EXPECT_EQ(from_hex(GetParam().algorithm), algorithm);
}

TEST(GostKey, RequiredDigestParamSetIsThatOf1994) {
    const std::string digest_params = "06 07 2A 85 03 02 02 1E 01"_hex.str();
    for (const uint32_t kind : {0u, 1u, 2u}) {
        const std::string der_key = written(key_of(kind, {}));
        EXPECT_EQ(der_key.find(digest_params), der_key.size() - 4 - digest_params.size()) << kind;
    }
}

TEST(GostKey, RequiredUnknownKindHasEmptyIdentifiers) {
    const bytes_t expected = der(0x30, {"02 01 00"_hex, "30 0F 06 00 30 0B 06 00 06 07 2A 85 03 02 02 1E 01"_hex,
                                        der(0x04, der(0x04, key_bytes))});
    for (const uint32_t kind : {3u, 7u, 0xFFFFFFFFu}) {
        EXPECT_EQ(to_hex(written(key_of(kind, key_bytes))), to_hex(expected)) << kind;
    }
    pkcs8_pki_gost_t key;
    EXPECT_FALSE(asn_read_pkcs8_pki_gost(expected.data(), expected.size(), key));
}

// The sizes around every step of the header, the cut lengths from 65,536 on among them.
TEST(GostKey, IsWrittenAsNestedElementsWouldBe) {
    bytes_t bytes(0x10200, 0xA5);
    for (uint32_t kind = 0; kind <= 3; ++kind) {
        for (const std::size_t near : {0u, 0x80u, 0x100u, 0x10000u, 0x10100u}) {
            for (std::size_t size = near < 0x60 ? 0 : near - 0x60; size < near + 0x10; ++size) {
                pkcs8_pki_gost_t key = key_of(kind, bytes);
                key.key_len = size;
                ASSERT_EQ(written(key), bottom_up_gost_key(key)) << "kind " << kind << ", " << size << " bytes";
            }
        }
    }
}

TEST(GostKey, NullBytesAreWrittenAsZeros) {
    pkcs8_pki_gost_t key;
    key.key_len = 3;
    EXPECT_EQ(written(key), bottom_up_gost_key(key));
    EXPECT_EQ(written(key), written(key_of(0, "00 00 00"_hex)));
}

TEST(GostKey, MayPointIntoTheOutput) {
    for (const std::size_t size : {32u, 4000u}) {
        std::string out(size, 'k');
        pkcs8_pki_gost_t key;
        key.key_len = out.size();
        key.key = reinterpret_cast<const uint8_t*>(out.data());
        const std::string expected = bottom_up_gost_key(key);
        asn_write_pkcs8_pki_gost(key, out);
        EXPECT_EQ(out, expected);
    }
}

// With room enough the output is written in place, so a key in it must be kept until it is written.
TEST(GostKey, MayPointIntoAnOutputWithRoom) {
    for (const std::size_t place : {0u, 1u, 60u, 200u}) {
        std::string out(400, 'x');
        std::iota(out.begin(), out.end(), '\0');
        pkcs8_pki_gost_t key;
        key.key_len = 64;
        key.key = reinterpret_cast<const uint8_t*>(out.data()) + place;
        const std::string expected = bottom_up_gost_key(key);
        asn_write_pkcs8_pki_gost(key, out);
        EXPECT_EQ(to_hex(out), to_hex(expected)) << place;
    }
}

TEST(GostKey, ReadAndWrittenIntoTheSameString) {
    std::string out = written(key_of(1, key_bytes));
    pkcs8_pki_gost_t key;
    ASSERT_TRUE(asn_read_pkcs8_pki_gost(reinterpret_cast<const uint8_t*>(out.data()), out.size(), key));
    key.key_type = 0; // another head, so every byte of the key moves
    asn_write_pkcs8_pki_gost(key, out);
    EXPECT_EQ(to_hex(out), to_hex(written(key_of(0, key_bytes))));
}

TEST(GostKey, TooLongAKeyIsALengthError) {
    std::string out = "as before";
    for (const uint64_t len : {0xFFFFFFFFull, 0x100000000ull, 0xFFFFFFFFFFFFFFFFull}) {
        pkcs8_pki_gost_t key;
        key.key_len = len;
        EXPECT_THROW(asn_write_pkcs8_pki_gost(key, out), std::length_error) << len;
        EXPECT_EQ(out, "as before");
    }
}

// The size of the element exceeds 32 bits where that of its contents does not.
TEST(GostKey, AKeyThatMemoryCannotHoldIsALengthError) {
    if (pkider::fits_memory(0xFFFFFFFF)) GTEST_SKIP() << "takes 4 GiB where memory has them";
    std::string out = "as before";
    for (uint64_t len = 0xFFFFFFFF; len > 0xFFFFFFFF - 100; --len) {
        pkcs8_pki_gost_t key;
        key.key_len = len;
        EXPECT_THROW(asn_write_pkcs8_pki_gost(key, out), std::length_error) << len;
        EXPECT_EQ(out, "as before");
    }
}

TEST(GostKey, FailedAllocationLeavesTheOutput) {
    const bytes_t long_key(1000, 0x11);
    for (const bytes_t& bytes : {key_bytes, long_key}) {
        const pkcs8_pki_gost_t key = key_of(2, bytes);
        std::string out;
        const auto write = [&] {
            std::string local = "as before";
            try {
                asn_write_pkcs8_pki_gost(key, local);
            } catch (...) {
                EXPECT_EQ(local, "as before");
                throw;
            }
        };
        EXPECT_EQ(for_each_failing_allocation(write, [] {}), 1u);
    }
}

TEST(GostKey, NeedsNoAllocationWhereTheOutputHasRoom) {
    std::string out;
    out.reserve(512);
    const pkcs8_pki_gost_t key = key_of(1, key_bytes);
    EXPECT_EQ(count_allocations([&] { asn_write_pkcs8_pki_gost(key, out); }), 0u);
    EXPECT_EQ(out, written(key));
}

const bytes_t sample = "30 16"
                       "   02 01 00"
                       "   30 0A 06 06 2A 85 03 02 02 13 05 00"
                       "   04 05 04 03 AA BB CC"_hex;

struct accepted_row_t {
    const char* name;
    const char* der;
    uint32_t kind;
};

class GostKeyAccepted : public testing::TestWithParam<accepted_row_t> {};

TEST_P(GostKeyAccepted, GivesKindAndKey) {
    for_guarded(from_hex(GetParam().der), [](const uint8_t* data, std::size_t size) {
        pkcs8_pki_gost_t key = unwritten_key();
        ASSERT_TRUE(asn_read_pkcs8_pki_gost(data, size, key));
        EXPECT_EQ(key.key_type, GetParam().kind);
        EXPECT_EQ(bytes_t(key.key, key.key + key.key_len), "AA BB CC"_hex);
    });
}

const accepted_row_t keys_rows[] = {
    {"ParametersAreNotExamined", "30 16 02 01 00 30 0A 06 06 2A 85 03 02 02 13 05 00 04 05 04 03 AA BB CC", 0},
    {"WrongParameterSets", "30 1A 02 01 00 30 0E 06 08 2A 85 03 07 01 01 01 01 30 02 05 00 04 05 04 03 AA BB CC", 1},
    {"JunkBehindTheInnerString", "30 19 02 01 00 30 0C 06 08 2A 85 03 07 01 01 01 02 05 00 04 06 04 03 AA BB CC 30", 2},
    {"AttributesBehindTheKey", "30 1A 02 01 00 30 0A 06 06 2A 85 03 02 02 13 05 00 04 05 04 03 AA BB CC A0 02 31 00",
     0},
};
INSTANTIATE_TEST_SUITE_P(Keys, GostKeyAccepted, testing::ValuesIn(keys_rows),
                         [](const auto& row) { return row.param.name; });

struct refused_row_t {
    const char* name;
    const char* der;
    uint32_t kind_stored;
};

class GostKeyRefused : public testing::TestWithParam<refused_row_t> {};

TEST_P(GostKeyRefused, LeavesTheKeySpan) {
    for_guarded(from_hex(GetParam().der), [](const uint8_t* data, std::size_t size) {
        pkcs8_pki_gost_t key = unwritten_key();
        EXPECT_FALSE(asn_read_pkcs8_pki_gost(data, size, key));
        EXPECT_EQ(key.key_type, GetParam().kind_stored);
        EXPECT_EQ(key.key_len, unwritten);
        EXPECT_EQ(key.key, &somewhere);
    });
}

const refused_row_t faults_rows[] = {
    {"NoPrivateKeyInfo", "30 03 02 01 00", unwritten32},
    {"NoParameters", "30 14 02 01 00 30 08 06 06 2A 85 03 02 02 13 04 05 04 03 AA BB CC", unwritten32},
    {"NoPrivateKey", "30 0F 02 01 00 30 0A 06 06 2A 85 03 02 02 13 05 00", unwritten32},
    {"PrivateKeyIsABitString", "30 16 02 01 00 30 0A 06 06 2A 85 03 02 02 13 05 00 03 05 04 03 AA BB CC", unwritten32},
    {"PrivateKeyIsABitStringBehindTheWrittenHead",
     "30 28 02 01 00"
     "      30 1C 06 06 2A 85 03 02 02 13"
     "            30 12 06 07 2A 85 03 02 02 23 01 06 07 2A 85 03 02 02 1E 01"
     "      03 05 04 03 AA BB CC",
     unwritten32},
    {"Gost1994", "30 16 02 01 00 30 0A 06 06 2A 85 03 02 02 14 05 00 04 05 04 03 AA BB CC", unwritten32},
    {"ShorterOid", "30 15 02 01 00 30 09 06 05 2A 85 03 02 02 05 00 04 05 04 03 AA BB CC", unwritten32},
    {"LongerOid", "30 17 02 01 00 30 0B 06 07 2A 85 03 02 02 13 01 05 00 04 05 04 03 AA BB CC", unwritten32},
    {"Gost2012OfAnotherSize", "30 18 02 01 00 30 0C 06 08 2A 85 03 07 01 01 01 03 05 00 04 05 04 03 AA BB CC",
     unwritten32},
    {"EmptyOid", "30 10 02 01 00 30 04 06 00 05 00 04 05 04 03 AA BB CC", unwritten32},
    {"RawKey", "30 14 02 01 00 30 0A 06 06 2A 85 03 02 02 13 05 00 04 03 AA BB CC", 0},
    {"EmptyPrivateKey", "30 11 02 01 00 30 0A 06 06 2A 85 03 02 02 13 05 00 04 00", 0},
    {"InnerIsAnInteger", "30 16 02 01 00 30 0A 06 06 2A 85 03 02 02 13 05 00 04 05 02 03 AA BB CC", 0},
    {"InnerIsIndefinite", "30 16 02 01 00 30 0A 06 06 2A 85 03 02 02 13 05 00 04 05 04 80 AA 00 00", 0},
    {"InnerHasFiveLengthOctets", "30 19 02 01 00 30 0A 06 06 2A 85 03 02 02 13 05 00 04 08 04 85 00 00 00 00 01 AA", 0},
    {"InnerPastTheOuter", "30 16 02 01 00 30 0A 06 06 2A 85 03 02 02 13 05 00 04 04 04 03 AA BB CC", 0},
};
INSTANTIATE_TEST_SUITE_P(Faults, GostKeyRefused, testing::ValuesIn(faults_rows),
                         [](const auto& row) { return row.param.name; });

TEST(GostKey, EveryIdentifierButThatOfTheParametersIsCompared) {
    const auto reads = [](const uint8_t* data, std::size_t size) {
        pkcs8_pki_gost_t key;
        return asn_read_pkcs8_pki_gost(data, size, key);
    };
    EXPECT_THAT(identifiers_not_compared(sample, reads), testing::ElementsAre(15));
}

// The head of what the library writes, and each of its bytes changed: what is written is not all that is read.
TEST(GostKey, HeadsThatDifferInAByteAreReadForWhatTheyAre) {
    for (const uint32_t kind : {0u, 1u, 2u}) {
        const bytes_t whole = to_bytes(written(key_of(kind, key_bytes)));
        asn_pkcs8_priv_key_info_t info_of_whole;
        ASSERT_TRUE(asn_read_pkcs8_priv_key_info(whole.data(), static_cast<uint32_t>(whole.size()), info_of_whole));
        const std::span oid(info_of_whole.alg_oid, info_of_whole.alg_oid_len);
        for (std::size_t at = 2; at < whole.size() - key_bytes.size() - 4; ++at) {
            bytes_t changed = whole;
            changed[at] ^= 0x10;
            asn_pkcs8_priv_key_info_t info;
            pkcs8_pki_gost_t key = unwritten_key();
            const bool read = asn_read_pkcs8_pki_gost(changed.data(), changed.size(), key);
            const bool is_info =
                asn_read_pkcs8_priv_key_info(changed.data(), static_cast<uint32_t>(changed.size()), info);
            const bool same_oid =
                is_info && std::equal(info.alg_oid, info.alg_oid + info.alg_oid_len, oid.begin(), oid.end());
            EXPECT_EQ(read, same_oid) << "kind " << kind << ", byte " << at;
            EXPECT_EQ(key.key_type, read ? kind : unwritten32) << "kind " << kind << ", byte " << at;
        }
    }
}

TEST(GostKey, EveryCutIsRefused) {
    for_every_prefix(sample, [](const uint8_t* data, std::size_t size) {
        pkcs8_pki_gost_t key = unwritten_key();
        EXPECT_FALSE(asn_read_pkcs8_pki_gost(data, size, key)) << size << " bytes";
        EXPECT_EQ(key.key, &somewhere);
    });
}

TEST(GostKey, JunkAtTheEndOfAnyElementIsIgnored) {
    for_junk_in_each_constructed(sample, "05 00"_hex, [](const uint8_t* data, std::size_t size) {
        pkcs8_pki_gost_t key;
        ASSERT_TRUE(asn_read_pkcs8_pki_gost(data, size, key));
        EXPECT_EQ(bytes_t(key.key, key.key + key.key_len), "AA BB CC"_hex);
    });
}

TEST(GostKey, RequiredLengthIsTakenAs32Bits) {
    constexpr uint64_t two_to_32 = 0x100000000;
    pkcs8_pki_gost_t key;
    EXPECT_TRUE(asn_read_pkcs8_pki_gost(sample.data(), two_to_32 + sample.size(), key));
    EXPECT_EQ(key.key, sample.data() + sample.size() - 3);
    EXPECT_FALSE(asn_read_pkcs8_pki_gost(sample.data(), two_to_32 + sample.size() - 1, key));
    EXPECT_FALSE(asn_read_pkcs8_pki_gost(sample.data(), two_to_32, key));
}

TEST(GostKey, TakesNullForNoBytes) {
    pkcs8_pki_gost_t key;
    EXPECT_FALSE(asn_read_pkcs8_pki_gost(nullptr, 0, key));
}

} // namespace
