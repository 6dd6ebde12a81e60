#include "alg/cert_sign_rows.h"
#include "alg/display_names.h"
#include "alg/hash_rows.h"
#include "alg/ike_rows.h"
#include "alg/key_rows.h"
#include "der/asn_writer.h"
#include "der/element_reader.h"

#include "tests/alg/spelled_rows.h"
#include "tests/alg/value_text.h"
#include "tests/support/dotted_oid.h"
#include "tests/support/hex.h"

#include <pkider/oid.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <set>
#include <span>
#include <utility>

using namespace pkider;
using namespace pkider_test;

namespace {

std::string dotted_text(const PKI_OID& oid) {
    std::string out;
    EXPECT_TRUE(oid_asn_to_str_(oid.data, oid.data + oid.len, out));
    return out;
}

bytes_t bytes_of(const PKI_OID& oid) {
    return {oid.data, oid.data + oid.len};
}

void expect_spelled(std::span<const alg_row_t> rows, std::span<const spelled_row_t> spelled) {
    ASSERT_EQ(rows.size(), spelled.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(value_text(rows[i].alg), value_text(spelled[i].alg)) << "row " << i + 1;
        EXPECT_EQ(bytes_of(rows[i].oid), dotted_contents(spelled[i].dotted)) << "row " << i + 1;
        EXPECT_EQ(dotted_text(rows[i].oid), spelled[i].dotted) << "row " << i + 1;
    }
}

TEST(CatalogueRows, HashesAreAsSpelled) {
    expect_spelled(hash_rows, spelled_hash_rows);
}

TEST(CatalogueRows, KeysAreAsSpelled) {
    expect_spelled(key_rows, spelled_key_rows);
}

TEST(CatalogueRows, CertificateSignaturesAreAsSpelled) {
    expect_spelled(cert_sign_rows, spelled_cert_sign_rows);
}

TEST(CatalogueRows, NoTableSharesAnObjectIdentifierWithAnother) {
    for (const alg_row_t& hash : hash_rows) {
        for (const alg_row_t& key : key_rows) EXPECT_NE(bytes_of(hash.oid), bytes_of(key.oid));
        for (const alg_row_t& sign : cert_sign_rows) EXPECT_NE(bytes_of(hash.oid), bytes_of(sign.oid));
    }
    for (const alg_row_t& key : key_rows)
        for (const alg_row_t& sign : cert_sign_rows) EXPECT_NE(bytes_of(key.oid), bytes_of(sign.oid));
}

// A signature is hash | key | variant, and its parts are in their tables, except RSASSA-PSS, which is no key there.
TEST(CatalogueRows, SignaturesAreMadeOfAHashAndAKey) {
    for (const alg_row_t& row : cert_sign_rows) {
        const auto variant = static_cast<uint32_t>(row.alg) & 0xFF000000;
        const auto hash = static_cast<uint32_t>(row.alg) & 0x00FF0000;
        const auto key = static_cast<uint32_t>(row.alg) & 0x0000FFFF;
        if (variant != 0x04000000 && row.alg != PKI_ALG_RSASSA_PSS) { // SignalCOM has no hash of its own
            EXPECT_NE(PKI_HASH_ALG_TO_OID(static_cast<pki_alg_t>(variant | hash)).len, 0u) << value_text(row.alg);
        }
        if (key != PKI_ALG_RSASSA_PSS) {
            EXPECT_NE(PKI_KEY_ALG_TO_OID(static_cast<pki_alg_t>(variant | key)).len, 0u) << value_text(row.alg);
        }
    }
}

// IKE

TEST(IkeRows, AreAsSpelled) {
    ASSERT_EQ(std::size(ike_rows), std::size(spelled_ike_rows));
    for (std::size_t i = 0; i < std::size(ike_rows); ++i) {
        const bytes_t contents = dotted_contents(spelled_ike_rows[i].dotted),
                      params = from_hex(spelled_ike_rows[i].params);
        asn_writer_t<16> oid(0x06);
        oid.append(contents.data(), contents.size());
        asn_writer_t<64> identifier(0x30);
        identifier.append(oid);
        identifier.append(params.data(), params.size());
        EXPECT_EQ(value_text(ike_rows[i].alg), value_text(spelled_ike_rows[i].alg)) << "row " << i + 1;
        EXPECT_EQ(bytes_of(ike_rows[i].oid), bytes_t(identifier.data(), identifier.data() + identifier.size()))
            << "row " << i + 1;
    }
}

TEST(IkeRows, StandBesideTheCertificateSignatures) {
    ASSERT_EQ(std::size(ike_rows), std::size(cert_sign_rows));
    for (std::size_t i = 0; i < std::size(ike_rows); ++i) {
        const PKI_OID& identifier = ike_rows[i].oid;
        asn_element_t input = asn_contents(identifier.data, identifier.len), sequence, oid;
        ASSERT_TRUE(asn_next_element(asn_tag_t::SEQUENCE, input, sequence)) << "row " << i + 1;
        EXPECT_EQ(input.length, 0u) << "row " << i + 1;
        ASSERT_TRUE(asn_next_element(asn_tag_t::OBJECT_IDENTIFIER, sequence, oid)) << "row " << i + 1;
        EXPECT_EQ(ike_rows[i].alg, cert_sign_rows[i].alg) << "row " << i + 1;
        EXPECT_EQ(bytes_t(oid.content, oid.content + oid.length), bytes_of(cert_sign_rows[i].oid)) << "row " << i + 1;
    }
}

// Whole, byte for byte: no mask generation function, no salt length, no trailer.
TEST(IkeRows, RequiredPssNamesNothingButTheHash) {
    const auto ready_made = [](pki_alg_t alg) { return to_hex(bytes_of(asn_form_ike_signalg(alg))); };
    const std::string oid = "06 09 2A 86 48 86 F7 0D 01 01 0A";
    const auto with_hash = [&](const char* last_oid_byte) {
        return "30 1E " + oid + " 30 11 A0 0F 30 0D 06 09 60 86 48 01 65 03 04 02 " + last_oid_byte + " 05 00";
    };
    EXPECT_EQ(ready_made(PKI_ALG_RSASSA_PSS), "30 0B " + oid);
    EXPECT_EQ(ready_made(PKI_ALG_RSASSA_PSS_SHA1), "30 0D " + oid + " 30 00");
    EXPECT_EQ(ready_made(PKI_ALG_RSASSA_PSS_SHA224), with_hash("04"));
    EXPECT_EQ(ready_made(PKI_ALG_RSASSA_PSS_SHA256), with_hash("01"));
    EXPECT_EQ(ready_made(PKI_ALG_RSASSA_PSS_SHA384), with_hash("02"));
    EXPECT_EQ(ready_made(PKI_ALG_RSASSA_PSS_SHA512), with_hash("03"));
}

TEST(IkeRows, ParametersAreWholeElements) {
    for (const alg_row_t& row : ike_rows) {
        asn_element_t input = asn_contents(row.oid.data, row.oid.len), sequence, child;
        ASSERT_TRUE(asn_next_element(asn_tag_t::SEQUENCE, input, sequence));
        while (sequence.length != 0) ASSERT_TRUE(asn_next_element(asn_tag_t::ANY, sequence, child));
    }
}

// A value that shares its object identifier with an earlier one reads as that; plain RSASSA-PSS means SHA-1.
pki_alg_t read_back(pki_alg_t alg) {
    if (alg == PKI_ALG_RSASSA_PSS) return PKI_ALG_RSASSA_PSS_SHA1;
    if ((alg & 0x0000FFFF) == PKI_ALG_RSASSA_PSS) return alg;
    if ((alg & 0xFF000000) == 0x02000000) return static_cast<pki_alg_t>(alg & 0x00FFFFFF);
    return alg;
}

TEST(IkeRows, ReadBackAsTheirValue) {
    for (const alg_row_t& row : ike_rows) {
        asn_ike_signalg_t signalg;
        ASSERT_TRUE(asn_read_ike_signalg(row.oid.data, row.oid.len, signalg));
        EXPECT_EQ(value_text(signalg.to_pki_alg()), value_text(read_back(row.alg)));
    }
}

struct rfc_row_t {
    const char* name;
    uint32_t alg;
    const char* der;
    bool equal;
};

// RFC 7427 appendix A, the identifiers of algorithms that the catalogue has.
class IkeRowsAndRfc7427 : public testing::TestWithParam<rfc_row_t> {};

TEST_P(IkeRowsAndRfc7427, AreEqualOrDifferAsDocumented) {
    const bytes_t ready_made = bytes_of(asn_form_ike_signalg(static_cast<pki_alg_t>(GetParam().alg)));
    EXPECT_EQ(ready_made == from_hex(GetParam().der), GetParam().equal);
}

const rfc_row_t appendix_a_rows[] = {
    {"Sha1Rsa", 0x00020001, "300d 0609 2a86 4886 f70d 0101 0505 00", true},
    {"Sha256Rsa", 0x00040001, "300d 0609 2a86 4886 f70d 0101 0b05 00", true},
    {"Sha384Rsa", 0x00050001, "300d 0609 2a86 4886 f70d 0101 0c05 00", true},
    {"Sha512Rsa", 0x00060001, "300d 0609 2a86 4886 f70d 0101 0d05 00", true},
    {"Sha1Dsa", 0x00020003, "3009 0607 2a86 48ce 3804 03", true},
    {"PssEmptyParameters", 0x00020002, "300d 0609 2a86 4886 f70d 0101 0a30 00", true},
    {"PssDefaultParametersSpelledOut", 0x00020002,
     "303e 0609 2a86 4886 f70d 0101 0a30 31a0 0b30 0906 052b 0e03 021a 0500 a118 3016 0609 2a86 4886 f70d "
     "0101 0830 0906 052b 0e03 021a 0500 a203 0201 14a3 0302 0101",
     false},
    {"PssSha256", 0x00040002,
     "3046 0609 2a86 4886 f70d 0101 0a30 39a0 0f30 0d06 0960 8648 0165 0304 0201 0500 a11c 301a 0609 2a86 "
     "4886 f70d 0101 0830 0d06 0960 8648 0165 0304 0201 0500 a203 0201 20a3 0302 0101",
     false},
};
INSTANTIATE_TEST_SUITE_P(AppendixA, IkeRowsAndRfc7427, testing::ValuesIn(appendix_a_rows),
                         [](const auto& row) { return row.param.name; });

TEST(IkeRowsAndRfc7427, BothFormsOfPssReadAsTheSameAlgorithm) {
    const bytes_t of_the_rfc = from_hex(
        "3046 0609 2a86 4886 f70d 0101 0a30 39a0 0f30 0d06 0960 8648 0165 0304 0201 0500 a11c 301a 0609 2a86 4886 f70d "
        "0101 0830 0d06 0960 8648 0165 0304 0201 0500 a203 0201 20a3 0302 0101");
    asn_ike_signalg_t signalg;
    ASSERT_TRUE(asn_read_ike_signalg(of_the_rfc.data(), static_cast<uint32_t>(of_the_rfc.size()), signalg));
    EXPECT_EQ(signalg.to_pki_alg(), PKI_ALG_RSASSA_PSS_SHA256);
}

// Display names

TEST(DisplayNames, AreSixtyTwoDifferentOnes) {
    EXPECT_EQ(std::size(display_names), 62u);
    std::set<uint32_t> values;
    std::set<std::string_view> names;
    for (const display_name_t& row : display_names) {
        EXPECT_TRUE(values.insert(row.alg).second) << row.name;
        EXPECT_TRUE(names.insert(row.name).second) << row.name;
        EXPECT_EQ(row.name.data()[row.name.size()], '\0');
    }
}

TEST(DisplayNames, RequiredVariantsAreLabelledDifferently) {
    for (const display_name_t& row : display_names) {
        const auto value = static_cast<uint32_t>(row.alg);
        if (value >> 24 != 2) continue;
        const bool is_signature = (value & 0x00FF0000) != 0 && (value & 0x0000FFFF) != 0;
        EXPECT_TRUE(row.name.ends_with(is_signature ? " (CryptoPro)" : " (CPRO)")) << row.name;
    }
    EXPECT_EQ(alg_display_name(PKI_ALG_GOST3410_2001_CPRO), "GOST R 34.10-2001 (CPRO)");
    EXPECT_EQ(alg_display_name(PKI_ALG_GOST3411_94_CPRO), "GOST 34.11-94 (CPRO)");
    EXPECT_EQ(alg_display_name(PKI_ALG_GOST3411_94_GOST3410_2001_CPRO), "GOST R 34.11/34.10-2001 (CryptoPro)");
}

TEST(DisplayNames, EveryValueWithAnObjectIdentifierHasOne) {
    for (const std::span<const alg_row_t> rows :
         {std::span<const alg_row_t>(hash_rows), std::span<const alg_row_t>(key_rows),
          std::span<const alg_row_t>(cert_sign_rows), std::span<const alg_row_t>(ike_rows)})
        for (const alg_row_t& row : rows) EXPECT_NE(alg_display_name(row.alg), "unknown") << value_text(row.alg);
}

// clang-format off
constexpr std::pair<uint32_t, std::string_view> spelled_names[] = {
    {0x00000001, "RSA"},
    {0x00000003, "DSA"},
    {0x00000004, "DHKA"},
    {0x00000005, "OLD DSA"},
    {0x00000006, "DHPN"},
    {0x00000007, "RC2"},
    {0x00000008, "RC4"},
    {0x00000009, "RC5"},
    {0x0000000A, "DES"},
    {0x0000000B, "2KEY 3DES"},
    {0x0000000C, "3KEY 3DES"},
    {0x0000000E, "GOST R 34.10-94"},
    {0x0000010E, "GOST R 34.10-2001"},
    {0x0000010F, "GOST R 34.10-2012 256"},
    {0x00000110, "GOST R 34.10-2012 512"},
    {0x0100000E, "GOST R 34.10-94 (TIK)"},
    {0x0200000E, "GOST R 34.10-94 (CPRO)"},
    {0x0200010E, "GOST R 34.10-2001 (CPRO)"},
    {0x0400000E, "GOST R 34.10-94 (SignalCOM)"},
    {0x0400010E, "GOST R 34.10-2001 (SignalCOM)"},
    {0x00010000, "SHA"},
    {0x00020000, "SHA1"},
    {0x00030000, "SHA224"},
    {0x00040000, "SHA256"},
    {0x00050000, "SHA384"},
    {0x00060000, "SHA512"},
    {0x00070000, "MD2"},
    {0x00080000, "MD5"},
    {0x00090000, "GOST 34.11-94"},
    {0x000A0000, "GOST 34.11-2012 256"},
    {0x000B0000, "GOST 34.11-2012 512"},
    {0x01090000, "GOST 34.11-94 (TIK)"},
    {0x02090000, "GOST 34.11-94 (CPRO)"},
    {0x04090000, "GOST 34.11-94 (SignalCOM)"},
    {0x00010001, "shaRSA"},
    {0x00020001, "sha1RSA"},
    {0x00030001, "sha224RSA"},
    {0x00040001, "sha256RSA"},
    {0x00050001, "sha384RSA"},
    {0x00060001, "sha512RSA"},
    {0x00000002, "RSASSA-PSS"},
    {0x00020002, "sha1RSASSA-PSS"},
    {0x00030002, "sha224RSASSA-PSS"},
    {0x00040002, "sha256RSASSA-PSS"},
    {0x00050002, "sha384RSASSA-PSS"},
    {0x00060002, "sha512RSASSA-PSS"},
    {0x00070001, "md2RSA"},
    {0x00080001, "md5RSA"},
    {0x00010003, "shaDSA"},
    {0x00020003, "sha1DSA"},
    {0x0002000B, "2KEY 3DES SHA1"},
    {0x0002000C, "3KEY 3DES SHA1"},
    {0x0002000D, "sha1HMAC"},
    {0x0009000E, "GOST R 34.11/34.10-94"},
    {0x0009010E, "GOST R 34.11/34.10-2001"},
    {0x000A010F, "GOST R 34.11-2012/34.10-2012 256"},
    {0x000B0110, "GOST R 34.11-2012/34.10-2012 512"},
    {0x0109000E, "GOST R 34.11/34.10-94 (TIK)"},
    {0x0209000E, "GOST R 34.11/34.10-94 (CryptoPro)"},
    {0x0209010E, "GOST R 34.11/34.10-2001 (CryptoPro)"},
    {0x0409000E, "GOST R 34.11/34.10-94 (SignalCOM)"},
    {0x0409010E, "GOST R 34.11/34.10-2001 (SignalCOM)"},
};
// clang-format on

TEST(DisplayNames, AreAsSpelled) {
    ASSERT_EQ(std::size(display_names), std::size(spelled_names));
    for (std::size_t i = 0; i < std::size(spelled_names); ++i) {
        EXPECT_EQ(value_text(display_names[i].alg), value_text(spelled_names[i].first)) << "row " << i + 1;
        EXPECT_EQ(display_names[i].name, spelled_names[i].second) << "row " << i + 1;
        EXPECT_EQ(alg_display_name(static_cast<pki_alg_t>(spelled_names[i].first)), spelled_names[i].second);
    }
}

} // namespace
