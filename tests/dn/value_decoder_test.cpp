#include "dn/value_decoder.h"

#include "tests/dn/char_sets.h"
#include "tests/support/alloc_failure.h"
#include "tests/support/guarded.h"
#include "tests/support/hex.h"

#include <gtest/gtest.h>

#include <string>

using namespace pkider;
using namespace pkider_test;

namespace {

constexpr uint8_t utf8 = 0x0C;
constexpr uint8_t printable = 0x13;
constexpr uint8_t ia5 = 0x16;

struct decoded_t {
    asn_dn_result_t result;
    bytes_t bytes;
    uint8_t tag = 0;
    bool in_line = false;
};

decoded_t decode(const uint8_t* data, std::size_t size) {
    const char* const begin = reinterpret_cast<const char*>(data);
    std::string scratch;
    dn_value_t value{data, 77, 0x77};
    decoded_t out;
    out.result = printable_dn_value_decode(begin, begin + size, scratch, value);
    if (out.result.code != 0) {
        EXPECT_TRUE(value.bytes == data && value.length == 77 && value.tag == 0x77) << "written after a fault";
        return out;
    }
    out.bytes.assign(value.bytes, value.bytes + value.length);
    out.tag = value.tag;
    out.in_line = scratch.empty();
    const auto* const pool = reinterpret_cast<const uint8_t*>(scratch.data());
    const uint8_t* const room = out.in_line ? data : pool;
    EXPECT_TRUE(room <= value.bytes && value.bytes + value.length <= room + (out.in_line ? size : scratch.size()));
    return out;
}

decoded_t decode(std::string_view text) {
    return decode(reinterpret_cast<const uint8_t*>(text.data()), text.size());
}

enum place_t { IN_LINE, REWRITTEN };

struct value_row_t {
    const char* name;
    std::string text;
    uint8_t tag;
    std::string bytes;
    place_t place;
};

class DnValueDecode : public testing::TestWithParam<value_row_t> {};

TEST_P(DnValueDecode, GivesBytesAndTag) {
    const value_row_t& row = GetParam();
    for_guarded(to_bytes(row.text), [&](const uint8_t* data, std::size_t size) {
        const decoded_t value = decode(data, size);
        ASSERT_EQ(value.result.code, 0);
        EXPECT_EQ(value.bytes, to_bytes(row.bytes));
        EXPECT_EQ(value.tag, row.tag);
        EXPECT_EQ(value.in_line, row.place == IN_LINE);
    });
}

const value_row_t plain_rows[] = {
    {"Empty", "", printable, "", IN_LINE},
    {"Letters", "abc", printable, "abc", IN_LINE},
    {"Blanks", "  a b ", printable, "  a b ", IN_LINE},
    {"PrintablePunctuation", "'()-./:?", printable, "'()-./:?", IN_LINE},
    {"EscapedComma", "a\\,b", printable, "a,b", REWRITTEN},
    {"HexPair", "a\\2Cb", printable, "a,b", REWRITTEN},
    {"HexPairInSmallDigits", "a\\2cb", printable, "a,b", REWRITTEN},
    {"OnlyAnEscape", "\\=", printable, "=", REWRITTEN},
    {"EscapesInARow", "\\,\\+\\3D", printable, ",+=", REWRITTEN},
    {"EscapeAtBothEnds", "\\+a\\+", printable, "+a+", REWRITTEN},
    {"UnderscoreIsIa5", "a_b", ia5, "a_b", IN_LINE},
    {"TabIsIa5", "a\tb", ia5, "a\tb", IN_LINE},
    {"EscapedQuoteIsIa5", "a\\\"b", ia5, "a\"b", REWRITTEN},
    {"EscapedBackslashIsIa5", "a\\\\b", ia5, "a\\b", REWRITTEN},
    {"EscapedNulIsIa5", "\\00", ia5, std::string(1, '\0'), REWRITTEN},
    {"Utf8", "\xC3\xA9", utf8, "\xC3\xA9", IN_LINE},
    {"Utf8BeforeIa5StaysUtf8", "\xC3\xA9_", utf8, "\xC3\xA9_", IN_LINE},
    {"Utf8BehindIa5", "_\xC3\xA9", utf8, "_\xC3\xA9", IN_LINE},
    {"HexPairAboveAsciiIsUtf8", "\\C3\\A9", utf8, "\xC3\xA9", REWRITTEN},
    {"BrokenUtf8IsUtf8", "\xFF", utf8, "\xFF", IN_LINE},
    {"HexDigitsGoBeforeSpecials", "\\abc", utf8,
     "\xAB"
     "c",
     REWRITTEN},
};
INSTANTIATE_TEST_SUITE_P(Plain, DnValueDecode, testing::ValuesIn(plain_rows),
                         [](const auto& row) { return row.param.name; });

const value_row_t quoted_rows[] = {
    {"EmptyQuotes", "\"\"", printable, "", IN_LINE},
    {"SpecialsNeedNoEscape", "\"a,b\"", printable, "a,b", IN_LINE},
    {"AllSpecials", "\"#+,;<=>\"", ia5, "#+,;<=>", IN_LINE},
    {"BlanksInQuotes", "\" a \"", printable, " a ", IN_LINE},
    {"RequiredQuotedEscapesAreNotClassified", "\"a\\\"b\"", printable, "a\"b", REWRITTEN},
    {"RequiredQuotedBackslashStays", "\"a\\b\"", printable, "a\\b", IN_LINE},
    {"QuotedCommaKeepsItsBackslash", "\"a\\,b\"", printable, "a\\,b", IN_LINE},
    {"QuotedHexPairIsText", "\"\\2C\"", printable, "\\2C", IN_LINE},
    {"TheSecondOfTwoBackslashesIsClassified", "\"a\\\\\"", ia5, "a\\\\", IN_LINE},
    {"RawQuotesInside", "\"a\"b\"c\"", ia5, "a\"b\"c", IN_LINE},
    {"TwoQuotedPiecesAreOneValue", "\"a\"O=\"b\"", ia5, "a\"O=\"b", IN_LINE},
    {"FourQuotes", "\"\"\"\"", ia5, "\"\"", IN_LINE},
    {"QuotedUtf8", "\"\xC3\xA9\"", utf8, "\xC3\xA9", IN_LINE},
    {"CharacterBehindAKeptBackslash", "\"\\_\"", ia5, "\\_", IN_LINE},
    {"QuotedAndKeptEscapes", "\"\\\"\\x\\\"\"", printable, "\"\\x\"", REWRITTEN},
};
INSTANTIATE_TEST_SUITE_P(Quoted, DnValueDecode, testing::ValuesIn(quoted_rows),
                         [](const auto& row) { return row.param.name; });

const value_row_t hex_rows[] = {
    {"Utf8String", "#0C03616263", utf8, "abc", REWRITTEN},
    {"SmallDigits", "#0c016a", utf8, "j", REWRITTEN},
    {"BytesBehindAreIgnored", "#0C0261626364", utf8, "ab", REWRITTEN},
    {"LongFormLength", "#0C8103616263", utf8, "abc", REWRITTEN},
    {"FourLengthOctets", "#0C840000000161", utf8, "a", REWRITTEN},
    {"EmptyElement", "#0500", 0x05, "", REWRITTEN},
    {"HighTagNumberIsOneByte", "#1F0161", 0x1F, "a", REWRITTEN},
    {"TagOfZero", "#000141", 0x00, "A", REWRITTEN},
    {"AnyBytes", "#0404FF00807F", 0x04, std::string("\xFF\0\x80\x7F", 4), REWRITTEN},
};
INSTANTIATE_TEST_SUITE_P(Hex, DnValueDecode, testing::ValuesIn(hex_rows),
                         [](const auto& row) { return row.param.name; });

struct value_fault_t {
    const char* name;
    std::string text;
    uint16_t code;
    uint16_t position;
};

class DnValueDecodeFault : public testing::TestWithParam<value_fault_t> {};

TEST_P(DnValueDecodeFault, ReportsCodeAndPosition) {
    const value_fault_t& row = GetParam();
    for_guarded(to_bytes(row.text), [&](const uint8_t* data, std::size_t size) {
        const decoded_t value = decode(data, size);
        EXPECT_EQ(value.result.code, row.code);
        EXPECT_EQ(value.result.position, row.position);
    });
}

const value_fault_t values_rows[] = {
    // Fewer than four digits, or an odd number of them: at the value's start
    {"OneDigit", "#0", 4, 0},
    {"TwoDigits", "#0C", 4, 0},
    {"ThreeDigits", "#0C0", 4, 0},
    {"FiveDigits", "#0C016", 4, 0},
    {"CountGoesBeforeDigits", "#0G", 4, 0},
    {"BlankBehindMakesItOdd", "#0C0161 ", 4, 0},
    // Not a digit: counted from after "#"
    {"FirstDigitBad", "#GG0C", 5, 0},
    {"LastDigitBad", "#0C0G", 5, 3},
    {"TwoBlanksBehind", "#0C0161  ", 5, 6},
    {"DigitsGoBeforeTheElement", "#0C80xx", 5, 4},
    {"DigitAboveAscii", "#0C01\xB2\xB2", 5, 4},
    // Not an element: at the value's start
    {"Indefinite", "#0C8000", 6, 0},
    {"LongerThanTheBytes", "#0C05616263", 6, 0},
    {"LengthOctetsMissing", "#0C82", 6, 0},
    {"LengthOctetsCut", "#0C8200", 6, 0},
    {"FiveLengthOctets", "#0C85000000000161", 6, 0},
    {"LargestLength", "#0C84FFFFFFFF", 6, 0},
    // Backslash at the end
    {"BackslashAtTheEnd", "a\\", 7, 2},
    {"OnlyABackslash", "\\", 7, 1},
    {"BackslashAtTheEndOfQuotes", "\"x\"\\\"", 7, 3},
    {"OnlyABackslashInQuotes", "\"\\\"", 7, 1},
    // One hex digit
    {"OneHexDigitAtTheEnd", "a\\4", 8, 3},
    {"OneHexDigitAndALetter", "a\\4g", 8, 3},
    {"OneHexDigitAndASpecial", "\\a,", 8, 2},
    // Nothing that may be escaped
    {"EscapedLetter", "a\\xb", 9, 2},
    {"EscapedBlank", "\\ ", 9, 1},
    {"EscapedByteAboveAscii", "a\\\xC3", 9, 2},
    // Special characters on their own
    {"Semicolon", "a;b", 10, 1},
    {"LoneNumberSign", "#", 10, 0},
    {"LoneQuote", "\"", 10, 0},
    {"BlankBeforeQuotes", " \"a,b\"", 10, 1},
    {"BlankBehindQuotes", "\"a\" ", 10, 0},
    {"BlankBeforeTheNumberSign", " #0C0161", 10, 1},
    {"SpecialBehindAnEscape", "a\\,b>", 10, 4},
};
INSTANTIATE_TEST_SUITE_P(Values, DnValueDecodeFault, testing::ValuesIn(values_rows),
                         [](const auto& row) { return row.param.name; });

// Each byte on its own, escaped, and between quotes: 256 values of each form against the rule as a list of cases.
TEST(DnValueDecode, EveryByteOnItsOwn) {
    for (int c = 0; c < 256; ++c) {
        const auto character = static_cast<char>(c);
        const bool special = is_special_char(c);
        const uint8_t tag = c >= 0x80 ? utf8 : is_printable_string_char(c) ? printable : ia5;
        const std::string text = std::string("a") + character;

        const decoded_t plain = decode(text);
        if (character == '\\') {
            EXPECT_EQ(plain.result.code, 7);
        } else if (special) {
            EXPECT_EQ(plain.result.code, 10) << c;
            EXPECT_EQ(plain.result.position, 1) << c;
        } else {
            EXPECT_EQ(plain.bytes, to_bytes(text)) << c;
            EXPECT_EQ(plain.tag, tag) << c;
        }

        const decoded_t escaped = decode(std::string("\\") + character);
        if (special) {
            EXPECT_EQ(escaped.bytes, to_bytes(std::string(1, character))) << c;
            EXPECT_EQ(escaped.tag, tag) << c;
        } else {
            EXPECT_EQ(escaped.result.code, hex_digit(character) < 0 ? 9 : 8) << c;
        }

        const decoded_t quoted = decode("\"" + text + "\"");
        if (character == '\\') {
            EXPECT_EQ(quoted.result.code, 7);
        } else {
            EXPECT_EQ(quoted.bytes, to_bytes(text)) << c;
            EXPECT_EQ(quoted.tag, tag) << c;
        }
    }
}

// All 65,536 pairs after a backslash: a byte in hexadecimal when both are digits.
TEST(DnValueDecode, EveryPairBehindABackslash) {
    for (int first = 0; first < 256; ++first) {
        for (int second = 0; second < 256; ++second) {
            const std::string text{'\\', static_cast<char>(first), static_cast<char>(second)};
            const decoded_t value = decode(text);
            const int high = hex_digit(static_cast<char>(first));
            const int low = hex_digit(static_cast<char>(second));
            uint16_t code = 0;
            if (high < 0 && !is_special_char(first)) code = 9;
            if (high >= 0 && low < 0) code = 8;
            if (high < 0 && is_special_char(first) && is_special_char(second)) code = text[2] == '\\' ? 7 : 10;
            ASSERT_EQ(value.result.code, code) << first << " " << second;
            if (code != 0) continue;
            if (high >= 0) {
                ASSERT_EQ(value.bytes, bytes_t{static_cast<uint8_t>(high * 16 + low)});
            } else {
                ASSERT_EQ(value.bytes, to_bytes(text.substr(1)));
            }
        }
    }
}

TEST(DnValueDecode, NeedsNothingOfTheScratch) {
    std::string scratch = "of the value before";
    const auto bytes_of = [&scratch](std::string_view text) {
        dn_value_t value;
        EXPECT_EQ(printable_dn_value_decode(text.data(), text.data() + text.size(), scratch, value).code, 0) << text;
        return std::string(value.bytes, value.bytes + value.length);
    };
    EXPECT_EQ(bytes_of("a\\,b"), "a,b");
    EXPECT_EQ(bytes_of("\"c\\\"d\""), "c\"d");
    EXPECT_EQ(bytes_of("#0C0161"), "a");
    EXPECT_EQ(bytes_of("ab"), "ab");
    EXPECT_EQ(scratch, "");
}

TEST(DnValueDecode, LeaksNothingWhenAllocationFails) {
    for (const std::string form : {"\\,%", "\"\\\"%\"", "#0481C8%"}) {
        std::string text = form;
        text.replace(text.find('%'), 1, std::string(400, '0'));
        dn_value_t value;
        const std::size_t num_failures = for_each_failing_allocation(
            [&] {
                std::string scratch;
                printable_dn_value_decode(text.data(), text.data() + text.size(), scratch, value);
            },
            [&value] { EXPECT_EQ(value.bytes, nullptr); });
        EXPECT_GT(num_failures, 0u) << form;
        value = {};
    }
}

} // namespace
