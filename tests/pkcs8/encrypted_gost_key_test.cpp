#include "pkcs8/encrypted_gost_key.h"

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
#include <stdexcept>
#include <string>

using namespace pkider;
using namespace pkider_test;

namespace {

constexpr uint64_t unwritten = 0x5A5A5A5A5A5A5A5A;
constexpr uint32_t unwritten32 = 0x5A5A5A5A;
const uint8_t somewhere = 0;

pkcs8_encrypted_pki_gost_t unwritten_record() {
    pkcs8_encrypted_pki_gost_t record;
    record.salt_len = record.iv_len = record.encrypted_len = unwritten;
    record.salt = record.iv = record.encrypted = &somewhere;
    record.iterations = unwritten32;
    return record;
}

const bytes_t salt = "51 52 53 54 55 56 57 58"_hex;
const bytes_t iv = "61 62 63 64 65 66 67 68"_hex;
const bytes_t encrypted = "E1 E2 E3 E4 E5"_hex;

pkcs8_encrypted_pki_gost_t sample_record(uint32_t iterations = 1000) {
    pkcs8_encrypted_pki_gost_t record;
    record.salt_len = salt.size();
    record.salt = salt.data();
    record.iterations = iterations;
    record.iv_len = iv.size();
    record.iv = iv.data();
    record.encrypted_len = encrypted.size();
    record.encrypted = encrypted.data();
    return record;
}

std::string written(const pkcs8_encrypted_pki_gost_t& record) {
    std::string out = "the previous text of the output";
    asn_write_pkcs8_encrypted_pki_gost(record, out);
    return out;
}

bytes_t span(const uint8_t* data, uint64_t len) {
    return {data, data + len};
}

// The pieces of a sample, any of which a test can replace.
struct pieces_t {
    bytes_t pbes2 = "06 09 2A 86 48 86 F7 0D 01 05 0D"_hex;
    bytes_t pbkdf2 = "06 09 2A 86 48 86 F7 0D 01 05 0C"_hex;
    bytes_t salt_element = der(0x04, salt);
    bytes_t count = "02 02 03 E8"_hex;
    bytes_t key_length;
    bytes_t prf = "30 0A 06 06 2A 85 03 02 02 0A 05 00"_hex;
    bytes_t cipher = "06 06 2A 85 03 02 02 15"_hex;
    bytes_t cipher_params = der(0x30, {der(0x04, iv), "06 07 2A 85 03 02 02 1F 01"_hex});
    bytes_t encrypted_element = der(0x04, encrypted);

