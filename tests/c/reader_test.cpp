// Every function that reads DER into a record: what it gives, and that a failure gives nothing.
#include "tests/c/c_output.h"
#include "tests/support/alloc_failure.h"
#include "tests/support/der_builder.h"
#include "tests/support/guarded.h"
#include "tests/support/pfx_builder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <new>
#include <vector>

using namespace pkider_test;

namespace {

constexpr uint64_t four_gib = uint64_t{1} << 32;

// The spans of a record in their order. `number` is a field of it that is no span.
struct shown_t {
    std::vector<pkider_bytes_t> spans;
    uint32_t number = 0;
};

struct reader_t {
    const char* name;
    bytes_t der;
    std::vector<const char*> spans; // what is read from `der`
    uint32_t number;
    pkider_status_t at_four_gib;
    std::function<pkider_status_t(const uint8_t*, uint64_t, shown_t*)> read; // null: no record
};

// A row that is printed by its address reads memory that was never written.
void PrintTo(const reader_t& reader, std::ostream* os) {
    *os << reader.name;
}

template <typename Record>
Record unwritten() {
    Record out;
    std::memset(&out, 0x5A, sizeof out);
    return out;
}

// A reader whose record is first filled with what nobody would write.
template <typename Record, pkider_status_t read(const uint8_t*, uint64_t, Record*), typename Show>
auto reading(Show show) {
    return [show](const uint8_t* der, uint64_t size, shown_t* out) {
        if (out == nullptr) return read(der, size, nullptr);
        auto record = unwritten<Record>();
        const pkider_status_t status = read(der, size, &record);
        *out = show(record);
        return status;
    };
}

const bytes_t rsa_key = "30 1B 30 0D 06 09 2A 86 48 86 F7 0D 01 01 01 05 00 03 0A 00 30 07 02 02 00 C3 02 01 03"_hex;
const bytes_t gost_key = "30 24"
                         "  30 1C 06 06 2A 85 03 02 02 13 30 12 06 07 2A 85 03 02 02 23 01 06 07 2A 85 03 02 02 1E 01"
                         "  03 04 00 04 01 77"_hex;
const bytes_t private_key = "30 1F 02 01 00 30 16 06 06 2A 85 03 02 02 13 30 0C"
                            "  06 04 2A 85 03 01 06 04 2A 85 03 02 04 02 04 00"_hex;

const reader_t readers[] = {
    {"DerRead",
     "30 02 05 00"_hex,
     {"05 00"},
     0,
     PKIDER_OK,
     reading<pkider_bytes_t, +[](const uint8_t* der, uint64_t size,
                                 pkider_bytes_t* out) { return pkider_der_read(PKIDER_TAG_SEQUENCE, der, size, out); }>(
         [](const pkider_bytes_t& contents) {
             return shown_t{{contents.data == nullptr ? pkider_bytes_t{} : contents}};
         })},
    {"DigestInfoRead",
     "30 0B 30 07 06 03 2A 03 04 05 00 04 00"_hex,
     {"2A 03 04"},
     0,
     PKIDER_TOO_LONG,
     reading<pkider_bytes_t, pkider_digest_info_read>([](const pkider_bytes_t& oid) { return shown_t{{oid}}; })},
    {"PublicKeyRead",
     rsa_key,
     {"2A 86 48 86 F7 0D 01 01 01", "05 00", "30 07 02 02 00 C3 02 01 03"},
     0,
     PKIDER_TOO_LONG,
     reading<pkider_public_key_t, pkider_public_key_read>([](const pkider_public_key_t& key) {
         return shown_t{{key.alg_oid, key.params, key.key}};
     })},
    {"DsaSignatureRead",
     "30 06 02 01 11 02 01 22"_hex,
     {"11", "22"},
     0,
     PKIDER_TOO_LONG,
     reading<pkider_dsa_signature_t, pkider_dsa_signature_read>([](const pkider_dsa_signature_t& signature) {
         return shown_t{{signature.r, signature.s}};
     })},
    {"IkeSignatureRead",
     "30 07 06 03 2A 03 04 05 00"_hex,
     {"2A 03 04", "05 00"},
     0,
     PKIDER_TOO_LONG,
     reading<pkider_ike_signature_t, pkider_ike_signature_read>([](const pkider_ike_signature_t& signature) {
         return shown_t{{signature.oid, signature.params}};
     })},
    {"PrivateKeyInfoRead",
     private_key,
     {"2A 85 03 02 02 13", "04 00"},
     0,
     PKIDER_TOO_LONG,
     reading<pkider_private_key_info_t, pkider_private_key_info_read>([](const pkider_private_key_info_t& info) {
         return shown_t{{info.alg_oid, info.key}};
     })},
    {"GostPrivateKeyRead",
     der(0x30, {"02 01 00"_hex, "30 0C 06 08 2A 85 03 07 01 01 01 02 05 00"_hex, "04 04 04 02 AB CD"_hex}),
     {"AB CD"},
     2,
     PKIDER_TOO_LONG,
     reading<pkider_gost_private_key_t, pkider_gost_private_key_read>([](const pkider_gost_private_key_t& key) {
         return shown_t{{key.key}, key.key_type};
     })},
    {"EncryptedGostKeyRead",
     encrypted_key("E1 E2"_hex),
     {"51 52 53 54", "61 62 63", "E1 E2"},
     1000,
     PKIDER_OK,
     reading<pkider_encrypted_gost_key_t, pkider_encrypted_gost_key_read>([](const pkider_encrypted_gost_key_t& key) {
         return shown_t{{key.salt, key.iv, key.encrypted}, key.iterations};
     })},
    {"Pkcs12MacRead",
     join({der(0x30, {der(0x30, mac_algorithm), "04 02 D1 D2"_hex}), "04 01 C1"_hex, "02 01 07"_hex}),
     {"06 06 2A 85 03 02 02 09 05 00", "D1 D2", "C1"},
     7,
     PKIDER_OK,
     reading<pkider_pkcs12_mac_t, pkider_pkcs12_mac_read>([](const pkider_pkcs12_mac_t& mac) {
         return shown_t{{mac.digest_alg, mac.digest, mac.salt}, mac.iterations};
     })},
};

void expect_nothing(const shown_t& shown) {
    for (const pkider_bytes_t& span : shown.spans) {
        EXPECT_EQ(span.data, nullptr);
        EXPECT_EQ(span.size, 0U);
    }
    EXPECT_EQ(shown.number, 0U);
}

class CReader : public testing::TestWithParam<reader_t> {};

} // namespace

