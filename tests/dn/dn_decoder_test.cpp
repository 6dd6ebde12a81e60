#include "dn/dn_decoder.h"

#include "der/checked_size.h"
#include "tests/support/alloc_failure.h"
#include "tests/support/der_builder.h"
#include "tests/support/guarded.h"
#include "tests/support/hex.h"
#include "tests/support/parsed_map.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#ifdef __linux__
#include <sys/mman.h>
#endif

using namespace pkider;
using namespace pkider_test;

namespace {

const std::string before = "before|";
constexpr oid_map_handle_t no_map{};

/// A Name of one attribute, CN, with the given bytes after its type.
bytes_t name_with_value(const bytes_t& value) {
    return der(0x30, der(0x31, der(0x30, {"06 03 55 04 03"_hex, value})));
}

struct printed_t {
    asn_dn_result_t result;
    std::string text; // what was appended
};

printed_t print(const uint8_t* der, std::size_t size, PrintableDnOrder order, oid_map_handle_t map) {
    std::string out = before;
    printed_t printed;
    printed.result = asn_dn_to_printable_r(der, static_cast<uint32_t>(size), out, order, map);
    EXPECT_EQ(out.substr(0, before.size()), before);
    printed.text = out.substr(before.size());

    std::string exported = before;
    EXPECT_EQ(asn_dn_to_printable(der, static_cast<uint32_t>(size), exported, order, map), printed.result.code == 0);
    EXPECT_EQ(exported, out);
    return printed;
}

printed_t print(const bytes_t& der, PrintableDnOrder order = DN_ORDER_AS_ENCODED,
                oid_map_handle_t map = OID_MAP_HANDLE_DEFAULT) {
    return print(der.data(), der.size(), order, map);
}

struct print_row_t {
    const char* name;
    const char* der;
    const char* text;
    const char* reversed;
};

class DnDecoder : public testing::TestWithParam<print_row_t> {};

TEST_P(DnDecoder, PrintsTheLine) {
    const print_row_t& row = GetParam();
    for_guarded(from_hex(row.der), [&row](const uint8_t* der, std::size_t size) {
        for (const PrintableDnOrder order : {DN_ORDER_AS_ENCODED, DN_ORDER_REVERSED}) {
            const printed_t printed = print(der, size, order, OID_MAP_HANDLE_DEFAULT);
            EXPECT_EQ(printed.result.code, 0);
            EXPECT_EQ(printed.result.position, 0);
            EXPECT_EQ(printed.text, order == DN_ORDER_REVERSED ? row.reversed : row.text);
        }
    });
}

const print_row_t names_rows[] = {
    {"Empty", "30 00", "", ""},
    {"BytesBehindTheName", "30 00 FF", "", ""},
    {"One", "30 0E 31 0C 30 0A 06 03 55 04 03 13 03 61 62 63", "CN=abc", "CN=abc"},
    {"TwoRdns", "30 18 31 0A 30 08 06 03 55 04 03 13 01 61 31 0A 30 08 06 03 55 04 0A 13 01 62", "CN=a,O=b",
     "O=b,CN=a"},
    {"TwoMembers", "30 16 31 14 30 08 06 03 55 04 03 13 01 61 30 08 06 03 55 04 0A 13 01 62", "CN=a+O=b", "CN=a+O=b"},
    {"MembersKeepTheirOrder",
     "30 2E 31 0A 30 08 06 03 55 04 03 13 01 61"
     "31 14 30 08 06 03 55 04 0A 13 01 62 30 08 06 03 55 04 0B 13 01 63"
     "31 0A 30 08 06 03 55 04 06 13 01 64",
     "CN=a,O=b+OU=c,C=d", "C=d,O=b+OU=c,CN=a"},
    {"UnknownTypeIsDotted", "30 0C 31 0A 30 08 06 03 55 04 7F 13 01 61", "2.5.4.127=a", "2.5.4.127=a"},
    {"LargeSecondArcIsSplitAnew", "30 0B 31 09 30 07 06 02 88 37 13 01 61", "26.39=a", "26.39=a"},
    // No map knows these contents, but their dotted text is that of CN
    {"ArcsLoseTheirHighBits", "30 10 31 0E 30 0C 06 07 55 04 90 80 80 80 03 13 01 61", "2.5.4.3=a", "2.5.4.3=a"},
    {"LeadingZeroOfAnArcIsSkipped", "30 0D 31 0B 30 09 06 04 80 55 04 03 13 01 61", "2.5.4.3=a", "2.5.4.3=a"},
    {"StateIsPrintedByItsFirstName", "30 0C 31 0A 30 08 06 03 55 04 08 13 01 61", "ST=a", "ST=a"},
    {"LongFormLengths", "30 81 11 31 82 00 0D 30 81 0A 06 81 03 55 04 03 13 81 01 61", "CN=a", "CN=a"},
    {"RequiredAnEmptySetPrintsNothing", "30 02 31 00", "", ""},
    {"TwoEmptySets", "30 04 31 00 31 00", ",", ","},
    {"EmptySetBehindAnRdn", "30 0E 31 0A 30 08 06 03 55 04 03 13 01 61 31 00", "CN=a,", ",CN=a"},
};
INSTANTIATE_TEST_SUITE_P(Names, DnDecoder, testing::ValuesIn(names_rows),
                         [](const auto& row) { return row.param.name; });

TEST(DnDecoder, TypesAreDottedWithoutAMap) {
    EXPECT_EQ(print(name_with_value("13 03 61 62 63"_hex), DN_ORDER_AS_ENCODED, no_map).text, "2.5.4.3=abc");
}

TEST(DnDecoder, EveryOtherOrderIsAsEncoded) {
    const bytes_t der = "30 18 31 0A 30 08 06 03 55 04 03 13 01 61 31 0A 30 08 06 03 55 04 0A 13 01 62"_hex;
    EXPECT_EQ(print(der, static_cast<PrintableDnOrder>(7)).text, "CN=a,O=b");
    EXPECT_EQ(print(der, static_cast<PrintableDnOrder>(0xFFFFFFFF)).text, "CN=a,O=b");
}

TEST(DnDecoder, RequiredAnEmptyShortNameIsPrintedUnchanged) {
    const parsed_map_t map("2.5.4.3 = ,x");
    EXPECT_EQ(print(name_with_value("13 03 61 62 63"_hex), DN_ORDER_AS_ENCODED, map).text, "=abc");
}

TEST(DnDecoder, ShortNamesMayBeLong) {
    const parsed_map_t map("2.5.4.3 = " + std::string(2'000, 'N'));
    EXPECT_EQ(print(name_with_value("13 01 61"_hex), DN_ORDER_AS_ENCODED, map).text, std::string(2'000, 'N') + "=a");
}

struct value_row_t {
    const char* name;
    const char* value; // the bytes after the type, in hex
    std::string text;  // after "CN="
};

class DnDecoderValue : public testing::TestWithParam<value_row_t> {};

TEST_P(DnDecoderValue, IsPrinted) {
    const value_row_t& row = GetParam();
    for_guarded(name_with_value(from_hex(row.value)), [&row](const uint8_t* der, std::size_t size) {
        for (const PrintableDnOrder order : {DN_ORDER_AS_ENCODED, DN_ORDER_REVERSED}) {
            const printed_t printed = print(der, size, order, OID_MAP_HANDLE_DEFAULT);
            EXPECT_EQ(printed.result.code, 0);
            EXPECT_EQ(printed.text, "CN=" + row.text);
        }
    });
}

const value_row_t values_rows[] = {
    {"PrintableString", "13 02 61 62", "ab"},
    {"Ia5String", "16 03 61 5F 62", "a_b"},
    {"Utf8String", "0C 02 C3 A9", "\xC3\xA9"},
    {"EmptyString", "13 00", ""},
    {"SpecialsAreEscaped", "13 03 61 2C 62", "a\\,b"},
    {"AllSpecials", "0C 09 22 23 2B 2C 3B 3C 3D 3E 5C", "\\\"\\#\\+\\,\\;\\<\\=\\>\\\\"},
    {"BlanksStayUnescaped", "0C 03 20 61 20", " a "},
    {"NulIsCopied", "16 01 00", std::string(1, '\0')},
    {"ControlsAreCopied", "16 02 0A 7F", "\n\x7F"},
    {"BrokenUtf8IsCopied", "0C 01 FF", "\xFF"},
    {"NumericString", "12 04 31 32 20 33", "12 3"},
    {"EmptyNumericString", "12 00", ""},
    {"TeletexString", "14 03 41 C2 65", "A\xC3\xA9"},
    {"TeletexSpecialsAreEscaped", "14 02 A6 2C", "\\#\\,"},
    {"EmptyTeletexString", "14 00", ""},
    {"TeletexAccentAtTheEnd", "14 01 C2", "\xC2\xB4"},
    {"BmpString", "1E 04 04 10 00 41",
     "\xD0\x90"
     "A"},
    {"BmpSpecialsAreEscaped", "1E 02 00 2C", "\\,"},
    {"BmpNul", "1E 02 00 00", std::string(1, '\0')},
    {"BmpNoncharacter", "1E 02 FF FF", "\xEF\xBF\xBF"},
    {"UniversalString", "1C 04 00 01 F6 00", "\xF0\x9F\x98\x80"},
    {"UniversalSpecialsAreEscaped", "1C 08 00 00 00 3D 00 00 00 41", "\\=A"},
    {"LargestUniversalCharacter", "1C 04 00 10 FF FF", "\xF4\x8F\xBF\xBF"},
    {"LongFormLength", "13 82 00 01 61", "a"},
    {"RequiredBytesAfterAStringAreIgnored", "13 01 61 FF FF", "a"},
    // Everything else in hexadecimal, to the end of the attribute, its header ignored
    {"OctetString", "04 02 01 02", "#04020102"},
    {"Constructed", "30 02 05 00", "#30020500"},
    {"VisibleString", "1A 01 61", "#1A0161"},
    {"GeneralString", "1B 01 61", "#1B0161"},
    {"ConstructedPrintableString", "33 03 13 01 61", "#3303130161"},
    {"ContextTag", "8C 01 61", "#8C0161"},
    {"BytesBehindInHex", "05 00 AB CD", "#0500ABCD"},
    {"RequiredHexOfAValueIgnoresItsHeader", "04 05 01", "#040501"},
    {"HexOfOneByte", "04", "#04"},
    {"TagOfAComma", "2C 00", "#2C00"},
    {"TagOfZero", "00", "#00"},
};
INSTANTIATE_TEST_SUITE_P(Values, DnDecoderValue, testing::ValuesIn(values_rows),
                         [](const auto& row) { return row.param.name; });

// All 256 first bytes, each before a length and a letter.
TEST(DnDecoderValue, EveryTagIsTextOrHex) {
    for (int tag = 0; tag < 256; ++tag) {
        const printed_t printed = print(name_with_value({static_cast<uint8_t>(tag), 4, 0, 0, 0, '1'}));
        switch (tag) {
        case 12:
        case 19:
        case 22:
            EXPECT_EQ(printed.text, std::string("CN=\0\0\0001", 7)) << tag;
            break;
        case 18:
            EXPECT_EQ(printed.result.code, 19);
            break;
        case 20:
            EXPECT_EQ(printed.result.code, 17);
            break;
        case 28:
            EXPECT_EQ(printed.text, "CN=1");
            break;
        case 30:
            EXPECT_EQ(printed.text, std::string("CN=\0001", 5)) << tag;
            break;
        default:
            EXPECT_EQ(printed.text, "CN=#" + to_hex(bytes_t{static_cast<uint8_t>(tag)}) + "0400000031") << tag;
        }
    }
}

TEST(DnDecoderValue, EveryByteOfANumericStringIsChecked) {
    for (int c = 0; c < 256; ++c) {
        const printed_t printed = print(name_with_value({0x12, 3, '1', static_cast<uint8_t>(c), '2'}));
        const bool numeric = (c >= '0' && c <= '9') || c == ' ';
        EXPECT_EQ(printed.result.code, numeric ? 0 : 19) << c;
        EXPECT_EQ(printed.text, numeric ? std::string("CN=1") + static_cast<char>(c) + "2" : "CN=") << c;
    }
}

// Lengths around the size of the block that text is gathered in.
TEST(DnDecoderValue, EveryLengthUpTo1100IsPrintedWhole) {
    for (std::size_t length = 0; length <= 1'100; ++length) {
        std::string contents(length, ',');
        std::string escaped;
        for (std::size_t i = 0; i < length; ++i) {
            contents[i] = i % 3 == 0 ? ',' : static_cast<char>('a' + i % 26);
            if (i % 3 == 0) escaped.push_back('\\');
            escaped.push_back(contents[i]);
        }
        ASSERT_EQ(print(name_with_value(der(0x13, to_bytes(contents)))).text, "CN=" + escaped) << length;

        std::string digits;
        const bytes_t octets = der(0x04, to_bytes(contents));
        for (const uint8_t octet : octets) digits += to_hex(bytes_t{octet});
        ASSERT_EQ(print(name_with_value(octets)).text, "CN=#" + digits) << length;
    }
}

struct print_fault_t {
    const char* name;
    const char* der;
    uint16_t code;
    uint16_t position;
    const char* text;
    const char* reversed;
};

class DnDecoderFault : public testing::TestWithParam<print_fault_t> {};

TEST_P(DnDecoderFault, IsReported) {
    const print_fault_t& row = GetParam();
    for_guarded(from_hex(row.der), [&row](const uint8_t* der, std::size_t size) {
        for (const PrintableDnOrder order : {DN_ORDER_AS_ENCODED, DN_ORDER_REVERSED}) {
            const printed_t printed = print(der, size, order, OID_MAP_HANDLE_DEFAULT);
            EXPECT_EQ(printed.result.code, row.code);
            EXPECT_EQ(printed.result.position, row.position);
            EXPECT_EQ(printed.text, order == DN_ORDER_REVERSED ? row.reversed : row.text);
        }
    });
}

const print_fault_t dn_decoder_fault_names_rows[] = {
    // Not a SEQUENCE that fits
    {"NoBytes", "", 11, 0, "", ""},
    {"OneByte", "30", 11, 0, "", ""},
    {"NotASequence", "31 00", 11, 0, "", ""},
    {"Indefinite", "30 80 00 00", 11, 0, "", ""},
    {"FiveLengthOctets", "30 85 00 00 00 00 00", 11, 0, "", ""},
    {"LongerThanTheInput", "30 01", 11, 0, "", ""},
    {"LengthOctetsCut", "30 82 01", 11, 0, "", ""},
    // Not a SET
    {"SequenceInsteadOfASet", "30 02 30 00", 12, 2, "", ""},
    {"SetLongerThanTheName", "30 02 31 01 00", 12, 2, "", ""},
    {"OneByteOfASet", "30 01 31", 12, 2, "", ""},
    {"IndefiniteSet", "30 04 31 80 00 00", 12, 2, "", ""},
    {"ThirdIsNotASet", "30 1A 31 0A 30 08 06 03 55 04 03 13 01 61 31 0A 30 08 06 03 55 04 0A 13 01 62 30 00", 12, 26,
     "CN=a,O=b,", "O=b,CN=a,"},
    {"EmptySetThenAFault", "30 04 31 00 30 00", 12, 4, ",", ","},
    // Not a SEQUENCE
    {"SetInsteadOfASequence", "30 04 31 02 31 00", 13, 4, "", ""},
    {"ChildrenAreBoundedByTheirParent", "30 04 31 02 30 05 06 03 2A 03 04", 13, 4, "", ""},
    {"SecondMemberIsNotASequence", "30 0E 31 0C 30 08 06 03 55 04 03 13 01 61 05 00", 13, 14, "CN=a+", ""},
    {"SecondRdnFailsBehindAMember",
     "30 1A 31 0A 30 08 06 03 55 04 03 13 01 61 31 0C 30 08 06 03 55 04 0A 13 01 62 05 00", 13, 26, "CN=a,O=b+",
     "CN=a,"},
    // No OBJECT IDENTIFIER
    {"EmptyAttribute", "30 04 31 02 30 00", 14, 6, "", ""},
    {"StringInsteadOfAType", "30 07 31 05 30 03 13 01 61", 14, 6, "", ""},
    {"TypeLongerThanTheAttribute", "30 07 31 05 30 03 06 02 55", 14, 6, "", ""},
    {"IndefiniteType", "30 08 31 06 30 04 06 80 00 00", 14, 6, "", ""},
    // An unprintable OID
    {"TypeCutInsideAnArc", "30 0B 31 09 30 07 06 02 2A 86 13 01 61", 15, 8, "1.2.", ""},
    {"EmptyType", "30 09 31 07 30 05 06 00 13 01 61", 15, 8, "", ""},
    {"TypeCutInsideItsOnlyArc", "30 0A 31 08 30 06 06 01 86 13 01 61", 15, 8, "", ""},
    // No value, or a bad header
    {"NoValue", "30 09 31 07 30 05 06 03 55 04 03", 16, 11, "CN=", ""},
    {"OnlyAStringTag", "30 0A 31 08 30 06 06 03 55 04 03 13", 16, 11, "CN=", ""},
    {"StringTooLong", "30 0C 31 0A 30 08 06 03 55 04 03 13 02 61", 16, 11, "CN=", ""},
    {"StringBoundedByItsAttribute", "30 14 31 0A 30 08 06 03 55 04 03 13 02 61 31 06 30 04 06 00 13 00", 16, 11,
     "CN=", ""},
    {"IndefiniteString", "30 0D 31 0B 30 09 06 03 55 04 03 0C 80 00 00", 16, 11, "CN=", ""},
    {"StringOfFiveLengthOctets", "30 13 31 11 30 0F 06 03 55 04 03 16 85 00 00 00 00 03 61 62 63", 16, 11, "CN=", ""},
    {"StringLengthOctetsCut", "30 0C 31 0A 30 08 06 03 55 04 03 1E 82 00", 16, 11, "CN=", ""},
    // Strings that cannot be converted
    {"TeletexForbiddenByte", "30 0D 31 0B 30 09 06 03 55 04 03 14 02 41 24", 17, 13, "CN=", ""},
    {"RequiredEmptyWideStringIsNotConvertible", "30 0B 31 09 30 07 06 03 55 04 03 1E 00", 18, 13, "CN=", ""},
    {"BmpSurrogate", "30 0D 31 0B 30 09 06 03 55 04 03 1E 02 D8 3D", 18, 13, "CN=", ""},
    {"BmpOddLength", "30 0C 31 0A 30 08 06 03 55 04 03 1E 01 41", 18, 13, "CN=", ""},
    {"UniversalEmpty", "30 0B 31 09 30 07 06 03 55 04 03 1C 00", 18, 13, "CN=", ""},
    {"UniversalThreeBytes", "30 0E 31 0C 30 0A 06 03 55 04 03 1C 03 00 00 41", 18, 13, "CN=", ""},
    {"UniversalSurrogate", "30 0F 31 0D 30 0B 06 03 55 04 03 1C 04 00 00 DF FF", 18, 13, "CN=", ""},
    {"UniversalAboveUnicode", "30 0F 31 0D 30 0B 06 03 55 04 03 1C 04 00 11 00 00", 18, 13, "CN=", ""},
    {"NumericLetter", "30 0C 31 0A 30 08 06 03 55 04 03 12 01 61", 19, 13, "CN=", ""},
    {"NumericLetterBehindAnRdn", "30 18 31 0A 30 08 06 03 55 04 03 13 01 61 31 0A 30 08 06 03 55 04 0A 12 01 61", 19,
     25, "CN=a,O=", "CN=a,"},
};
INSTANTIATE_TEST_SUITE_P(Names, DnDecoderFault, testing::ValuesIn(dn_decoder_fault_names_rows),
                         [](const auto& row) { return row.param.name; });

TEST(DnDecoderFault, EmptyHandlePrintsTheArcsBeforeAFault) {
    const printed_t printed = print("30 0B 31 09 30 07 06 02 2A 86 13 01 61"_hex, DN_ORDER_AS_ENCODED, no_map);
    EXPECT_EQ(printed.result.code, 15);
    EXPECT_EQ(printed.result.position, 8);
    EXPECT_EQ(printed.text, "1.2.");
}

TEST(DnDecoderFault, PositionsBehind65535Wrap) {
    const bytes_t first = der(0x31, der(0x30, {"06 03 55 04 03"_hex, der(0x13, bytes_t(65'536, 'a'))}));
    const bytes_t name = der(0x30, {first, "30 00"_hex});
    const printed_t printed = print(name);
    EXPECT_EQ(printed.result.code, 12);
    EXPECT_EQ(printed.result.position, static_cast<uint16_t>(name.size() - 2));
}

#ifdef __linux__
// Pages of zeros, of which only the first is ever touched.
class zero_pages_t {
  public:
    explicit zero_pages_t(std::size_t size) : m_size(size) {
        void* const pages =
            mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        if (pages != MAP_FAILED) m_data = static_cast<uint8_t*>(pages);
    }
    ~zero_pages_t() {
        if (m_data != nullptr) munmap(m_data, m_size);
    }
    zero_pages_t(const zero_pages_t&) = delete;
    zero_pages_t& operator=(const zero_pages_t&) = delete;

    uint8_t* data() const { return m_data; }
    std::size_t size() const { return m_size; }

  private:
    uint8_t* m_data = nullptr;
    std::size_t m_size;
};

// A length that a signed number of 32 bits would take for a negative one, that is for nothing at all.
TEST(DnDecoderFault, TeletexStringOf2GiBIsNotConverted) {
    const bytes_t headers =
        "30 84 80 00 00 17 31 84 80 00 00 11 30 84 80 00 00 0B 06 03 55 04 03 14 84 80 00 00 00"_hex;
    if (!fits_memory(0x80000000)) GTEST_SKIP() << "needs blocks of 2 GiB";
    const zero_pages_t der(headers.size() + 0x80000000);
    if (der.data() == nullptr) GTEST_SKIP() << "no address space";
    std::copy(headers.begin(), headers.end(), der.data());
    std::string out;
    const asn_dn_result_t result = asn_dn_to_printable_r(der.data(), static_cast<uint32_t>(der.size()), out,
                                                         DN_ORDER_AS_ENCODED, OID_MAP_HANDLE_DEFAULT);
    EXPECT_EQ(result.code, 17);
    EXPECT_EQ(result.position, headers.size());
    EXPECT_EQ(out, "CN=");
}
#endif

const char* const sample = "30 58 31 0A 30 08 06 03 55 04 03 13 01 61"
                           "31 14 30 08 06 03 55 04 0A 0C 01 62 30 08 06 03 55 04 0B 16 01 63"
                           "31 0C 30 0A 06 03 55 04 06 14 03 41 C2 65"
                           "31 0B 30 09 06 03 55 04 07 1E 02 04 10"
                           "31 0D 30 0B 06 03 55 04 08 1C 04 00 00 00 41"
                           "31 0A 30 08 06 03 2A 03 04 04 01 FF";

TEST(DnDecoder, PrintsTheSample) {
    EXPECT_EQ(print(from_hex(sample)).text, "CN=a,O=b+OU=c,C=A\xC3\xA9,L=\xD0\x90,ST=A,1.2.3.4=#0401FF");
}

TEST(DnDecoder, EveryCutOfANameIsRefused) {
    for_every_prefix(from_hex(sample), [](const uint8_t* der, std::size_t size) {
        const printed_t printed = print(der, size, DN_ORDER_AS_ENCODED, OID_MAP_HANDLE_DEFAULT);
        EXPECT_EQ(printed.result.code, 11) << size << " bytes";
        EXPECT_EQ(printed.text, "");
    });
}

// The contents of the Name cut, its own length corrected: a fault, or one of the five shorter Names.
TEST(DnDecoder, EveryCutOfItsContentsStaysInside) {
    const bytes_t whole = from_hex(sample);
    int num_names = 0;
    for (std::size_t size = 2; size < whole.size(); ++size) {
        bytes_t der(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        der[1] = static_cast<uint8_t>(size - 2);
        for_guarded(der, [&](const uint8_t* data, std::size_t num) {
            for (const PrintableDnOrder order : {DN_ORDER_AS_ENCODED, DN_ORDER_REVERSED}) {
                const printed_t printed = print(data, num, order, OID_MAP_HANDLE_DEFAULT);
                if (printed.result.code == 0) ++num_names;
                EXPECT_LE(printed.result.position, num);
            }
        });
    }
    EXPECT_EQ(num_names, 6 * 3 * 2); // the empty one and five more, three guards, two orders
}

TEST(DnDecoder, JunkInAnyConstructedElementIsReportedOrIgnored) {
    std::vector<int> codes;
    for_junk_in_each_constructed(from_hex(sample), "13 01 78"_hex, [&](const uint8_t* der, std::size_t size) {
        codes.push_back(print(der, size, DN_ORDER_REVERSED, OID_MAP_HANDLE_DEFAULT).result.code);
    });
    // A string in the Name (12), or in a SET (13); after a value it is ignored. Each is tried with three guards.
    ASSERT_EQ(codes.size(), 3u * (1 + 6 + 7));
    EXPECT_EQ(std::count(codes.begin(), codes.end(), 12), 3);
    EXPECT_EQ(std::count(codes.begin(), codes.end(), 13), 3 * 6);
    EXPECT_EQ(std::count(codes.begin(), codes.end(), 0), 3 * 7);
}

TEST(DnDecoder, TakesNullForNoBytes) {
    const printed_t printed = print(nullptr, 0, DN_ORDER_AS_ENCODED, OID_MAP_HANDLE_DEFAULT);
    EXPECT_EQ(printed.result.code, 11);
}

TEST(DnDecoder, MayPrintIntoTheStringItReads) {
    for (const std::size_t value_length : {3u, 5'000u}) {
        for (const PrintableDnOrder order : {DN_ORDER_AS_ENCODED, DN_ORDER_REVERSED}) {
            std::string both = name_with_value(der(0x13, bytes_t(value_length, 'a'))).str();
            const std::string der = both;
            const auto* const data = reinterpret_cast<const uint8_t*>(both.data());
            ASSERT_TRUE(
                asn_dn_to_printable(data, static_cast<uint32_t>(der.size()), both, order, OID_MAP_HANDLE_DEFAULT));
            EXPECT_EQ(both, der + "CN=" + std::string(value_length, 'a'));
        }
    }
}

TEST(DnDecoder, TypicalNameTakesOneAllocation) {
    const bytes_t der = "30 3C 31 0B 30 09 06 03 55 04 06 13 02 52 55"
                        "31 14 30 12 06 03 55 04 0A 0C 0B 45 78 61 6D 70 6C 65 20 4F 72 67"
                        "31 17 30 15 06 03 55 04 03 13 0E 77 77 77 2E 65 78 61 6D 70 6C 65 2E 72 75"_hex;
    for (const PrintableDnOrder order : {DN_ORDER_AS_ENCODED, DN_ORDER_REVERSED}) {
        EXPECT_EQ(count_allocations([&] {
                      std::string out;
                      asn_dn_to_printable(der.data(), static_cast<uint32_t>(der.size()), out, order,
                                          OID_MAP_HANDLE_DEFAULT);
                      EXPECT_EQ(out.size(), 36u);
                  }),
                  1u);
    }
}

TEST(DnDecoder, NeedsAtMostThreeTimesItsOutput) {
    bytes_t contents;
    for (int i = 0; i < 10'000; ++i) {
        const bytes_t rdn = "31 0E 30 0C 06 03 55 04 03 13 05 61 62 63 64 65"_hex;
        contents.insert(contents.end(), rdn.begin(), rdn.end());
    }
    const bytes_t name = der(0x30, contents);
    for (const PrintableDnOrder order : {DN_ORDER_AS_ENCODED, DN_ORDER_REVERSED}) {
        std::string out;
        const std::size_t peak = peak_allocated_bytes([&] {
            asn_dn_to_printable(name.data(), static_cast<uint32_t>(name.size()), out, order, OID_MAP_HANDLE_DEFAULT);
        });
        EXPECT_LE(peak, 3 * out.size()) << order;
    }
}

TEST(DnDecoder, Prints200000RdnsInBothOrders) {
    constexpr std::size_t num_rdns = 200'000;
    bytes_t contents;
    std::string text;
    std::string reversed;
    for (std::size_t i = 0; i < num_rdns; ++i) {
        const char letter = static_cast<char>('a' + i % 26);
        const bytes_t rdn{0x31, 0x0A, 0x30, 0x08, 0x06, 0x03,
                          0x55, 0x04, 0x03, 0x13, 0x01, static_cast<uint8_t>(letter)};
        contents.insert(contents.end(), rdn.begin(), rdn.end());
        text += std::string("CN=") + letter + ",";
        reversed += std::string("CN=") + static_cast<char>('a' + (num_rdns - 1 - i) % 26) + ",";
    }
    text.pop_back();
    reversed.pop_back();
    const bytes_t name = der(0x30, contents);
    EXPECT_TRUE(print(name, DN_ORDER_AS_ENCODED).text == text);
    EXPECT_TRUE(print(name, DN_ORDER_REVERSED).text == reversed);

    // A fault at the end leaves all of them, in reversed order too.
    const bytes_t faulty = der(0x30, {contents, "30 00"_hex});
    EXPECT_TRUE(print(faulty, DN_ORDER_AS_ENCODED).text == text + ",");
    EXPECT_TRUE(print(faulty, DN_ORDER_REVERSED).text == reversed + ",");
}

TEST(DnDecoder, Prints200000MembersOfOneSet) {
    constexpr std::size_t num_members = 200'000;
    bytes_t contents;
    std::string text;
    for (std::size_t i = 0; i < num_members; ++i) {
        const bytes_t member = "30 08 06 03 55 04 03 13 01 61"_hex;
        contents.insert(contents.end(), member.begin(), member.end());
        text += "CN=a+";
    }
    text.pop_back();
    const bytes_t name = der(0x30, der(0x31, contents));
    EXPECT_TRUE(print(name, DN_ORDER_REVERSED).text == text);
}

TEST(DnDecoder, LeavesTheOutputWhenAllocationFails) {
    bytes_t contents;
    for (int i = 0; i < 20; ++i) {
        for (const bytes_t& value : {der(0x14, bytes_t(40, 'a')), der(0x1E, bytes_t(80, '0')),
                                     der(0x13, bytes_t(600, 'b')), der(0x04, "FF"_hex)}) {
            contents = join({contents, der(0x31, der(0x30, {"06 03 2A 03 04"_hex, value}))});
        }
    }
    const bytes_t name = der(0x30, contents);
    for (const PrintableDnOrder order : {DN_ORDER_AS_ENCODED, DN_ORDER_REVERSED}) {
        const std::size_t num_failures = for_each_failing_allocation(
            [&] {
                std::string out = "seed";
                try {
                    EXPECT_TRUE(asn_dn_to_printable(name.data(), static_cast<uint32_t>(name.size()), out, order,
                                                    OID_MAP_HANDLE_DEFAULT));
                } catch (...) {
                    EXPECT_EQ(out, "seed");
                    throw;
                }
            },
            [] {});
        EXPECT_GE(num_failures, 2u) << order;
    }
}

} // namespace
