#include "alg/digest_info.h"

#include "der/asn_writer.h"
#include "tests/alg/spans.h"
#include "tests/support/alloc_failure.h"
#include "tests/support/guarded.h"
#include "tests/support/hex.h"
#include "tests/support/identifier_changes.h"

#include <pkider/alg.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

using namespace pkider;
using namespace pkider_test;

namespace {

std::string wrapped(std::string digest, pki_alg_t hash) {
    asn_add_alg_to_digest(digest, hash);
    return digest;
}

// The same through asn_writer_t: the prefix must agree with it to the byte.
std::string prefix_by_the_reference(pki_alg_t hash, uint64_t digest_size) {
    asn_writer_t<32> oid(0x06), null(0x05), algorithm(0x30), digest(0x04), info(0x30);
    oid.append(PKI_HASH_ALG_TO_OID(hash).data, PKI_HASH_ALG_TO_OID(hash).len);
    null.finish();
    algorithm.append(oid);
    algorithm.append(null);
    digest.append(nullptr, digest_size);
    info.append(algorithm);
    info.append(digest);
    return {info.data(), info.data() + info.size() - digest_size};
}

const std::string digest32(32, '\x5A');

TEST(DigestInfoWriter, WrapsSha256) {
    EXPECT_EQ(to_hex(wrapped(digest32, PKI_ALG_SHA256)),
              "30 31 30 0D 06 09 60 86 48 01 65 03 04 02 01 05 00 04 20 " + to_hex(digest32));
}

TEST(DigestInfoWriter, WrapsAnEmptyDigest) {
    EXPECT_EQ(to_hex(wrapped("", PKI_ALG_SHA1)), "30 0D 30 09 06 05 2B 0E 03 02 1A 05 00 04 00");
}

TEST(DigestInfoWriter, RequiredNullIsWrittenForGostToo) {
    EXPECT_EQ(to_hex(wrapped("\x11", PKI_ALG_GOST3411_94)), "30 0F 30 0A 06 06 2A 85 03 02 02 09 05 00 04 01 11");
    EXPECT_EQ(to_hex(wrapped("\x11", PKI_ALG_GOST3411_2012_256)),
              "30 11 30 0C 06 08 2A 85 03 07 01 01 02 02 05 00 04 01 11");
}

TEST(DigestInfoWriter, RequiredUnknownHashGetsAnEmptyObjectIdentifier) {
    EXPECT_EQ(to_hex(wrapped("\x11", PKI_ALG_NONE)), "30 09 30 04 06 00 05 00 04 01 11");
    EXPECT_EQ(to_hex(wrapped("\x11", PKI_ALG_RSA)), "30 09 30 04 06 00 05 00 04 01 11");
    EXPECT_EQ(to_hex(wrapped("\x11", PKI_ALG_GOST3411_94_SIGNALCOM)), "30 09 30 04 06 00 05 00 04 01 11");
    EXPECT_EQ(to_hex(wrapped("\x11", static_cast<pki_alg_t>(0x12345678))), "30 09 30 04 06 00 05 00 04 01 11");
}

TEST(DigestInfoWriter, AgreesWithTheBuilderForEveryHash) {
    for (uint32_t hash = 0; hash <= 0x0C; ++hash) {
        for (const uint32_t variant : {0u, 1u, 2u, 4u}) {
            const auto alg = static_cast<pki_alg_t>(variant << 24 | hash << 16);
            for (const std::size_t size : {std::size_t{0}, std::size_t{20}, std::size_t{64}, std::size_t{300}})
                EXPECT_EQ(to_hex(wrapped(std::string(size, 'd'), alg)),
                          to_hex(prefix_by_the_reference(alg, size) + std::string(size, 'd')))
                    << alg;
        }
    }
}

TEST(DigestInfoWriter, AgreesWithTheBuilderForEveryLengthUpTo70000) {
    for (uint64_t size = 0; size <= 70'000; ++size)
        ASSERT_EQ(digest_info_prefix_t(PKI_ALG_SHA512, size).bytes(), prefix_by_the_reference(PKI_ALG_SHA512, size))
            << size;
}

TEST(DigestInfoWriter, RefusesOnlyWhatNoLengthCanSay) {
    // SEQUENCE contents: 13 bytes of algorithm, 6 of the OCTET STRING's header
    EXPECT_EQ(to_hex(digest_info_prefix_t(PKI_ALG_MD5, 0xFFFFFFFF - 20).bytes()),
              "30 84 FF FF FF FF 30 0C 06 08 2A 86 48 86 F7 0D 02 05 05 00 04 84 FF FF FF EB");
    EXPECT_THROW(digest_info_prefix_t(PKI_ALG_MD5, 0xFFFFFFFF - 19), std::length_error);
    EXPECT_THROW(digest_info_prefix_t(PKI_ALG_MD5, 0xFFFFFFFF), std::length_error);
    EXPECT_THROW(digest_info_prefix_t(PKI_ALG_MD5, 0x100000000), std::length_error);
}

TEST(DigestInfoWriter, AFailedAllocationLeavesTheDigest) {
    const std::size_t num_failures = for_each_failing_allocation(
        [&] {
            std::string local = digest32;
            try {
                asn_add_alg_to_digest(local, PKI_ALG_SHA512);
            } catch (const std::bad_alloc&) {
                EXPECT_EQ(local, digest32);
                throw;
            }
        },
        [] {});
    EXPECT_EQ(num_failures, 2u); // the copy of the digest, and the DigestInfo
}

TEST(DigestInfoWriter, AllocatesNothingWhereThereIsRoom) {
    std::string digest = digest32;
    digest.reserve(100);
    EXPECT_EQ(count_allocations([&] { asn_add_alg_to_digest(digest, PKI_ALG_SHA256); }), 0u);
    EXPECT_EQ(digest, wrapped(digest32, PKI_ALG_SHA256));
}

struct read_t {
    bool read;
    span_t oid;
    const uint8_t* der;
};

read_t read(const std::string& digest_info) {
    asn_algorid_t out{unwritten.len, unwritten.data};
    const bool read = asn_read_alg_from_digest(&out, digest_info);
    return {read, {out.oid_len, out.oid}, reinterpret_cast<const uint8_t*>(digest_info.data())};
}

TEST(DigestInfoReader, FindsTheHashOfWhatTheWriterWrote) {
    for (const pki_alg_t hash : {PKI_ALG_MD5, PKI_ALG_SHA1, PKI_ALG_SHA512, PKI_ALG_GOST3411_2012_256}) {
        for (const std::size_t size : {0u, 20u, 64u, 300u, 0x10000u}) {
            // A length of 65,536 is written cut, so that the element it announces is shorter than the one in the
            // output.
            const std::string info = wrapped(std::string(size, 'd'), hash);
            const read_t out = read(info);
            EXPECT_TRUE(out.read) << size;
            EXPECT_EQ(PKI_OID_TO_HASH_ALG(out.oid.data, out.oid.len), hash) << size;
        }
    }
}

struct read_row_t {
    const char* name;
    const char* der;
    bool read;
    int oid_at; // -1: 0 and null
    uint32_t oid_len;
};

class DigestInfoReader : public testing::TestWithParam<read_row_t> {};

TEST_P(DigestInfoReader, Reads) {
    const read_row_t& row = GetParam();
    const std::string info = from_hex(row.der).str();
    const read_t out = read(info);
    EXPECT_EQ(out.read, row.read);
    EXPECT_EQ(out.oid, row.oid_at < 0 ? none : (span_t{row.oid_len, out.der + row.oid_at}));
}

const read_row_t accepted_rows[] = {
    {"Null", "30 0C 30 07 06 03 2A 03 04 05 00 04 01 11", true, 6, 3},
    {"OtherParameters", "30 0E 30 09 06 03 2A 03 04 04 02 AA BB 04 01 11", true, 6, 3},
    {"EmptyObjectIdentifier", "30 08 30 04 06 00 05 00 04 00", true, 6, 0},
    {"MoreParameters", "30 0E 30 09 06 03 2A 03 04 05 00 FF FF 04 01 11", true, 6, 3},
    {"MoreBehindTheDigest", "30 0E 30 07 06 03 2A 03 04 05 00 04 01 11 FF FF", true, 6, 3},
    {"BytesBehindTheElement", "30 0C 30 07 06 03 2A 03 04 05 00 04 01 11 FF", true, 6, 3},
    {"NonMinimalLengths", "30 82 00 0F 30 81 08 06 81 03 2A 03 04 05 00 04 81 01 11", true, 10, 3},
};
INSTANTIATE_TEST_SUITE_P(Accepted, DigestInfoReader, testing::ValuesIn(accepted_rows),
                         [](const auto& row) { return row.param.name; });

const read_row_t refused_rows[] = {
    {"Nothing", "", false, -1, 0},
    {"OneByte", "30", false, -1, 0},
    {"Set", "31 0C 30 07 06 03 2A 03 04 05 00 04 01 11", false, -1, 0},
    {"Indefinite", "30 80 30 07 06 03 2A 03 04 05 00 04 01 11 00 00", false, -1, 0},
    {"FiveLengthOctets", "30 85 00 00 00 00 0C 30 07 06 03 2A 03 04 05 00 04 01 11", false, -1, 0},
    {"PastTheInput", "30 0D 30 07 06 03 2A 03 04 05 00 04 01 11", false, -1, 0},
    {"EmptySequence", "30 00 30 07 06 03 2A 03 04 05 00 04 01 11", false, -1, 0},
    {"AlgorithmNoSequence", "30 0C 31 07 06 03 2A 03 04 05 00 04 01 11", false, -1, 0},
    {"AlgorithmPastTheSequence", "30 03 30 07 06 03 2A 03 04 05 00 04 01 11", false, -1, 0},
    {"NoObjectIdentifier", "30 0C 30 07 04 03 2A 03 04 05 00 04 01 11", false, -1, 0},
    {"ObjectIdentifierPastTheAlgorithm", "30 0C 30 04 06 03 2A 03 04 05 00 04 01 11", false, -1, 0},
    {"NoParameters", "30 0A 30 05 06 03 2A 03 04 04 01 11", false, 6, 3},
    {"ParametersPastTheAlgorithm", "30 0C 30 07 06 03 2A 03 04 05 01 04 01 11", false, 6, 3},
    {"LoneParameterByte", "30 0B 30 06 06 03 2A 03 04 05 04 01 11", false, 6, 3},
    {"NoDigest", "30 09 30 07 06 03 2A 03 04 05 00", false, 6, 3},
    {"DigestBehindTheSequence", "30 09 30 07 06 03 2A 03 04 05 00 04 01 11", false, 6, 3},
    {"DigestNoOctetString", "30 0C 30 07 06 03 2A 03 04 05 00 03 01 11", false, 6, 3},
    {"DigestPastTheSequence", "30 0C 30 07 06 03 2A 03 04 05 00 04 02 11 22", false, 6, 3},
};
INSTANTIATE_TEST_SUITE_P(Refused, DigestInfoReader, testing::ValuesIn(refused_rows),
                         [](const auto& row) { return row.param.name; });

TEST(DigestInfoReader, RefusesAnAlgorithmWithoutParametersButGivesItsHash) {
    const std::string info = from_hex("30 0F 30 0B 06 09 60 86 48 01 65 03 04 02 01 04 00").str();
    const read_t out = read(info);
    EXPECT_FALSE(out.read);
    EXPECT_EQ(PKI_OID_TO_HASH_ALG(out.oid.data, out.oid.len), PKI_ALG_SHA256);
}

TEST(DigestInfoReader, EveryIdentifierButThatOfTheParametersIsCompared) {
    const auto reads = [](const uint8_t* der, std::size_t size) {
        return read(std::string(reinterpret_cast<const char*>(der), size)).read;
    };
    EXPECT_THAT(identifiers_not_compared("30 0C 30 07 06 03 2A 03 04 05 00 04 01 11"_hex, reads),
                testing::ElementsAre(9));
}

TEST(DigestInfoReader, EveryCutIsRefused) {
    const std::string info = wrapped(digest32, PKI_ALG_SHA256);
    for (std::size_t size = 0; size < info.size(); ++size) EXPECT_FALSE(read(info.substr(0, size)).read) << size;
}

TEST(DigestInfoReader, TakesAnElementAtTheEndOfEachConstructedElement) {
    for_junk_in_each_constructed(to_bytes(wrapped(digest32, PKI_ALG_SHA256)), "02 01 AA"_hex,
                                 [](const uint8_t* der, std::size_t size) {
                                     const std::string info(reinterpret_cast<const char*>(der), size);
                                     const read_t out = read(info);
                                     EXPECT_TRUE(out.read);
                                     EXPECT_EQ(PKI_OID_TO_HASH_ALG(out.oid.data, out.oid.len), PKI_ALG_SHA256);
                                 });
}

} // namespace
