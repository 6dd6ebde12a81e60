#include "tests/alg/spans.h"
#include "tests/support/guarded.h"
#include "tests/support/hex.h"
#include "tests/support/identifier_changes.h"

#include <pkider/alg.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace pkider_test;

namespace {

constexpr uint32_t no_key_bits = 0xFFFFFFFF;

// SubjectPublicKeyInfo

struct pubkey_t {
    bool read;
    asn_pubkey_t record;

    span_t alg_oid() const { return {record.alg_oid_len, record.alg_oid}; }
    span_t params() const { return {record.params_len, record.params}; }
    span_t key() const { return {record.key_len, record.key}; }
};

pubkey_t read_pubkey(const uint8_t* der, int32_t len) {
    pubkey_t out{false, {unwritten.len, unwritten.data, unwritten.len, unwritten.data, unwritten.len, unwritten.data}};
    out.read = asn_read_pubkey(der, len, out.record);
    return out;
}

pubkey_t read_pubkey(const uint8_t* der, std::size_t size) {
    return read_pubkey(der, static_cast<int32_t>(size));
}

const char* const small_key = "30 0D 30 07 06 03 2A 03 04 05 00 03 02 00 AA";

TEST(Pubkey, GivesAlgorithmParametersAndKey) {
    for_guarded(from_hex(small_key), [](const uint8_t* der, std::size_t size) {
        const pubkey_t out = read_pubkey(der, size);
        EXPECT_TRUE(out.read);
        EXPECT_EQ(out.alg_oid(), (span_t{3, der + 6}));
        EXPECT_EQ(out.params(), (span_t{2, der + 9}));
        EXPECT_EQ(out.key(), (span_t{1, der + 14}));
    });
}

TEST(Pubkey, GivesNoParametersBehindTheObjectIdentifier) {
    for_guarded("30 0B 30 05 06 03 2A 03 04 03 02 00 AA"_hex, [](const uint8_t* der, std::size_t size) {
        const pubkey_t out = read_pubkey(der, size);
        EXPECT_TRUE(out.read);
        EXPECT_EQ(out.params(), (span_t{0, der + 9}));
        EXPECT_EQ(out.key(), (span_t{1, der + 12}));
    });
}

TEST(Pubkey, GivesAllThatFollowsTheObjectIdentifierAsParameters) {
    for_guarded("30 0F 30 09 06 03 2A 03 04 30 80 FF FF 03 02 00 AA"_hex, [](const uint8_t* der, std::size_t size) {
        const pubkey_t out = read_pubkey(der, size);
        EXPECT_TRUE(out.read);
        EXPECT_EQ(out.params(), (span_t{4, der + 9}));
        EXPECT_EQ(out.key(), (span_t{1, der + 16}));
    });
}

TEST(Pubkey, DoesNotLookAtTheCountOfUnusedBits) {
    for_guarded("30 0C 30 05 06 03 2A 03 04 03 03 FF AA BB"_hex, [](const uint8_t* der, std::size_t size) {
        const pubkey_t out = read_pubkey(der, size);
        EXPECT_TRUE(out.read);
        EXPECT_EQ(out.key(), (span_t{2, der + 12}));
    });
}

TEST(Pubkey, TakesTheCountOfUnusedBitsAlone) {
    for_guarded("30 0A 30 05 06 03 2A 03 04 03 01 00"_hex, [](const uint8_t* der, std::size_t size) {
        const pubkey_t out = read_pubkey(der, size);
        EXPECT_TRUE(out.read);
        EXPECT_EQ(out.key(), (span_t{0, der + 12}));
    });
}

TEST(Pubkey, IgnoresBytesBehindTheBitString) {
    for_guarded("30 0D 30 05 06 03 2A 03 04 03 02 00 AA 05 00 FF"_hex, [](const uint8_t* der, std::size_t size) {
        const pubkey_t out = read_pubkey(der, size);
        EXPECT_TRUE(out.read);
        EXPECT_EQ(out.key(), (span_t{1, der + 12}));
    });
}

TEST(Pubkey, RequiredBitStringMayRunPastTheSequence) {
    for_guarded("30 07 30 05 06 03 2A 03 04 03 02 00 AA"_hex, [](const uint8_t* der, std::size_t size) {
        const pubkey_t out = read_pubkey(der, size);
        EXPECT_TRUE(out.read);
        EXPECT_EQ(out.key(), (span_t{1, der + 12}));
    });
    for_guarded("30 0A 30 05 06 03 2A 03 04 03 04 00 AA BB CC"_hex, [](const uint8_t* der, std::size_t size) {
        const pubkey_t out = read_pubkey(der, size);
        EXPECT_TRUE(out.read);
        EXPECT_EQ(out.key(), (span_t{3, der + 12}));
    });
}

TEST(Pubkey, RequiredEmptyBitStringGivesLengthFFFFFFFF) {
    for_guarded("30 09 30 05 06 03 2A 03 04 03 00"_hex, [](const uint8_t* der, std::size_t size) {
        const pubkey_t out = read_pubkey(der, size);
        EXPECT_TRUE(out.read);
        EXPECT_EQ(out.params(), (span_t{0, der + 9}));
        EXPECT_EQ(out.record.key_len, no_key_bits);
        EXPECT_EQ(reinterpret_cast<uintptr_t>(out.record.key), reinterpret_cast<uintptr_t>(der) + size + 1);
    });
}

TEST(Pubkey, RequiredNegativeLengthIsALargeBound) {
    for_guarded(from_hex(small_key), [](const uint8_t* der, std::size_t size) {
        const pubkey_t expected = read_pubkey(der, size);
        for (const int32_t len : {-1, INT32_MIN}) {
            const pubkey_t out = read_pubkey(der, len);
            EXPECT_TRUE(out.read);
            EXPECT_EQ(out.alg_oid(), expected.alg_oid());
            EXPECT_EQ(out.params(), expected.params());
            EXPECT_EQ(out.key(), expected.key());
        }
    });
}

struct refused_row_t {
    const char* name;
    const char* der;
    int oid_at; // of three bytes, with the parameters after it; -1: unwritten
};

class PubkeyRefuses : public testing::TestWithParam<refused_row_t> {};

TEST_P(PubkeyRefuses, AndStoresWhatItRead) {
    const refused_row_t& row = GetParam();
    for_guarded(from_hex(row.der), [&](const uint8_t* der, std::size_t size) {
        const pubkey_t out = read_pubkey(der, size);
        EXPECT_FALSE(out.read);
        EXPECT_EQ(out.alg_oid(), row.oid_at < 0 ? unwritten : (span_t{3, der + row.oid_at}));
        EXPECT_EQ(out.params(), row.oid_at < 0 ? unwritten : (span_t{2, der + row.oid_at + 3}));
        EXPECT_EQ(out.key(), unwritten);
    });
}

const refused_row_t keys_rows[] = {
    {"Nothing", "", -1},
    {"OneByte", "30", -1},
    {"Set", "31 0D 30 07 06 03 2A 03 04 05 00 03 02 00 AA", -1},
    {"Indefinite", "30 80 30 07 06 03 2A 03 04 05 00 03 02 00 AA 00 00", -1},
    {"FiveLengthOctets", "30 85 00 00 00 00 0D 30 07 06 03 2A 03 04 05 00 03 02 00 AA", -1},
    {"SequenceCut", "30 0E 30 07 06 03 2A 03 04 05 00 03 02 00 AA", -1},
    {"EmptySequence", "30 00 30 07 06 03 2A 03 04 05 00 03 02 00 AA", -1},
    {"AlgorithmNoSequence", "30 0D 31 07 06 03 2A 03 04 05 00 03 02 00 AA", -1},
    {"AlgorithmPastTheSequence", "30 08 30 07 06 03 2A 03 04 05 00 03 02 00 AA", -1},
    {"AlgorithmIndefinite", "30 0D 30 80 06 03 2A 03 04 05 00 03 02 00 AA", -1},
    {"NoObjectIdentifier", "30 04 30 02 05 00", -1},
    {"ObjectIdentifierPastTheAlgorithm", "30 0D 30 04 06 03 2A 03 04 05 00 03 02 00 AA", -1},
    {"NoBitString", "30 09 30 07 06 03 2A 03 04 05 00", 6},
    {"OctetStringForTheBitString", "30 0D 30 07 06 03 2A 03 04 05 00 04 02 00 AA", 6},
    {"BitStringIndefinite", "30 0D 30 07 06 03 2A 03 04 05 00 03 80 00 AA", 6},
    {"BitStringPastTheInput", "30 0D 30 07 06 03 2A 03 04 05 00 03 03 00 AA", 6},
};
INSTANTIATE_TEST_SUITE_P(Keys, PubkeyRefuses, testing::ValuesIn(keys_rows),
                         [](const auto& row) { return row.param.name; });

TEST(Pubkey, EveryCutIsRefused) {
    for_every_prefix(from_hex(small_key), [](const uint8_t* der, std::size_t size) {
        EXPECT_FALSE(read_pubkey(der, size).read) << size << " bytes";
    });
}

TEST(Pubkey, EveryIdentifierButThatOfTheParametersIsCompared) {
    const auto reads = [](const uint8_t* der, std::size_t size) { return read_pubkey(der, size).read; };
    EXPECT_THAT(identifiers_not_compared(from_hex(small_key), reads), testing::ElementsAre(9));
}

// The AlgorithmIdentifier that nearly all keys have is recognised whole, which must not show.
const char* const rsa_key = "30 13 30 0D 06 09 2A 86 48 86 F7 0D 01 01 01 05 00 03 02 00 AA";

TEST(Pubkey, AlgorithmOfRsaIsTakenApartLikeAnother) {
    for_guarded(from_hex(rsa_key), [](const uint8_t* der, std::size_t size) {
        const pubkey_t out = read_pubkey(der, size);
        EXPECT_TRUE(out.read);
        EXPECT_EQ(out.alg_oid(), (span_t{9, der + 6}));
        EXPECT_EQ(out.params(), (span_t{2, der + 15}));
        EXPECT_EQ(out.key(), (span_t{1, der + 20}));
    });
    for_every_prefix(from_hex(rsa_key), [](const uint8_t* der, std::size_t size) {
        EXPECT_FALSE(read_pubkey(der, size).read) << size << " bytes";
    });
    const auto reads = [](const uint8_t* der, std::size_t size) { return read_pubkey(der, size).read; };
    EXPECT_THAT(identifiers_not_compared(from_hex(rsa_key), reads), testing::ElementsAre(15));
}

TEST(Pubkey, AlgorithmOfRsaMayNotRunPastTheSequence) {
    bytes_t der = from_hex(rsa_key);
    for (der[1] = 0; der[1] < 15; ++der[1]) {
        const pubkey_t out = read_pubkey(der.data(), der.size());
        EXPECT_FALSE(out.read);
        EXPECT_EQ(out.alg_oid(), unwritten);
        EXPECT_EQ(out.params(), unwritten);
    }
    EXPECT_TRUE(read_pubkey(der.data(), der.size()).read); // it just fits; the BIT STRING need not
}

TEST(Pubkey, JunkInTheAlgorithmBelongsToTheParameters) {
    for_junk_in_each_constructed(from_hex(small_key), "FF FF"_hex, [](const uint8_t* der, std::size_t size) {
        const pubkey_t out = read_pubkey(der, size);
        const bool in_algorithm = der[3] == 9;
        EXPECT_TRUE(out.read);
        EXPECT_EQ(out.alg_oid(), (span_t{3, der + 6}));
        EXPECT_EQ(out.params(), (span_t{in_algorithm ? 4u : 2u, der + 9}));
        EXPECT_EQ(out.key(), (span_t{1, der + (in_algorithm ? 16 : 14)}));
    });
}

// RSAPublicKey

struct rsa_pubkey_t {
    bool read;
    span_t modulus, exponent;
};

rsa_pubkey_t read_rsa(const uint8_t* key, uint32_t len) {
    asn_pubkey_t pk;
    pk.key = key;
    pk.key_len = len;
    asn_rsa_pubkey_t out{unwritten.len, unwritten.data, unwritten.len, unwritten.data};
    const bool read = asn_read_rsa_pubkey(pk, out);
    return {read, {out.modulus_len, out.modulus}, {out.exponent_len, out.exponent}};
}

struct rsa_row_t {
    const char* name;
    const char* der;
    span_t (*modulus)(const uint8_t* der);
    span_t (*exponent)(const uint8_t* der);
};

class RsaPubkey : public testing::TestWithParam<rsa_row_t> {};

TEST_P(RsaPubkey, Reads) {
    const rsa_row_t& row = GetParam();
    for_guarded(from_hex(row.der), [&](const uint8_t* der, std::size_t size) {
        const rsa_pubkey_t out = read_rsa(der, static_cast<uint32_t>(size));
        EXPECT_TRUE(out.read);
        EXPECT_EQ(out.modulus, row.modulus(der));
        EXPECT_EQ(out.exponent, row.exponent(der));
    });
}

template <uint32_t Len, int At>
span_t at(const uint8_t* der) {
    return {Len, der + At};
}

const rsa_row_t rsa_pubkey_keys_rows[] = {
    {"NoSignByte", "30 07 02 02 43 21 02 01 03", at<2, 4>, at<1, 8>},
    {"SignByteIsDropped", "30 08 02 03 00 C3 21 02 01 03", at<2, 5>, at<1, 9>},
    {"SignByteOfOneByte", "30 07 02 02 00 C3 02 01 03", at<1, 5>, at<1, 8>},
    {"TwoLeadingZeros", "30 08 02 03 00 00 C3 02 01 03", at<1, 6>, at<1, 9>},
    {"ZeroKeepsItsByte", "30 06 02 01 00 02 01 03", at<1, 4>, at<1, 7>},
    {"TwoZerosKeepOne", "30 07 02 02 00 00 02 01 03", at<1, 5>, at<1, 8>},
    {"ZerosInsideStay", "30 09 02 04 00 01 00 00 02 01 03", at<3, 5>, at<1, 10>},
    {"EmptyModulus", "30 05 02 00 02 01 03", at<0, 4>, at<1, 6>},
    {"EmptyExponent", "30 05 02 01 11 02 00", at<1, 4>, at<0, 7>},
    {"ExponentKeepsItsZeros", "30 0A 02 02 00 C3 02 04 00 01 00 01", at<1, 5>, at<4, 8>},
    {"BytesBehindTheExponent", "30 07 02 01 11 02 01 03 FF FF", at<1, 4>, at<1, 7>},
    {"LongForms", "30 81 09 02 81 02 00 C3 02 81 01 03", at<1, 7>, at<1, 11>},
};
INSTANTIATE_TEST_SUITE_P(Keys, RsaPubkey, testing::ValuesIn(rsa_pubkey_keys_rows),
                         [](const auto& row) { return row.param.name; });

TEST(RsaPubkey, RequiredExponentMayRunPastTheSequence) {
    for_guarded("30 03 02 01 11 02 03 01 00 01"_hex, [](const uint8_t* der, std::size_t size) {
        const rsa_pubkey_t out = read_rsa(der, static_cast<uint32_t>(size));
        EXPECT_TRUE(out.read);
        EXPECT_EQ(out.exponent, (span_t{3, der + 7}));
    });
}

TEST(RsaPubkey, RefusesAKeyWithoutBits) {
    // A well-formed key is in memory where the bits would be read from.
    const bytes_t der = "30 09 30 05 06 03 2A 03 04 03 00  FF  30 06 02 01 11 02 01 03"_hex;
    const pubkey_t key = read_pubkey(der.data(), std::size_t{11});
    ASSERT_TRUE(key.read);
    ASSERT_EQ(key.record.key, der.data() + 12);

    asn_rsa_pubkey_t out{unwritten.len, unwritten.data, unwritten.len, unwritten.data};
    EXPECT_FALSE(asn_read_rsa_pubkey(key.record, out));
    EXPECT_EQ((span_t{out.modulus_len, out.modulus}), unwritten);
    EXPECT_EQ((span_t{out.exponent_len, out.exponent}), unwritten);
}

struct rsa_refused_row_t {
    const char* name;
    const char* der;
    span_t (*modulus)(const uint8_t* der);
};

span_t not_written(const uint8_t*) {
    return unwritten;
}
span_t reset(const uint8_t*) {
    return none;
}

class RsaPubkeyRefuses : public testing::TestWithParam<rsa_refused_row_t> {};

TEST_P(RsaPubkeyRefuses, AndStoresWhatItReached) {
    const rsa_refused_row_t& row = GetParam();
    for_guarded(from_hex(row.der), [&](const uint8_t* der, std::size_t size) {
        const rsa_pubkey_t out = read_rsa(der, static_cast<uint32_t>(size));
        EXPECT_FALSE(out.read);
        EXPECT_EQ(out.modulus, row.modulus(der));
        EXPECT_EQ(out.exponent, unwritten);
    });
}

const rsa_refused_row_t rsa_pubkey_refuses_keys_rows[] = {
    {"Nothing", "", not_written},
    {"NoSequence", "02 01 11 02 01 03", not_written},
    {"Indefinite", "30 80 02 01 11 02 01 03 00 00", not_written},
    {"FiveLengthOctets", "30 85 00 00 00 00 06 02 01 11 02 01 03", not_written},
    {"SequenceCut", "30 07 02 01 11 02 01 03", not_written},
    {"EmptySequence", "30 00 02 01 11 02 01 03", reset},
    {"ModulusNoInteger", "30 06 04 01 11 02 01 03", reset},
    {"ModulusPastTheSequence", "30 03 02 02 11 02 01 03", reset},
    {"ModulusIndefinite", "30 06 02 80 11 02 01 03", reset},
    {"NoExponent", "30 03 02 01 11", at<1, 4>},
    {"ModulusKeepsItsZeroWithoutAnExponent", "30 04 02 02 00 C3", at<2, 4>},
    {"ExponentNoInteger", "30 06 02 01 11 04 01 03", at<1, 4>},
    {"ExponentPastTheInput", "30 06 02 01 11 02 02 03", at<1, 4>},
};
INSTANTIATE_TEST_SUITE_P(Keys, RsaPubkeyRefuses, testing::ValuesIn(rsa_pubkey_refuses_keys_rows),
                         [](const auto& row) { return row.param.name; });

TEST(RsaPubkey, EveryCutIsRefused) {
    for_every_prefix("30 0A 02 03 00 C3 21 02 03 01 00 01"_hex, [](const uint8_t* der, std::size_t size) {
        EXPECT_FALSE(read_rsa(der, static_cast<uint32_t>(size)).read) << size << " bytes";
    });
}

TEST(RsaPubkey, EveryIdentifierIsCompared) {
    const auto reads = [](const uint8_t* der, std::size_t size) {
        return read_rsa(der, static_cast<uint32_t>(size)).read;
    };
    EXPECT_THAT(identifiers_not_compared("30 07 02 02 00 C3 02 01 03"_hex, reads), testing::IsEmpty());
}

TEST(RsaPubkey, TakesAnyBytesAtTheEndOfTheSequence) {
    for_junk_in_each_constructed("30 0A 02 03 00 C3 21 02 03 01 00 01"_hex, "FF FF"_hex,
                                 [](const uint8_t* der, std::size_t size) {
                                     const rsa_pubkey_t out = read_rsa(der, static_cast<uint32_t>(size));
                                     EXPECT_TRUE(out.read);
                                     EXPECT_EQ(out.modulus, (span_t{2, der + 5}));
                                     EXPECT_EQ(out.exponent, (span_t{3, der + 9}));
                                 });
}

// GOST public keys

struct gost_pubkey_t {
    bool read;
    span_t public_key, digest, encryption, key;
};

gost_pubkey_t read_gost(const asn_pubkey_t& pk) {
    asn_gost_pubkey_t out{unwritten.len, unwritten.data, unwritten.len, unwritten.data,
                          unwritten.len, unwritten.data, unwritten.len, unwritten.data};
    const bool read = asn_read_gost_pubkey(pk, out);
    return {read,
            {out.public_key_param_set_len, out.public_key_param_set},
            {out.digest_param_set_len, out.digest_param_set},
            {out.encryption_param_set_len, out.encryption_param_set},
            {out.key_len, out.key}};
}

const bytes_t gost_key = "04 02 AA BB"_hex;

asn_pubkey_t with_params(const uint8_t* params, std::size_t size) {
    asn_pubkey_t pk;
    pk.params = params;
    pk.params_len = static_cast<uint32_t>(size);
    pk.key = gost_key.data();
    pk.key_len = static_cast<uint32_t>(gost_key.size());
    return pk;
}

struct gost_row_t {
    const char* name;
    const char* params;
    span_t (*public_key)(const uint8_t* params);
    span_t (*digest)(const uint8_t* params);
    span_t (*encryption)(const uint8_t* params);
    bool read;
};

class GostPubkey : public testing::TestWithParam<gost_row_t> {};

TEST_P(GostPubkey, ReadsParameterSets) {
    const gost_row_t& row = GetParam();
    for_guarded(from_hex(row.params), [&](const uint8_t* params, std::size_t size) {
        const gost_pubkey_t out = read_gost(with_params(params, size));
        EXPECT_EQ(out.read, row.read);
        EXPECT_EQ(out.public_key, row.public_key(params));
        EXPECT_EQ(out.digest, row.digest(params));
        EXPECT_EQ(out.encryption, row.encryption(params));
        EXPECT_EQ(out.key, row.read ? (span_t{2, gost_key.data() + 2}) : unwritten);
    });
}

const auto row_name = [](const auto& row) { return row.param.name; };

const gost_row_t accepted_rows[] = {
    {"ThreeSets", "30 0F 06 03 2A 03 04 06 03 2A 03 05 06 03 2A 03 06", at<5, 2>, at<5, 7>, at<5, 12>, true},
    {"TwoSets", "30 0A 06 03 2A 03 04 06 03 2A 03 05", at<5, 2>, at<5, 7>, reset, true},
    {"EmptySets", "30 06 06 00 06 00 06 00", at<2, 2>, at<2, 4>, at<2, 6>, true},
    {"ThirdIsNoObjectIdentifier", "30 0C 06 03 2A 03 04 06 03 2A 03 05 05 00", at<5, 2>, at<5, 7>, reset, true},
    {"ThirdIsOneByte", "30 0B 06 03 2A 03 04 06 03 2A 03 05 06", at<5, 2>, at<5, 7>, reset, true},
    {"ThirdPastTheSequence", "30 0C 06 03 2A 03 04 06 03 2A 03 05 06 03 2A 03 06", at<5, 2>, at<5, 7>, reset, true},
    {"ThirdIndefinite", "30 0E 06 03 2A 03 04 06 03 2A 03 05 06 80 00 00", at<5, 2>, at<5, 7>, reset, true},
    {"ThirdBehindTheSequence", "30 0A 06 03 2A 03 04 06 03 2A 03 05 06 03 2A 03 06", at<5, 2>, at<5, 7>, reset, true},
    {"BytesBehindTheThird", "30 11 06 03 2A 03 04 06 03 2A 03 05 06 03 2A 03 06 FF FF", at<5, 2>, at<5, 7>, at<5, 12>,
     true},
    {"LongForms", "30 81 0C 06 81 03 2A 03 04 06 82 00 02 2A 03", at<6, 3>, at<6, 9>, reset, true},
};
INSTANTIATE_TEST_SUITE_P(Accepted, GostPubkey, testing::ValuesIn(accepted_rows), row_name);

const gost_row_t refused_rows[] = {
    {"NoParameters", "", not_written, not_written, not_written, false},
    {"Null", "05 00", not_written, not_written, not_written, false},
    {"Indefinite", "30 80 06 03 2A 03 04 06 03 2A 03 05 00 00", not_written, not_written, not_written, false},
    {"FiveLengthOctets", "30 85 00 00 00 00 0A 06 03 2A 03 04 06 03 2A 03 05", not_written, not_written, not_written,
     false},
    {"SequenceCut", "30 0B 06 03 2A 03 04 06 03 2A 03 05", not_written, not_written, not_written, false},
    {"EmptySequence", "30 00 06 03 2A 03 04 06 03 2A 03 05", not_written, not_written, not_written, false},
    {"FirstNoObjectIdentifier", "30 0A 04 03 2A 03 04 06 03 2A 03 05", not_written, not_written, not_written, false},
    {"FirstPastTheSequence", "30 04 06 03 2A 03 04 06 03 2A 03 05", not_written, not_written, not_written, false},
    {"OneSet", "30 05 06 03 2A 03 04", at<5, 2>, not_written, not_written, false},
    {"SecondBehindTheSequence", "30 05 06 03 2A 03 04 06 03 2A 03 05", at<5, 2>, not_written, not_written, false},
    {"SecondNoObjectIdentifier", "30 0A 06 03 2A 03 04 04 03 2A 03 05", at<5, 2>, not_written, not_written, false},
    {"SecondIndefinite", "30 0A 06 03 2A 03 04 06 80 2A 00 00", at<5, 2>, not_written, not_written, false},
};
INSTANTIATE_TEST_SUITE_P(Refused, GostPubkey, testing::ValuesIn(refused_rows), row_name);

struct gost_key_row_t {
    const char* name;
    const char* key;
    span_t (*contents)(const uint8_t* key);
    bool read;
};

class GostPubkeyBits : public testing::TestWithParam<gost_key_row_t> {};

TEST_P(GostPubkeyBits, HoldAnOctetString) {
    const gost_key_row_t& row = GetParam();
    const bytes_t params = "30 0A 06 03 2A 03 04 06 03 2A 03 05"_hex;
    for_guarded(from_hex(row.key), [&](const uint8_t* key, std::size_t size) {
        asn_pubkey_t pk = with_params(params.data(), params.size());
        pk.key = key;
        pk.key_len = static_cast<uint32_t>(size);
        const gost_pubkey_t out = read_gost(pk);
        EXPECT_EQ(out.read, row.read);
        EXPECT_EQ(out.public_key, (span_t{5, params.data() + 2}));
        EXPECT_EQ(out.digest, (span_t{5, params.data() + 7}));
        EXPECT_EQ(out.encryption, none);
        EXPECT_EQ(out.key, row.contents(key));
    });
}

const gost_key_row_t gost_pubkey_bits_keys_rows[] = {
    {"AsStored", "04 03 01 02 03", at<3, 2>, true},
    {"Empty", "04 00", at<0, 2>, true},
    {"BytesBehind", "04 01 01 FF", at<1, 2>, true},
    {"LongForm", "04 81 01 01", at<1, 3>, true},
    {"Nothing", "", not_written, false},
    {"NoOctetString", "30 03 01 02 03", not_written, false},
    {"Indefinite", "04 80 01 00 00", not_written, false},
    {"Cut", "04 04 01 02 03", not_written, false},
};
INSTANTIATE_TEST_SUITE_P(Keys, GostPubkeyBits, testing::ValuesIn(gost_pubkey_bits_keys_rows), row_name);

TEST(GostPubkey, FillsTheParameterSetsOfAKeyWithoutBits) {
    // A well-formed key is in memory where the bits would be read from.
    const bytes_t der = "30 15 30 11 06 03 2A 03 04 30 0A 06 03 2A 03 04 06 03 2A 03 05 03 00  FF  04 01 AA"_hex;
    const pubkey_t key = read_pubkey(der.data(), std::size_t{23});
    ASSERT_TRUE(key.read);
    ASSERT_EQ(key.record.key_len, no_key_bits);
    ASSERT_EQ(key.record.key, der.data() + 24);

    const gost_pubkey_t out = read_gost(key.record);
    EXPECT_FALSE(out.read);
    EXPECT_EQ(out.public_key, (span_t{5, der.data() + 11}));
    EXPECT_EQ(out.digest, (span_t{5, der.data() + 16}));
    EXPECT_EQ(out.encryption, none);
    EXPECT_EQ(out.key, unwritten);
}

// With another identifier the third set is taken as absent.
TEST(GostPubkey, IdentifiersOfTheParametersButTheLastAreCompared) {
    const auto reads = [](const uint8_t* params, std::size_t size) {
        return read_gost(with_params(params, size)).read;
    };
    EXPECT_THAT(identifiers_not_compared("30 0F 06 03 2A 03 04 06 03 2A 03 05 06 03 2A 03 06"_hex, reads),
                testing::ElementsAre(12));
}

TEST(GostPubkey, EveryCutOfTheParametersIsRefused) {
    for_every_prefix("30 0A 06 03 2A 03 04 06 03 2A 03 05"_hex, [](const uint8_t* params, std::size_t size) {
        EXPECT_FALSE(read_gost(with_params(params, size)).read) << size << " bytes";
    });
}

} // namespace
