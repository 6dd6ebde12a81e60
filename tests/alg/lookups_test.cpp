#include "alg/cert_sign_rows.h"
#include "alg/display_names.h"
#include "alg/hash_rows.h"
#include "alg/ike_rows.h"
#include "alg/key_rows.h"

#include "tests/alg/value_text.h"
#include "tests/support/alloc_failure.h"
#include "tests/support/guarded.h"
#include "tests/support/hex.h"
#include "tests/support/row_scan.h"

#include <pkider/alg.h>

#include <gtest/gtest.h>

#include <random>
#include <span>

using namespace pkider;
using namespace pkider_test;

namespace {

using to_oid_t = const PKI_OID& (*)(pki_alg_t);
using to_alg_t = pki_alg_t (*)(const uint8_t*, uint32_t);

pki_alg_t alg(uint32_t value) {
    return static_cast<pki_alg_t>(value);
}

void check_alg(pki_alg_t value) {
    struct table_t {
        rows_t rows;
        to_oid_t to_oid;
    };
    for (const auto& [rows, to_oid] :
         {table_t{hash_rows, PKI_HASH_ALG_TO_OID}, table_t{key_rows, PKI_KEY_ALG_TO_OID},
          table_t{cert_sign_rows, PKI_CERT_SIGN_ALG_TO_OID}, table_t{ike_rows, asn_form_ike_signalg}}) {
        const PKI_OID& found = to_oid(value);
        const PKI_OID expected = scan(rows, value);
        ASSERT_EQ(found.data, expected.data) << value_text(value);
        ASSERT_EQ(found.len, expected.len) << value_text(value);
    }
    ASSERT_EQ(alg_display_name(value), scan_names(value)) << value_text(value);
}

void check_oid(std::span<const uint8_t> oid) {
    const auto len = static_cast<uint32_t>(oid.size());
    const pki_alg_t hash = scan(hash_rows, oid), key = scan(key_rows, oid), cert_sign = scan(cert_sign_rows, oid);
    ASSERT_EQ(PKI_OID_TO_HASH_ALG(oid.data(), len), hash);
    ASSERT_EQ(PKI_OID_TO_KEY_ALG(oid.data(), len), key);
    ASSERT_EQ(PKI_OID_TO_CERT_SIGN_ALG(oid.data(), len), cert_sign);
    ASSERT_EQ(PKI_OID_TO_ALG(oid.data(), len), hash != 0 ? hash : key != 0 ? key : cert_sign);
}

std::vector<bytes_t> all_oids() {
    std::vector<bytes_t> all;
    for (const rows_t rows : {rows_t(hash_rows), rows_t(key_rows), rows_t(cert_sign_rows)})
        for (const alg_row_t& row : rows) all.emplace_back(row.oid.data, row.oid.data + row.oid.len);
    return all;
}

TEST(AlgLookups, FindWhatAScanFindsForEveryValueOfTheThreeFields) {
    for (uint32_t variant = 0; variant <= 8; ++variant)
        for (uint32_t hash = 0; hash <= 0x10; ++hash)
            for (uint32_t key = 0; key <= 0x120; ++key) check_alg(alg(variant << 24 | hash << 16 | key));
}

TEST(AlgLookups, FindWhatAScanFindsForRandomValues) {
    std::mt19937 random(1);
    for (int i = 0; i < 100'000; ++i) check_alg(alg(static_cast<uint32_t>(random())));
}

TEST(AlgLookups, FindEveryRow) {
    for (const bytes_t& oid : all_oids()) check_oid(oid);
}

TEST(AlgLookups, FindWhatAScanFindsWithEveryByteChanged) {
    for (const bytes_t& oid : all_oids()) {
        for (std::size_t at = 0; at < oid.size(); ++at) {
            for (int byte = 0; byte <= 0xFF; ++byte) {
                bytes_t changed = oid;
                changed[at] = static_cast<uint8_t>(byte);
                check_oid(changed);
            }
        }
    }
}

TEST(AlgLookups, CompareTheLengthToo) {
    for (const bytes_t& oid : all_oids()) {
        for_every_prefix(oid, [](const uint8_t* data, std::size_t size) { check_oid({data, size}); });
        for (std::size_t more = 1; more <= 12; ++more) {
            bytes_t longer = oid, shifted(more, 0x2A);
            longer.resize(oid.size() + more, 0);
            shifted.insert(shifted.end(), oid.begin(), oid.end());
            for_guarded(longer, [](const uint8_t* data, std::size_t size) { check_oid({data, size}); });
            for_guarded(shifted, [](const uint8_t* data, std::size_t size) { check_oid({data, size}); });
        }
    }
}

TEST(AlgLookups, TakeNullForNoBytes) {
    check_oid({});
    EXPECT_EQ(PKI_OID_TO_ALG(nullptr, 0), PKI_ALG_NONE);
}

TEST(AlgLookups, UnknownIsTheEmptyRecord) {
    for (const to_oid_t to_oid :
         {PKI_HASH_ALG_TO_OID, PKI_KEY_ALG_TO_OID, PKI_CERT_SIGN_ALG_TO_OID, asn_form_ike_signalg}) {
        for (const uint32_t value : {0u, 0x01000110u, 0x00010001u, 0xFFFFFFFFu}) {
            EXPECT_EQ(to_oid(alg(value)).data, nullptr);
            EXPECT_EQ(to_oid(alg(value)).len, 0u);
            EXPECT_EQ(&to_oid(alg(value)), &PKI_HASH_ALG_TO_OID(PKI_ALG_NONE)); // one for all
        }
    }
}

TEST(AlgLookups, AllocateNothing) {
    const bytes_t oid = "60 86 48 01 65 03 04 02 01"_hex;
    EXPECT_EQ(count_allocations([&] {
                  EXPECT_EQ(PKI_OID_TO_ALG(oid.data(), 9), PKI_ALG_SHA256);
                  EXPECT_EQ(PKI_HASH_ALG_TO_OID(PKI_ALG_SHA256).len, 9u);
                  EXPECT_EQ(asn_form_ike_signalg(PKI_ALG_SHA256_RSA).len, 15u);
                  EXPECT_EQ(alg_display_name(PKI_ALG_SHA256).size(), 6u);
              }),
              0u);
}

struct oid_row_t {
    const char* name;
    to_alg_t to_alg;
    const char* oid;
    uint32_t alg;
};

class OidToAlg : public testing::TestWithParam<oid_row_t> {};

TEST_P(OidToAlg, GivesTheFirstRow) {
    const bytes_t oid = from_hex(GetParam().oid);
    EXPECT_EQ(value_text(GetParam().to_alg(oid.data(), static_cast<uint32_t>(oid.size()))), value_text(GetParam().alg));
}

const oid_row_t oids_rows[] = {
    {"RequiredGostHashIsStandard", PKI_OID_TO_HASH_ALG, "2A 85 03 02 02 09", 0x00090000},
    {"RequiredGostKeyIsStandard", PKI_OID_TO_KEY_ALG, "2A 85 03 02 02 13", 0x0000010E},
    {"RequiredPssNamesNoHash", PKI_OID_TO_CERT_SIGN_ALG, "2A 86 48 86 F7 0D 01 01 0A", 0x00000002},
    {"SecondOfSha1Rsa", PKI_OID_TO_CERT_SIGN_ALG, "2B 0E 03 02 1D", 0x00020001},
    {"KeyAmongAll", PKI_OID_TO_ALG, "2A 86 48 86 F7 0D 01 01 01", 0x00000001},
    {"HashAmongAll", PKI_OID_TO_ALG, "2B 0E 03 02 1A", 0x00020000},
    {"SignatureAmongAll", PKI_OID_TO_ALG, "2A 85 03 07 01 01 03 03", 0x000B0110},
    {"UnknownAmongAll", PKI_OID_TO_ALG, "2A 03 04", 0},
    {"KeyIsNoHash", PKI_OID_TO_HASH_ALG, "2A 86 48 86 F7 0D 01 01 01", 0},
    {"HashIsNoSignature", PKI_OID_TO_CERT_SIGN_ALG, "2B 0E 03 02 1A", 0},
};
INSTANTIATE_TEST_SUITE_P(Oids, OidToAlg, testing::ValuesIn(oids_rows), [](const auto& row) { return row.param.name; });

struct alg_row_text_t {
    const char* name;
    to_oid_t to_oid;
    uint32_t alg;
    const char* bytes;
};

class AlgToOid : public testing::TestWithParam<alg_row_text_t> {};

TEST_P(AlgToOid, GivesTheFirstRow) {
    const PKI_OID& oid = GetParam().to_oid(alg(GetParam().alg));
    EXPECT_EQ(to_hex(std::span(oid.data, oid.len)), GetParam().bytes);
}

const alg_row_text_t values_rows[] = {
    {"VariantOfAHash", PKI_HASH_ALG_TO_OID, 0x02090000, "2A 85 03 02 02 09"},
    {"VariantWithItsOwnOid", PKI_HASH_ALG_TO_OID, 0x01090000, "2B 06 01 04 01 9C 56 01 05"},
    {"HashWithoutOid", PKI_HASH_ALG_TO_OID, 0x04090000, ""},
    {"FirstOfSha1Rsa", PKI_CERT_SIGN_ALG_TO_OID, 0x00020001, "2A 86 48 86 F7 0D 01 01 05"},
    {"UnlistedCombination", PKI_KEY_ALG_TO_OID, 0x01000110, ""},
    {"HashIsNoKey", PKI_KEY_ALG_TO_OID, 0x00020000, ""},
    {"FirstIkeOfSha1Rsa", asn_form_ike_signalg, 0x00020001, "30 0D 06 09 2A 86 48 86 F7 0D 01 01 05 05 00"},
    {"PssWithSha256", asn_form_ike_signalg, 0x00040002,
     "30 1E 06 09 2A 86 48 86 F7 0D 01 01 0A 30 11 A0 0F 30 0D 06 09 60 86 48 01 65 03 "
     "04 02 01 05 00"},
    {"ShaRsaHasNone", asn_form_ike_signalg, 0x00010001, ""},
};
INSTANTIATE_TEST_SUITE_P(Values, AlgToOid, testing::ValuesIn(values_rows),
                         [](const auto& row) { return row.param.name; });

TEST(AlgDisplayName, NamesValuesWithAndWithoutAnOid) {
    EXPECT_EQ(alg_display_name(alg(0x04090000)), "GOST 34.11-94 (SignalCOM)");
    EXPECT_EQ(alg_display_name(alg(0x00040000)), "SHA256");
    EXPECT_EQ(alg_display_name(alg(0x0209000E)), "GOST R 34.11/34.10-94 (CryptoPro)");
    EXPECT_EQ(alg_display_name(alg(0x12345678)), "unknown");
    EXPECT_EQ(alg_display_name(PKI_ALG_NONE), "unknown");
}

} // namespace