TEST_P(CReader, GivesSpansOfItsInput) {
    const reader_t& row = GetParam();
    shown_t shown;
    ASSERT_EQ(row.read(row.der.data(), row.der.size(), &shown), PKIDER_OK);
    ASSERT_EQ(shown.spans.size(), row.spans.size());
    for (std::size_t i = 0; i < row.spans.size(); ++i) {
        EXPECT_EQ(to_hex(bytes_of(shown.spans[i])), row.spans[i]);
        EXPECT_GE(shown.spans[i].data, row.der.data());
        EXPECT_LE(shown.spans[i].data + shown.spans[i].size, row.der.data() + row.der.size());
    }
    EXPECT_EQ(shown.number, row.number);
}

TEST_P(CReader, GivesNothingOfAnInputThatIsCut) {
    for_every_prefix(GetParam().der, [](const uint8_t* der, std::size_t size) {
        shown_t shown;
        const pkider_status_t status = GetParam().read(der, size, &shown);
        if (status == PKIDER_OK) return; // a MacData without a count is whole
        EXPECT_EQ(status, PKIDER_MALFORMED) << size << " bytes";
        expect_nothing(shown);
    });
}

TEST_P(CReader, RefusesASizeWithoutBytes) {
    shown_t shown;
    EXPECT_EQ(GetParam().read(nullptr, 1, &shown), PKIDER_ARGUMENT);
    expect_nothing(shown);
    EXPECT_EQ(GetParam().read(nullptr, 0, &shown), PKIDER_MALFORMED);
    expect_nothing(shown);
}

TEST_P(CReader, MustHaveARecord) {
    EXPECT_EQ(GetParam().read(GetParam().der.data(), GetParam().der.size(), nullptr), PKIDER_ARGUMENT);
}

TEST_P(CReader, RefusesMoreBytesThanTheLibraryCounts) {
    shown_t shown;
    EXPECT_EQ(GetParam().read(GetParam().der.data(), four_gib, &shown), GetParam().at_four_gib);
}

INSTANTIATE_TEST_SUITE_P(Of, CReader, testing::ValuesIn(readers), [](const auto& row) { return row.param.name; });

TEST(CDerRead, GivesTheLengthOfContentsThatDoNotFit) {
    const bytes_t der = "04 05 01"_hex;
    pkider_bytes_t contents{der.data(), 9};
    EXPECT_EQ(pkider_der_read(PKIDER_TAG_ANY, der.data(), der.size(), &contents), PKIDER_MALFORMED);
    EXPECT_EQ(contents.data, nullptr);
    EXPECT_EQ(contents.size, 5U);
}

TEST(CDigestInfoRead, ReportsExhaustedMemory) {
    const bytes_t der =
        "30 1F 30 1B 06 17 2A 03 04 05 06 07 08 09 2A 03 04 05 06 07 08 09 2A 03 04 05 06 07 08 05 00 04 00"_hex;
    pkider_bytes_t oid{};
    const std::size_t failed = for_each_failing_allocation(
        [&] {
            if (pkider_digest_info_read(der.data(), der.size(), &oid) == PKIDER_NO_MEMORY) throw std::bad_alloc();
        },
        [&] { EXPECT_EQ(oid.data, nullptr); });
    EXPECT_EQ(failed, 1U);
    EXPECT_EQ(oid.data, der.data() + 6);
}

// Keys