    bytes_t derivation() const { return join({pbkdf2, der(0x30, {salt_element, count, key_length, prf})}); }
    bytes_t algorithm() const {
        return join({pbes2, der(0x30, {der(0x30, derivation()), der(0x30, {cipher, cipher_params})})});
    }
    bytes_t whole() const { return der(0x30, {der(0x30, algorithm()), encrypted_element}); }
};

TEST(EncryptedGostKey, IsWrittenAndReadBack) {
    const bytes_t whole = pieces_t().whole();
    EXPECT_EQ(to_hex(written(sample_record())), to_hex(whole));

    for_guarded(whole, [](const uint8_t* data, std::size_t size) {
        pkcs8_encrypted_pki_gost_t record = unwritten_record();
        ASSERT_TRUE(asn_read_pkcs8_encrypted_pki_gost(data, size, record));
        EXPECT_EQ(span(record.salt, record.salt_len), salt);
        EXPECT_EQ(span(record.iv, record.iv_len), iv);
        EXPECT_EQ(span(record.encrypted, record.encrypted_len), encrypted);
        EXPECT_EQ(record.iterations, 1000u);
        for (const uint8_t* const at : {record.salt, record.iv, record.encrypted}) {
            EXPECT_TRUE(at > data && at < data + size); // inside the input, not a copy
        }
    });
}

TEST(EncryptedGostKey, IdentifiersAreTheDottedOnes) {
    const pieces_t pieces;
    EXPECT_EQ(pieces.pbes2, dotted_oid("1.2.840.113549.1.5.13"));
    EXPECT_EQ(pieces.pbkdf2, dotted_oid("1.2.840.113549.1.5.12"));
    EXPECT_EQ(pieces.prf, der(0x30, {dotted_oid("1.2.643.2.2.10"), "05 00"_hex}));
    EXPECT_EQ(pieces.cipher, dotted_oid("1.2.643.2.2.21"));
    EXPECT_EQ(pieces.cipher_params, der(0x30, {der(0x04, iv), dotted_oid("1.2.643.2.2.31.1")}));
}

TEST(EncryptedGostKey, EverySpanMayBeEmpty) {
    pkcs8_encrypted_pki_gost_t record;
    const std::string der_key = written(record);
    EXPECT_EQ(der_key, bottom_up_encrypted_gost_key(record));

    pkcs8_encrypted_pki_gost_t read = unwritten_record();
    ASSERT_TRUE(
        asn_read_pkcs8_encrypted_pki_gost(reinterpret_cast<const uint8_t*>(der_key.data()), der_key.size(), read));
    EXPECT_EQ(read.salt_len + read.iv_len + read.encrypted_len, 0u);
    EXPECT_EQ(read.iterations, 0u);
}

TEST(EncryptedGostKey, AlgorithmIsWrittenAlone) {
    std::string out = "the previous text of the output";
    asn_write_pkcs8_encrypted_alg(sample_record(), out);
    EXPECT_EQ(to_hex(out), to_hex(der(0x30, pieces_t().algorithm())));
}

// The sizes around every step of the header in each of the three spans, cut lengths from 65,536 on among them.
TEST(EncryptedGostKey, IsWrittenAsNestedElementsWouldBe) {
    const bytes_t bytes(0x10200, 0xA5);
    for (uint64_t pkcs8_encrypted_pki_gost_t::*const len :
         {&pkcs8_encrypted_pki_gost_t::salt_len, &pkcs8_encrypted_pki_gost_t::iv_len,
          &pkcs8_encrypted_pki_gost_t::encrypted_len}) {
        for (const std::size_t near : {0x80u, 0x100u, 0x10000u, 0x10100u}) {
            for (std::size_t size = near - 0x80; size < near + 4; ++size) {
                pkcs8_encrypted_pki_gost_t record = sample_record();
                record.salt = record.iv = record.encrypted = bytes.data();
                record.*len = size;
                ASSERT_EQ(written(record), bottom_up_encrypted_gost_key(record)) << size;
                std::string algorithm;
                asn_write_pkcs8_encrypted_alg(record, algorithm);
                ASSERT_EQ(algorithm, bottom_up_encrypted_alg(record)) << size;
            }
        }
    }
}

TEST(EncryptedGostKey, NullSpansAreWrittenAsZeros) {
    pkcs8_encrypted_pki_gost_t record;
    record.salt_len = 2;
    record.iv_len = 3;
    record.encrypted_len = 600;
    EXPECT_EQ(written(record), bottom_up_encrypted_gost_key(record));
}

TEST(EncryptedGostKey, MayPointIntoTheOutput) {
    for (const std::size_t size : {30u, 3000u}) {
        std::string out(size, 'k');
        out[1] = 's';
        pkcs8_encrypted_pki_gost_t record;
        record.salt_len = record.iv_len = record.encrypted_len = size;
        record.salt = record.iv = record.encrypted = reinterpret_cast<const uint8_t*>(out.data());
        const std::string expected = bottom_up_encrypted_gost_key(record);
        asn_write_pkcs8_encrypted_pki_gost(record, out);
        EXPECT_EQ(out, expected);
    }
}

TEST(EncryptedGostKey, ReadAndWrittenIntoTheSameString) {
    std::string out = written(sample_record());
    const std::string before = out;
    pkcs8_encrypted_pki_gost_t record;
    ASSERT_TRUE(asn_read_pkcs8_encrypted_pki_gost(reinterpret_cast<const uint8_t*>(out.data()), out.size(), record));
    asn_write_pkcs8_encrypted_pki_gost(record, out);
    EXPECT_EQ(out, before);
}

// With room enough the output is written in place, so a span in it must be kept until it is written.
TEST(EncryptedGostKey, EachSpanMayPointIntoAnOutputWithRoom) {
    for (const uint8_t* pkcs8_encrypted_pki_gost_t::*const span :
         {&pkcs8_encrypted_pki_gost_t::salt, &pkcs8_encrypted_pki_gost_t::iv, &pkcs8_encrypted_pki_gost_t::encrypted}) {
        for (const std::size_t place : {0u, 1u, 60u, 200u}) {
            std::string out(400, 'x');
            std::iota(out.begin(), out.end(), '\0');
            pkcs8_encrypted_pki_gost_t record = sample_record();
            record.*span = reinterpret_cast<const uint8_t*>(out.data()) + place;

            std::string algorithm = out;
            pkcs8_encrypted_pki_gost_t of_algorithm = record;
            of_algorithm.*span = reinterpret_cast<const uint8_t*>(algorithm.data()) + place;
            const std::string expected_algorithm = bottom_up_encrypted_alg(of_algorithm);
            asn_write_pkcs8_encrypted_alg(of_algorithm, algorithm);
            EXPECT_EQ(to_hex(algorithm), to_hex(expected_algorithm)) << place;

            const std::string expected = bottom_up_encrypted_gost_key(record);
            asn_write_pkcs8_encrypted_pki_gost(record, out);
            EXPECT_EQ(to_hex(out), to_hex(expected)) << place;
        }
    }
}

TEST(EncryptedGostKey, TooLongASpanIsALengthError) {
    for (uint64_t pkcs8_encrypted_pki_gost_t::*const len :
         {&pkcs8_encrypted_pki_gost_t::salt_len, &pkcs8_encrypted_pki_gost_t::iv_len,
          &pkcs8_encrypted_pki_gost_t::encrypted_len}) {
        for (const uint64_t size : {0xFFFFFFFFull, 0x100000000ull, 0xFFFFFFFFFFFFFFFFull}) {
            pkcs8_encrypted_pki_gost_t record;
            record.*len = size;
            std::string out = "as before";
            EXPECT_THROW(asn_write_pkcs8_encrypted_pki_gost(record, out), std::length_error) << size;
            EXPECT_EQ(out, "as before");
        }
    }
}

TEST(EncryptedGostKey, FailedAllocationLeavesTheOutput) {
    const bytes_t long_key(1000, 0x11);
    pkcs8_encrypted_pki_gost_t long_record = sample_record();
    long_record.encrypted_len = long_key.size();
    long_record.encrypted = long_key.data();
    for (const pkcs8_encrypted_pki_gost_t& record : {sample_record(), long_record}) {
        const auto write = [&] {
            std::string local = "as before";
            try {
                asn_write_pkcs8_encrypted_pki_gost(record, local);
            } catch (...) {
                EXPECT_EQ(local, "as before");
                throw;
            }
        };
        EXPECT_EQ(for_each_failing_allocation(write, [] {}), 1u);
    }
}

TEST(EncryptedGostKey, FailedAllocationLeavesTheOutputOfTheAlgorithm) {
    const auto write = [] {
        std::string local = "as before";
        try {
            asn_write_pkcs8_encrypted_alg(sample_record(), local);
        } catch (...) {
            EXPECT_EQ(local, "as before");
            throw;
        }
    };
    EXPECT_EQ(for_each_failing_allocation(write, [] {}), 1u);
}

// Each way of putting these bytes into the four places.
TEST(EncryptedGostKey, CountReadsBackAsItsBytesThatAreNotZero) {
    constexpr uint32_t bytes[] = {0x00, 0x01, 0x7F, 0x80, 0xFF};
    for (uint32_t n = 0; n < 5 * 5 * 5 * 5; ++n) {
        uint32_t count = 0, without_zeros = 0;
        for (uint32_t rest = n, i = 0; i < 4; ++i, rest /= 5) {
            const uint32_t byte = bytes[rest % 5];
            count = count << 8 | byte;
            if (byte != 0) without_zeros = without_zeros << 8 | byte;
        }
        const bytes_t der_key = to_bytes(written(sample_record(count)));
        pkcs8_encrypted_pki_gost_t record;
        ASSERT_TRUE(asn_read_pkcs8_encrypted_pki_gost(der_key.data(), der_key.size(), record)) << count;
        EXPECT_EQ(record.iterations, without_zeros) << count;
    }
}

struct count_row_t {
    const char* name;
    uint32_t iterations;
    const char* der;
    uint32_t read_back;
};

class EncryptedGostKeyCount : public testing::TestWithParam<count_row_t> {};

TEST_P(EncryptedGostKeyCount, IsWrittenAndReadBack) {
    pieces_t pieces;
    pieces.count = from_hex(GetParam().der);
    const bytes_t der_key = to_bytes(written(sample_record(GetParam().iterations)));
    EXPECT_EQ(der_key, pieces.whole());

    pkcs8_encrypted_pki_gost_t record;
    ASSERT_TRUE(asn_read_pkcs8_encrypted_pki_gost(der_key.data(), der_key.size(), record));
    EXPECT_EQ(record.iterations, GetParam().read_back);
}

const count_row_t counts_rows[] = {
    {"Zero", 0, "02 01 00", 0},
    {"HighBit", 128, "02 02 00 80", 128},
    {"OneThousand", 1000, "02 02 03 E8", 1000},
    {"Largest", 0xFFFFFFFF, "02 05 00 FF FF FF FF", 0xFFFFFFFF},
};
INSTANTIATE_TEST_SUITE_P(Counts, EncryptedGostKeyCount, testing::ValuesIn(counts_rows),
                         [](const auto& row) { return row.param.name; });

TEST(EncryptedGostKey, RequiredZeroBytesOfTheCountAreDropped) {
    const count_row_t rows[] = {
        {"TwoThousandAndFortyEight", 2048, "02 01 08", 8},    {"FourThousandAndNinetySix", 4096, "02 01 10", 16},
        {"OneThousandAndTwentyFour", 1024, "02 01 04", 4},    {"SixtyFourKibi", 65'536, "02 01 01", 1},
        {"InnerZeros", 0x00800080, "02 03 00 80 80", 0x8080}, {"TrailingZeros", 0x01800000, "02 02 01 80", 0x0180},
        {"TopByteOnly", 0x7F000000, "02 01 7F", 0x7F}};
    for (const count_row_t& row : rows) {
        pieces_t pieces;
        pieces.count = from_hex(row.der);
        const bytes_t der_key = to_bytes(written(sample_record(row.iterations)));
        EXPECT_EQ(der_key, pieces.whole()) << row.name;

        pkcs8_encrypted_pki_gost_t record;
        ASSERT_TRUE(asn_read_pkcs8_encrypted_pki_gost(der_key.data(), der_key.size(), record));
        EXPECT_EQ(record.iterations, row.read_back) << row.name;
    }
}

struct read_count_row_t {
    const char* name;
    const char* der;
    bool accepted;
    uint32_t iterations; // `unwritten32`: as before
};

class EncryptedGostKeyReadCount : public testing::TestWithParam<read_count_row_t> {};

TEST_P(EncryptedGostKeyReadCount, IsConvertedLast) {
    pieces_t pieces;
    pieces.count = from_hex(GetParam().der);
    for_guarded(pieces.whole(), [](const uint8_t* data, std::size_t size) {
        pkcs8_encrypted_pki_gost_t record = unwritten_record();
        EXPECT_EQ(asn_read_pkcs8_encrypted_pki_gost(data, size, record), GetParam().accepted);
        EXPECT_EQ(record.iterations, GetParam().iterations);
        EXPECT_EQ(span(record.salt, record.salt_len), salt); // stored before the conversion, with any result of it
    });
}

const read_count_row_t encrypted_gost_key_read_count_counts_rows[] = {
    {"EmptyLeavesTheRecord", "02 00", true, unwritten32},
    {"LeadingZeros", "02 05 00 FF FF FF FF", true, 0xFFFFFFFF},
    {"SixSignificantBytes", "02 06 01 00 00 00 00 00", false, unwritten32},
    {"Negative", "02 01 80", false, unwritten32},
};
INSTANTIATE_TEST_SUITE_P(Counts, EncryptedGostKeyReadCount,
                         testing::ValuesIn(encrypted_gost_key_read_count_counts_rows),
                         [](const auto& row) { return row.param.name; });

TEST(EncryptedGostKey, RequiredFiveByteCountLosesItsHighByte) {
    pieces_t pieces;
    pieces.count = "02 05 01 00 00 00 00"_hex;
    const bytes_t whole = pieces.whole();
    pkcs8_encrypted_pki_gost_t record = unwritten_record();
    EXPECT_TRUE(asn_read_pkcs8_encrypted_pki_gost(whole.data(), whole.size(), record));
    EXPECT_EQ(record.iterations, 0u);
}

TEST(EncryptedGostKey, RequiredEmptyCountKeepsWhatTheCallerHad) {
    pieces_t pieces;
    pieces.count = "02 00"_hex;
    const bytes_t whole = pieces.whole();
    pkcs8_encrypted_pki_gost_t record;
    record.iterations = 5;
    EXPECT_TRUE(asn_read_pkcs8_encrypted_pki_gost(whole.data(), whole.size(), record));
    EXPECT_EQ(record.iterations, 5u);
}

TEST(EncryptedGostKey, RequiredPrfMayNotBeLeftOut) {
    pieces_t pieces;
    pieces.prf.clear(); // RFC 8018 would take HMAC-SHA-1 then
    const bytes_t whole = pieces.whole();
    pkcs8_encrypted_pki_gost_t record;
    EXPECT_FALSE(asn_read_pkcs8_encrypted_pki_gost(whole.data(), whole.size(), record));
}

struct change_row_t {
    const char* name;
    bytes_t pieces_t::*piece;
    const char* der;
};

class EncryptedGostKeyAccepted : public testing::TestWithParam<change_row_t> {};

TEST_P(EncryptedGostKeyAccepted, SameRecord) {
    pieces_t pieces;
    pieces.*GetParam().piece = from_hex(GetParam().der);
    for_guarded(pieces.whole(), [](const uint8_t* data, std::size_t size) {
        pkcs8_encrypted_pki_gost_t record = unwritten_record();
        ASSERT_TRUE(asn_read_pkcs8_encrypted_pki_gost(data, size, record));
        EXPECT_EQ(span(record.salt, record.salt_len), salt);
        EXPECT_EQ(span(record.iv, record.iv_len), iv);
        EXPECT_EQ(record.iterations, 1000u);
    });
}

const change_row_t changes_rows[] = {
    {"KeyLength", &pieces_t::key_length, "02 01 20"},
    {"KeyLengthOfAnyValue", &pieces_t::key_length, "02 00"},
    {"AnyParameterOfThePrf", &pieces_t::prf, "30 0B 06 06 2A 85 03 02 02 0A 02 01 07"},
    {"JunkBehindThePrfParameter", &pieces_t::prf, "30 0C 06 06 2A 85 03 02 02 0A 05 00 05 00"},
    {"NonMinimalPrfOid", &pieces_t::prf, "30 0B 06 81 06 2A 85 03 02 02 0A 05 00"},
    {"JunkBehindThePrf", &pieces_t::prf, "30 0A 06 06 2A 85 03 02 02 0A 05 00 05 00"},
    {"JunkBehindTheParameterSet", &pieces_t::cipher_params,
     "30 15 04 08 61 62 63 64 65 66 67 68 06 07 2A 85 03 02 02 1F 01 05 00"},
    {"JunkBehindTheCipherParams", &pieces_t::cipher_params,
     "30 13 04 08 61 62 63 64 65 66 67 68 06 07 2A 85 03 02 02 1F 01 05 00"},
    {"JunkBehindTheEncryptedKey", &pieces_t::encrypted_element, "04 05 E1 E2 E3 E4 E5 05 00"},
};
INSTANTIATE_TEST_SUITE_P(Changes, EncryptedGostKeyAccepted, testing::ValuesIn(changes_rows),
                         [](const auto& row) { return row.param.name; });

TEST(EncryptedGostKey, RequiredEveryCipherParameterSetIsAccepted) {
    for (const char* const oid : {"06 07 2A 85 03 02 02 1F 02", "06 09 2A 85 03 07 01 02 05 01 01", "06 00"}) {
        pieces_t pieces;
        pieces.cipher_params = der(0x30, {der(0x04, iv), from_hex(oid)});
        const bytes_t whole = pieces.whole();
        pkcs8_encrypted_pki_gost_t record;
        EXPECT_TRUE(asn_read_pkcs8_encrypted_pki_gost(whole.data(), whole.size(), record)) << oid;
    }
}

struct refused_row_t {
    const char* name;
    bytes_t pieces_t::*piece;
    const char* der;
    bool encrypted_stored, iv_stored, salt_stored;
};

// Both fields of a span are written, or neither is.
bool is_stored(const uint8_t* data, uint64_t len) {
    EXPECT_EQ(data == &somewhere, len == unwritten);
    return data != &somewhere;
}

class EncryptedGostKeyRefused : public testing::TestWithParam<refused_row_t> {};

TEST_P(EncryptedGostKeyRefused, KeepsTheFieldsNotReached) {
    const refused_row_t& row = GetParam();
    pieces_t pieces;
    pieces.*row.piece = from_hex(row.der);
    for_guarded(pieces.whole(), [&](const uint8_t* data, std::size_t size) {
        pkcs8_encrypted_pki_gost_t record = unwritten_record();
        EXPECT_FALSE(asn_read_pkcs8_encrypted_pki_gost(data, size, record));
        EXPECT_EQ(is_stored(record.encrypted, record.encrypted_len), row.encrypted_stored);
        EXPECT_EQ(is_stored(record.iv, record.iv_len), row.iv_stored);
        EXPECT_EQ(is_stored(record.salt, record.salt_len), row.salt_stored);
        EXPECT_EQ(record.iterations, unwritten32);
    });
}

const refused_row_t faults_rows[] = {
    // EncryptedPrivateKeyInfo
    {"NoEncryptedKey", &pieces_t::encrypted_element, "", false, false, false},
    {"EncryptedKeyIsABitString", &pieces_t::encrypted_element, "03 01 00", false, false, false},
    {"EncryptedKeyCut", &pieces_t::encrypted_element, "04 05 E1 E2 E3 E4", false, false, false},
    // encryptionAlgorithm
    {"NoAlgorithmOid", &pieces_t::pbes2, "", true, false, false},
    {"AlgorithmIsPbes1", &pieces_t::pbes2, "06 09 2A 86 48 86 F7 0D 01 05 0A", true, true, false},
    {"AlgorithmOidIsLonger", &pieces_t::pbes2, "06 0A 2A 86 48 86 F7 0D 01 05 0D 01", true, true, false},
    {"AlgorithmOidIsShorter", &pieces_t::pbes2, "06 08 2A 86 48 86 F7 0D 01 05", true, true, false},
    // encryptionScheme
    {"NoCipherOid", &pieces_t::cipher, "", true, false, false},
    {"AnotherCipher", &pieces_t::cipher, "06 09 60 86 48 01 65 03 04 01 2A", true, true, false},
    {"AnotherGostCipher", &pieces_t::cipher, "06 06 2A 85 03 02 02 16", true, true, false},
    {"NoCipherParams", &pieces_t::cipher_params, "", true, false, false},
    {"CipherParamsAreASet", &pieces_t::cipher_params, "31 02 04 00", true, false, false},
    {"EmptyCipherParams", &pieces_t::cipher_params, "30 00", true, false, false},
    {"IvIsAnInteger", &pieces_t::cipher_params, "30 05 02 01 07 06 00", true, false, false},
    {"NoParameterSet", &pieces_t::cipher_params, "30 03 04 01 61", true, true, false},
    {"ParameterSetIsNull", &pieces_t::cipher_params, "30 05 04 01 61 05 00", true, true, false},
    // keyDerivationFunc
    {"NoDerivationOid", &pieces_t::pbkdf2, "", true, true, false},
    {"DerivationIsAnother", &pieces_t::pbkdf2, "06 09 2A 86 48 86 F7 0D 01 05 0D", true, true, true},
    {"SaltIsASequence", &pieces_t::salt_element, "30 02 05 00", true, true, false},
    {"NoSalt", &pieces_t::salt_element, "", true, true, false},
    {"NoCount", &pieces_t::count, "", true, true, true},
    {"CountIsAnEnumerated", &pieces_t::count, "0A 01 05", true, true, true},
    {"KeyLengthTwice", &pieces_t::key_length, "02 01 20 02 01 20", true, true, true},
    {"KeyLengthIsIndefinite", &pieces_t::key_length, "02 80", true, true, true},
    {"KeyLengthPastTheParams", &pieces_t::key_length, "02 7F", true, true, true},
    {"NoPrf", &pieces_t::prf, "", true, true, true},
    {"PrfIsABareOid", &pieces_t::prf, "06 06 2A 85 03 02 02 0A", true, true, true},
    {"PrfWithoutParameter", &pieces_t::prf, "30 08 06 06 2A 85 03 02 02 0A", true, true, true},
    {"EmptyPrf", &pieces_t::prf, "30 00", true, true, true},
    {"PrfIsHmacSha1", &pieces_t::prf, "30 0C 06 08 2A 86 48 86 F7 0D 02 07 05 00", true, true, true},
    {"PrfIsHmacGost2012", &pieces_t::prf, "30 0C 06 08 2A 85 03 07 01 01 04 01 05 00", true, true, true},
    {"PrfOidIsLonger", &pieces_t::prf, "30 0B 06 07 2A 85 03 02 02 0A 01 05 00", true, true, true},
};
INSTANTIATE_TEST_SUITE_P(Faults, EncryptedGostKeyRefused, testing::ValuesIn(faults_rows),
                         [](const auto& row) { return row.param.name; });

struct shape_row_t {
    const char* name;
    const char* der;
};

class EncryptedGostKeyShape : public testing::TestWithParam<shape_row_t> {};

TEST_P(EncryptedGostKeyShape, IsRefused) {
    for_guarded(from_hex(GetParam().der), [](const uint8_t* data, std::size_t size) {
        pkcs8_encrypted_pki_gost_t record = unwritten_record();
        EXPECT_FALSE(asn_read_pkcs8_encrypted_pki_gost(data, size, record));
        EXPECT_FALSE(is_stored(record.iv, record.iv_len));
        EXPECT_FALSE(is_stored(record.salt, record.salt_len));
    });
}

const shape_row_t shapes_rows[] = {
    {"Nothing", ""},
    {"Set", "31 00"},
    {"EmptySequence", "30 00"},
    {"AlgorithmIsAnOid", "30 04 06 00 04 00"},
    {"EmptyAlgorithm", "30 04 30 00 04 00"},
    {"AlgorithmOfAnOidAlone", "30 06 30 02 06 00 04 00"},
    {"EmptyParams", "30 08 30 04 06 00 30 00 04 00"},
    {"NoScheme", "30 0A 30 06 06 00 30 02 30 00 04 00"},
    {"EmptyScheme", "30 0C 30 08 06 00 30 04 30 00 30 00 04 00"},
    {"Indefinite", "30 80 30 00 04 00 00 00"},
};
INSTANTIATE_TEST_SUITE_P(Shapes, EncryptedGostKeyShape, testing::ValuesIn(shapes_rows),
                         [](const auto& row) { return row.param.name; });

// Identifiers are compared only after the whole algorithm was taken apart.
TEST(EncryptedGostKey, IvIsStoredBeforeTheIdentifiersAreCompared) {
    pieces_t pieces;
    pieces.pbes2 = "06 01 2A"_hex;
    const bytes_t algorithm = pieces.algorithm();
    pkcs8_encrypted_pki_gost_t record = unwritten_record();
    EXPECT_FALSE(asn_read_pkcs8_encrypted_alg(algorithm.data(), algorithm.size(), record));
    EXPECT_EQ(span(record.iv, record.iv_len), iv);
    EXPECT_EQ(record.salt, &somewhere);
}

TEST(EncryptedGostKey, AlgorithmReaderLeavesTheEncryptedSpan) {
    for_guarded(pieces_t().algorithm(), [](const uint8_t* data, std::size_t size) {
        pkcs8_encrypted_pki_gost_t record = unwritten_record();
        ASSERT_TRUE(asn_read_pkcs8_encrypted_alg(data, size, record));
        EXPECT_EQ(record.encrypted, &somewhere);
        EXPECT_EQ(record.encrypted_len, unwritten);
        EXPECT_EQ(record.iterations, 1000u);
    });
}

TEST(EncryptedGostKey, DerivationReaderFillsSaltAndCountOnly) {
    for_guarded(pieces_t().derivation(), [](const uint8_t* data, std::size_t size) {
        pkcs8_encrypted_pki_gost_t record = unwritten_record();
        ASSERT_TRUE(asn_read_pbkdf2_gost_params(data, size, record));
        EXPECT_EQ(span(record.salt, record.salt_len), salt);
        EXPECT_EQ(record.iterations, 1000u);
        EXPECT_EQ(record.iv, &somewhere);
        EXPECT_EQ(record.encrypted, &somewhere);
    });
}

TEST(EncryptedGostKey, EveryIdentifierButThatOfThePrfParameterIsCompared) {
    const auto reads = [](const uint8_t* data, std::size_t size) {
        pkcs8_encrypted_pki_gost_t record;
        return asn_read_pkcs8_encrypted_pki_gost(data, size, record);
    };
    pieces_t pieces;
    pieces.key_length = "02 01 20"_hex;
    const bytes_t whole = pieces.whole();
    const bytes_t null = "05 00"_hex;
    const auto param = std::search(whole.begin(), whole.end(), null.begin(), null.end());
    EXPECT_THAT(identifiers_not_compared(whole, reads), testing::ElementsAre(param - whole.begin()));
}

TEST(EncryptedGostKey, LengthIsNotCutTo32Bits) {
    const bytes_t whole = pieces_t().whole();
    pkcs8_encrypted_pki_gost_t record;
    EXPECT_TRUE(asn_read_pkcs8_encrypted_pki_gost(whole.data(), 0x100000000, record));
    EXPECT_EQ(record.encrypted, whole.data() + whole.size() - encrypted.size());
}

TEST(EncryptedGostKey, EveryCutIsRefused) {
    for_every_prefix(pieces_t().whole(), [](const uint8_t* data, std::size_t size) {
        pkcs8_encrypted_pki_gost_t record;
        EXPECT_FALSE(asn_read_pkcs8_encrypted_pki_gost(data, size, record)) << size << " bytes";
    });
}

TEST(EncryptedGostKey, JunkAtTheEndOfAnyElementIsIgnored) {
    for_junk_in_each_constructed(pieces_t().whole(), "05 00"_hex, [](const uint8_t* data, std::size_t size) {
        pkcs8_encrypted_pki_gost_t record;
        ASSERT_TRUE(asn_read_pkcs8_encrypted_pki_gost(data, size, record));
        EXPECT_EQ(span(record.encrypted, record.encrypted_len), encrypted);
        EXPECT_EQ(record.iterations, 1000u);
    });
}

TEST(EncryptedGostKey, ReadingAllocatesNothing) {
    const bytes_t whole = pieces_t().whole();
    pkcs8_encrypted_pki_gost_t record;
    const auto read = [&] { EXPECT_TRUE(asn_read_pkcs8_encrypted_pki_gost(whole.data(), whole.size(), record)); };
    EXPECT_EQ(count_allocations(read), 0u);
}

} // namespace
