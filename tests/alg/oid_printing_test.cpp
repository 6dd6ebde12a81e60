#include "tests/support/alloc_failure.h"
#include "tests/support/guarded.h"
#include "tests/support/hex.h"
#include "tests/support/parsed_map.h"

#include <pkider/oid.h>

#include <gtest/gtest.h>

#include <string>

using namespace pkider_test;

namespace {

constexpr bool with_dotted = true;
const oid_map_handle_t no_map;

struct print_row_t {
    const char* name;
    const char* der;
    oid_map_handle_t map;
    const char* text;             // of what was "x"
    const char* text_with_dotted; // likewise
    bool printed;
};

class OidToPrintable : public testing::TestWithParam<print_row_t> {};

TEST_P(OidToPrintable, PrintsBehindOrInPlaceOfX) {
    const print_row_t& row = GetParam();
    for_guarded(from_hex(row.der), [&](const uint8_t* der, std::size_t size) {
        std::string plain = "x", dotted = "x";
        EXPECT_EQ(asn_oid_to_printable(der, static_cast<uint32_t>(size), plain, !with_dotted, row.map), row.printed);
        EXPECT_EQ(asn_oid_to_printable(der, static_cast<uint32_t>(size), dotted, with_dotted, row.map), row.printed);
        EXPECT_EQ(plain, row.text);
        EXPECT_EQ(dotted, row.text_with_dotted);
    });
}

const auto row_name = [](const auto& row) { return row.param.name; };

#define SHA256_OID "06 09 60 86 48 01 65 03 04 02 01"

const print_row_t short_names_rows[] = {
    {"FromTheMap", "06 03 55 04 03", OID_MAP_HANDLE_DEFAULT, "CN", "CN", true},
    {"BytesBehindAreIgnored", "06 03 55 04 03 FF", OID_MAP_HANDLE_DEFAULT, "CN", "CN", true},
    {"LongForm", "06 81 03 55 04 03", OID_MAP_HANDLE_DEFAULT, "CN", "CN", true},
    {"NoMapNoName", "06 03 55 04 03", no_map, "x2.5.4.3", "x2.5.4.3", true},
};
INSTANTIATE_TEST_SUITE_P(ShortNames, OidToPrintable, testing::ValuesIn(short_names_rows), row_name);

const print_row_t algorithms_rows[] = {
    {"Hash", SHA256_OID, no_map, "SHA256", "SHA256(2.16.840.1.101.3.4.2.1)", true},
    {"ShortIdentifier", "06 05 2B 0E 03 02 1A", no_map, "SHA1", "SHA1(1.3.14.3.2.26)", true},
    {"BytesBehindAreIgnored", SHA256_OID "06 80", no_map, "SHA256", "SHA256(2.16.840.1.101.3.4.2.1)", true},
    {"MapWithoutIt", SHA256_OID, OID_MAP_HANDLE_DEFAULT, "SHA256", "SHA256(2.16.840.1.101.3.4.2.1)", true},
    {"Key", "06 09 2A 86 48 86 F7 0D 01 01 01", no_map, "RSA", "RSA(1.2.840.113549.1.1.1)", true},
    {"Signature", "06 09 2A 86 48 86 F7 0D 01 01 0A", no_map, "RSASSA-PSS", "RSASSA-PSS(1.2.840.113549.1.1.10)", true},
    {"StandardNotItsVariant", "06 06 2A 85 03 02 02 03", no_map, "GOST R 34.11/34.10-2001",
     "GOST R 34.11/34.10-2001(1.2.643.2.2.3)", true},
    {"VariantWithItsOwnOid", "06 0A 2B 06 01 04 01 AD 59 01 03 02", no_map, "GOST R 34.11/34.10-2001 (SignalCOM)",
     "GOST R 34.11/34.10-2001 (SignalCOM)(1.3.6.1.4.1.5849.1.3.2)", true},
};
INSTANTIATE_TEST_SUITE_P(Algorithms, OidToPrintable, testing::ValuesIn(algorithms_rows), row_name);

const print_row_t refused_rows[] = {
    {"Nothing", "", no_map, "x", "x", false},
    {"OneByte", "06", no_map, "x", "x", false},
    {"Null", "05 00", no_map, "x", "x", false},
    {"Indefinite", "06 80", no_map, "x", "x", false},
    {"IndefiniteWithContents", "06 80 2A 03 00 00", no_map, "x", "x", false},
    {"TooShort", "06 05 2A", no_map, "x", "x", false},
    {"KnownButCut", "06 04 55 04 03", OID_MAP_HANDLE_DEFAULT, "x", "x", false},
    {"FiveLengthOctets", "06 85 00 00 00 00 03 55 04 03", OID_MAP_HANDLE_DEFAULT, "x", "x", false},
    {"EmptyContents", "06 00", no_map, "x", "x", false},
    {"EmptyContentsWithAMap", "06 00", OID_MAP_HANDLE_DEFAULT, "x", "x", false},
    {"LastArcCut", "06 02 2A 86", no_map, "x1.2.", "x1.2.", false},
};
INSTANTIATE_TEST_SUITE_P(Refused, OidToPrintable, testing::ValuesIn(refused_rows), row_name);

TEST(OidToPrintable, RequiredDottedTextIsAppended) {
    const bytes_t unknown = "06 03 2A 03 04"_hex, known = "06 03 55 04 03"_hex;
    std::string out = "x";
    EXPECT_TRUE(asn_oid_to_printable(unknown.data(), 5, out, !with_dotted, OID_MAP_HANDLE_DEFAULT));
    EXPECT_EQ(out, "x1.2.3.4");
    EXPECT_TRUE(asn_oid_to_printable(unknown.data(), 5, out, with_dotted, OID_MAP_HANDLE_DEFAULT));
    EXPECT_EQ(out, "x1.2.3.41.2.3.4");
    EXPECT_TRUE(asn_oid_to_printable(known.data(), 5, out, with_dotted, OID_MAP_HANDLE_DEFAULT));
    EXPECT_EQ(out, "CN");
}

TEST(OidToPrintable, ShortNameComesBeforeTheNameOfTheAlgorithm) {
    const parsed_map_t map("2.16.840.1.101.3.4.2.1 = my-hash, My hash\n");
    const bytes_t sha256 = from_hex(SHA256_OID);
    std::string out = "x";
    EXPECT_TRUE(asn_oid_to_printable(sha256.data(), static_cast<uint32_t>(sha256.size()), out, with_dotted, map));
    EXPECT_EQ(out, "MY-HASH");
}

TEST(OidToPrintable, RequiredAnEmptyShortNameIsPrintedUnchanged) {
    const parsed_map_t map("2.5.4.3 = ,x\n2.16.840.1.101.3.4.2.1 = ,y\n");
    for (const bytes_t& der : {"06 03 55 04 03"_hex, from_hex(SHA256_OID)}) {
        for (const bool dotted : {!with_dotted, with_dotted}) {
            std::string out = "x";
            EXPECT_TRUE(asn_oid_to_printable(der.data(), static_cast<uint32_t>(der.size()), out, dotted, map));
            EXPECT_EQ(out, "");
        }
    }
}

TEST(OidToPrintable, TheObjectIdentifierMayStandInAReplacedText) {
    const std::string der = from_hex(SHA256_OID).str();
    const auto print = [&](bool dotted, oid_map_handle_t map) {
        std::string out = der;
        EXPECT_TRUE(asn_oid_to_printable(reinterpret_cast<const uint8_t*>(out.data()),
                                         static_cast<uint32_t>(out.size()), out, dotted, map));
        return out;
    };
    EXPECT_EQ(print(!with_dotted, no_map), "SHA256");
    EXPECT_EQ(print(with_dotted, no_map), "SHA256(2.16.840.1.101.3.4.2.1)");
}

TEST(OidToPrintable, AFailedAllocationLeavesTheText) {
    const bytes_t signalcom = "06 0A 2B 06 01 04 01 AD 59 01 03 02"_hex;
    const auto print = [&](bool dotted) {
        std::string out = "x";
        try {
            EXPECT_TRUE(asn_oid_to_printable(signalcom.data(), 12, out, dotted, no_map));
        } catch (const std::bad_alloc&) {
            EXPECT_EQ(out, "x");
            throw;
        }
    };
    EXPECT_EQ(for_each_failing_allocation([&] { print(with_dotted); }, [] {}), 1u);
    EXPECT_EQ(for_each_failing_allocation([&] { print(!with_dotted); }, [] {}), 1u);
}

TEST(OidToPrintable, AFailedAllocationForAShortNameLeavesTheText) {
    const parsed_map_t map("1.2.3 = " + std::string(100, 'N'));
    const bytes_t der = "06 02 2A 03"_hex;
    const auto print = [&] {
        std::string out = "x";
        try {
            EXPECT_TRUE(asn_oid_to_printable(der.data(), 4, out, with_dotted, map));
        } catch (const std::bad_alloc&) {
            EXPECT_EQ(out, "x");
            throw;
        }
        EXPECT_EQ(out.size(), 100u);
    };
    EXPECT_EQ(for_each_failing_allocation(print, [] {}), 1u);
}

TEST(OidToPrintable, TakesNullForNoBytes) {
    std::string out = "x";
    EXPECT_FALSE(asn_oid_to_printable(nullptr, 0, out, with_dotted, OID_MAP_HANDLE_DEFAULT));
    EXPECT_EQ(out, "x");
}

TEST(OidToPrintable, EveryCutIsRefused) {
    for_every_prefix(from_hex(SHA256_OID), [](const uint8_t* der, std::size_t size) {
        std::string out = "x";
        EXPECT_FALSE(asn_oid_to_printable(der, static_cast<uint32_t>(size), out, with_dotted, OID_MAP_HANDLE_DEFAULT));
        EXPECT_EQ(out, "x");
    });
}

} // namespace