TEST(CPublicKey, HasNoKeyWithoutTheOctetOfUnusedBits) {
    const bytes_t der = "30 09 30 05 06 03 2A 03 04 03 00"_hex;
    pkider_public_key_t key;
    ASSERT_EQ(pkider_public_key_read(der.data(), der.size(), &key), PKIDER_OK);
    EXPECT_EQ(key.key.data, nullptr);
    EXPECT_EQ(key.key.size, 0U);

    pkider_rsa_public_key_t rsa;
    pkider_gost_public_key_t gost;
    EXPECT_EQ(pkider_rsa_public_key_read(&key, &rsa), PKIDER_MALFORMED);
    EXPECT_EQ(pkider_gost_public_key_read(&key, &gost), PKIDER_MALFORMED);
}

TEST(CRsaPublicKey, GivesItsNumbers) {
    pkider_public_key_t key;
    ASSERT_EQ(pkider_public_key_read(rsa_key.data(), rsa_key.size(), &key), PKIDER_OK);
    pkider_rsa_public_key_t rsa;
    ASSERT_EQ(pkider_rsa_public_key_read(&key, &rsa), PKIDER_OK);
    EXPECT_EQ(bytes_of(rsa.modulus), "C3"_hex);
    EXPECT_EQ(bytes_of(rsa.exponent), "03"_hex);
}

TEST(CRsaPublicKey, GivesNothingAfterAFailure) {
    pkider_public_key_t key;
    ASSERT_EQ(pkider_public_key_read(rsa_key.data(), rsa_key.size(), &key), PKIDER_OK);
    key.key.size = 6; // the exponent is cut
    auto rsa = unwritten<pkider_rsa_public_key_t>();
    EXPECT_EQ(pkider_rsa_public_key_read(&key, &rsa), PKIDER_MALFORMED);
    EXPECT_EQ(rsa.modulus.data, nullptr);

    key.key.size = four_gib;
    EXPECT_EQ(pkider_rsa_public_key_read(&key, &rsa), PKIDER_TOO_LONG);
    key.key = {nullptr, 1};
    EXPECT_EQ(pkider_rsa_public_key_read(&key, &rsa), PKIDER_ARGUMENT);
    EXPECT_EQ(pkider_rsa_public_key_read(nullptr, &rsa), PKIDER_ARGUMENT);
    EXPECT_EQ(pkider_rsa_public_key_read(&key, nullptr), PKIDER_ARGUMENT);
}

TEST(CGostPublicKey, GivesParameterSetsAndKey) {
    pkider_public_key_t key;
    ASSERT_EQ(pkider_public_key_read(gost_key.data(), gost_key.size(), &key), PKIDER_OK);
    pkider_gost_public_key_t gost;
    ASSERT_EQ(pkider_gost_public_key_read(&key, &gost), PKIDER_OK);
    EXPECT_EQ(bytes_of(gost.public_key_param_set), "06 07 2A 85 03 02 02 23 01"_hex);
    EXPECT_EQ(bytes_of(gost.digest_param_set), "06 07 2A 85 03 02 02 1E 01"_hex);
    EXPECT_EQ(gost.encryption_param_set.size, 0U);
    EXPECT_EQ(bytes_of(gost.key), "77"_hex);
}

TEST(CGostPublicKey, GivesNothingAfterAFailure) {
    pkider_public_key_t key;
    ASSERT_EQ(pkider_public_key_read(rsa_key.data(), rsa_key.size(), &key), PKIDER_OK);
    auto gost = unwritten<pkider_gost_public_key_t>();
    EXPECT_EQ(pkider_gost_public_key_read(&key, &gost), PKIDER_MALFORMED);
    EXPECT_EQ(gost.public_key_param_set.data, nullptr);
    EXPECT_EQ(gost.key.data, nullptr);

    key.params = {nullptr, 1};
    EXPECT_EQ(pkider_gost_public_key_read(&key, &gost), PKIDER_ARGUMENT);
    key.params = {rsa_key.data(), four_gib};
    EXPECT_EQ(pkider_gost_public_key_read(&key, &gost), PKIDER_TOO_LONG);
    EXPECT_EQ(pkider_gost_public_key_read(nullptr, &gost), PKIDER_ARGUMENT);
    EXPECT_EQ(pkider_gost_public_key_read(&key, nullptr), PKIDER_ARGUMENT);
}

TEST(CWriter, ReportsLengthsAboveFourGib) {
    pkider_output_t out{};
    const pkider_gost_private_key_t key{0, {nullptr, four_gib}};
    EXPECT_EQ(pkider_gost_private_key_write(&key, &out), PKIDER_TOO_LONG);
    const pkider_encrypted_gost_key_t encrypted{{nullptr, four_gib}, 1, {}, {}};
    EXPECT_EQ(pkider_encrypted_gost_key_write(&encrypted, &out), PKIDER_TOO_LONG);
    EXPECT_EQ(pkider_gost_private_key_write(nullptr, &out), PKIDER_ARGUMENT);
    EXPECT_EQ(pkider_encrypted_gost_key_write(nullptr, &out), PKIDER_ARGUMENT);
}
