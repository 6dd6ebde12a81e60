#include "dn/teletex.h"
#include "dn/teletex_tables.h"

#include "tests/dn/unicode_compositions.h"
#include "tests/support/alloc_failure.h"
#include "tests/support/guarded.h"
#include "tests/support/hex.h"
#include "tests/support/utf8_by_the_rule.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <limits>
#include <string>

using namespace pkider;
using namespace pkider_test;

namespace {

const std::string before = "before|";

struct converted_t {
    bool ok;
    std::string text; // what was appended
};

converted_t convert(const uint8_t* in, std::size_t size) {
    std::string out = before;
    const bool ok = teletex_to_utf8(in, static_cast<int32_t>(size), out);
    EXPECT_EQ(out.substr(0, before.size()), before);
    return {ok, out.substr(before.size())};
}

converted_t convert(const bytes_t& in) {
    return convert(in.data(), in.size());
}

struct convert_row_t {
    const char* name;
    const char* in;
    const char* out; // in hex
};

class Teletex : public testing::TestWithParam<convert_row_t> {};

TEST_P(Teletex, AppendsUtf8) {
    const convert_row_t& row = GetParam();
    for_guarded(from_hex(row.in), [&row](const uint8_t* in, std::size_t size) {
        const converted_t converted = convert(in, size);
        EXPECT_TRUE(converted.ok);
        EXPECT_EQ(to_hex(converted.text), to_hex(from_hex(row.out)));
    });
}

const convert_row_t bytes_rows[] = {
    {"Empty", "", ""},
    {"Letters", "41 42", "41 42"},
    {"Dollar", "A4", "24"},
    {"NumberSign", "A6", "23"},
    {"Ohm", "E0", "E2 84 A6"},
    {"Control", "01 1F 7F 80 9F", "01 1F 7F C2 80 C2 9F"},
    {"Composed", "C2 65", "C3 A9"},
    {"ComposedOfThreeBytes", "C4 76", "E1 B9 BD"},
    {"ComposedLigature", "C2 E1", "C7 BC"},
    {"SpacingAccent", "C2 20", "C2 B4"},
    {"SpacingAccentAtNul", "C2 00", "C2 B4"},
    {"BlankIsConsumed", "C2 20 20", "C2 B4 20"},
    {"NoSpacingForm", "CC 20", "20 CC B2"},
    {"NoSpacingFormAtNul", "CC 00", "00 CC B2"},
    {"NotComposed", "C8 31", "31 CC 88"},
    {"TwoAccents", "C2 C2 65", "C3 82 CC 81 65"},
    {"RequiredByteAfterAnAccentIsItsOwnCodePoint", "C2 E9", "C3 A9 CC 81"},
    {"CurrencySignBehindAnAccent", "C2 A4", "C2 A4 CC 81"},
    {"ForbiddenByteBehindAnAccent", "C2 24", "24 CC 81"},
    {"OhmWithGrave", "C1 E0", "C3 A0 CC 80"},
    {"OhmWithAcute", "C2 E0", "C3 A0 CC 81"},
    {"SlashedOWithAcute", "C2 F9", "C3 B9 CC 81"},
    {"AccentAtTheEnd", "C2", "C2 B4"},
    {"AccentBehindALetterAtTheEnd", "41 C7", "41 CB 99"},
    {"AccentWithoutSpacingFormAtTheEnd", "CC", "00 CC B2"},
};
INSTANTIATE_TEST_SUITE_P(Bytes, Teletex, testing::ValuesIn(bytes_rows), [](const auto& row) { return row.param.name; });

struct refuse_row_t {
    const char* name;
    const char* in;
};

class TeletexRefusal : public testing::TestWithParam<refuse_row_t> {};

TEST_P(TeletexRefusal, LeavesTheOutput) {
    for_guarded(from_hex(GetParam().in), [](const uint8_t* in, std::size_t size) {
        const converted_t converted = convert(in, size);
        EXPECT_FALSE(converted.ok);
        EXPECT_EQ(converted.text, "");
    });
}

const refuse_row_t teletex_refusal_bytes_rows[] = {
    {"Dollar", "24"},
    {"Nul", "00"},
    {"UnusedAccent", "C9 41"},
    {"OtherUnusedAccent", "C0 41"},
    {"AtTheEnd", "41 42 FF"},
    {"BehindAPair", "C2 65 E5"},
    {"BehindASpacingAccent", "C2 00 00"},
};
INSTANTIATE_TEST_SUITE_P(Bytes, TeletexRefusal, testing::ValuesIn(teletex_refusal_bytes_rows),
                         [](const auto& row) { return row.param.name; });

TEST(Teletex, NegativeLengthConvertsNothing) {
    const uint8_t in[] = {0x41};
    for (const int32_t length : {-1, std::numeric_limits<int32_t>::min()}) {
        std::string out = before;
        EXPECT_TRUE(teletex_to_utf8(in, length, out));
        EXPECT_EQ(out, before);
    }
    std::string out = before;
    EXPECT_TRUE(teletex_to_utf8(nullptr, 0, out));
    EXPECT_EQ(out, before);
}

TEST(Teletex, LeavesTheOutputWhenAllocationFails) {
    const bytes_t in(400, 'a');
    const std::size_t num_failures = for_each_failing_allocation(
        [&in] {
            std::string out = before;
            try {
                teletex_to_utf8(in.data(), static_cast<int32_t>(in.size()), out);
            } catch (...) {
                EXPECT_EQ(out, before);
                throw;
            }
            EXPECT_EQ(out.size(), before.size() + 400);
        },
        [] {});
    EXPECT_EQ(num_failures, 1u);
}

// The rules once more, without a table: what is in Unicode, and where T.61 differs from the byte's own value.

uint32_t main_code_point(uint8_t byte) {
    static const std::string_view forbidden(
        "\x00\x23\x24\x5C\x5E\x60\x7B\x7D\x7E\xA9\xAA\xAC\xAD\xAE\xAF\xB9\xBA\xC0\xC9"
        "\xD0\xD1\xD2\xD3\xD4\xD5\xD6\xD7\xD8\xD9\xDA\xDB\xDC\xDD\xDE\xDF\xE5\xFF",
        37);
    if (forbidden.find(static_cast<char>(byte)) != std::string_view::npos) return 0;
    switch (byte) {
    case 0xA4:
        return U'$';
    case 0xA6:
        return U'#';
    case 0xA8:
        return U'¤';
    case 0xB4:
        return U'×';
    case 0xB8:
        return U'÷';
    default:
        break;
    }
    if (byte >= 0xC0 && byte < 0xD0) {
        constexpr uint32_t marks[] = {0,     0x300, 0x301, 0x302, 0x303, 0x304, 0x306, 0x307,
                                      0x308, 0,     0x30A, 0x327, 0x332, 0x30B, 0x328, 0x30C};
        return marks[byte - 0xC0];
    }
    // The unused places (E5, FF) hold a blank.
    static const std::u32string_view letters = U"\u2126ÆÐªĦ ĲĿŁØŒºÞŦŊŉĸæđðħıĳŀłøœßþŧŋ ";
    return byte < 0xE0 ? byte : letters[byte - 0xE0];
}

uint32_t nfc(uint32_t letter, uint32_t mark) {
    const auto* const found =
        std::find_if(std::begin(unicode_compositions), std::end(unicode_compositions),
                     [=](const unicode_composition_t& row) { return row.letter == letter && row.mark == mark; });
    return found == std::end(unicode_compositions) ? 0 : found->composed;
}

bool left_out(uint8_t accent, uint8_t letter) {
    return (accent == 0xC1 && letter == 0xE0) ||
           (accent == 0xC2 && (letter == 0xE0 || letter == 0xE9 || letter == 0xF9));
}

uint32_t expected_composition(uint8_t accent, uint8_t letter) {
    if (main_code_point(accent) == 0 || main_code_point(letter) == 0 || left_out(accent, letter)) return 0;
    return nfc(main_code_point(letter), main_code_point(accent));
}

uint32_t spacing_accent(uint8_t accent) {
    static const std::u32string_view accents = U" `´^~¯˘˙¨ ˚¸ ˝˛ˇ";
    const char32_t found = accents[accent & 0x0F];
    return found == U' ' ? 0 : found;
}

TEST(TeletexTables, EveryByteHasItsCodePoint) {
    for (int byte = 0; byte < 256; ++byte) {
        EXPECT_EQ(t61_code_points[byte], main_code_point(static_cast<uint8_t>(byte))) << byte;
    }
}

TEST(TeletexTables, EveryAccentHasItsSpacingForm) {
    for (uint8_t accent = 0xC0; accent < 0xD0; ++accent) {
        EXPECT_EQ(t61_spacing_accents[accent & 0x0F], spacing_accent(accent)) << int{accent};
    }
}

TEST(TeletexTables, HoldThe255CompositionsOfUnicode) {
    int num_compositions = 0;
    for (int accent = 0xC0; accent < 0xD0; ++accent) {
        for (int letter = 0; letter < 256; ++letter) {
            const t61_row_t* const row = t61_compositions[accent & 0x0F][letter / 32];
            const uint32_t entry = row == nullptr ? 0 : (*row)[letter % 32];
            const bool is_accent = letter >= 0xC0 && letter < 0xD0;
            const uint32_t expected =
                is_accent ? 0 : expected_composition(static_cast<uint8_t>(accent), static_cast<uint8_t>(letter));
            EXPECT_EQ(entry, expected) << accent << " " << letter;
            if (entry != 0) ++num_compositions;
        }
    }
    EXPECT_EQ(num_compositions, 255);
}

TEST(TeletexTables, RequiredFourCompositionsAreLeftOut) {
    for (const bytes_t& pair : {"C1 E0"_hex, "C2 E0"_hex, "C2 E9"_hex, "C2 F9"_hex}) {
        EXPECT_NE(nfc(main_code_point(pair[1]), main_code_point(pair[0])), 0u) << to_hex(pair);
        const t61_row_t* const row = t61_compositions[pair[0] & 0x0F][pair[1] / 32];
        EXPECT_EQ(row == nullptr ? 0 : (*row)[pair[1] % 32], 0) << to_hex(pair);
    }
}

TEST(TeletexTables, RowsStandOnlyWhereLettersAre) {
    for (int accent = 0xC0; accent < 0xD0; ++accent) {
        const bool has_letters = accent != 0xC0 && accent != 0xC9 && accent != 0xCC;
        const bool has_ligatures = accent == 0xC2 || accent == 0xC5;
        for (int row = 0; row < 8; ++row) {
            const bool expected = (has_letters && (row == 2 || row == 3)) || (has_ligatures && row == 7);
            EXPECT_EQ(t61_compositions[accent & 0x0F][row] != nullptr, expected) << accent << " " << row;
        }
    }
}

/// Converts by the rules, in one pass; false when a byte is not allowed where a character begins.
bool convert_by_rule(const bytes_t& in, std::string& out) {
    for (std::size_t i = 0; i < in.size();) {
        const uint8_t byte = in[i];
        if (main_code_point(byte) == 0) return false;
        if (byte < 0xC0 || byte > 0xCF) {
            out += utf8_by_the_rule(main_code_point(byte));
            i += 1;
            continue;
        }
        const uint8_t next = i + 1 < in.size() ? in[i + 1] : uint8_t{0};
        const bool alone = (next == 0 || next == ' ') && spacing_accent(byte) != 0;
        const uint32_t single = alone ? spacing_accent(byte) : expected_composition(byte, next);
        out += utf8_by_the_rule(single != 0 ? single : next);
        if (single == 0) out += utf8_by_the_rule(main_code_point(byte));
        i += 2;
    }
    return true;
}

void expect_as_by_rule(const bytes_t& in) {
    std::string expected;
    const bool ok = convert_by_rule(in, expected);
    const converted_t converted = convert(in);
    ASSERT_EQ(converted.ok, ok) << to_hex(in);
    ASSERT_EQ(converted.text, ok ? expected : "") << to_hex(in);
}

TEST(Teletex, EveryByteIsConvertedByTheRule) {
    for (int byte = 0; byte < 256; ++byte) expect_as_by_rule({static_cast<uint8_t>(byte)});
}

TEST(Teletex, EveryPairIsConvertedByTheRule) {
    for (int first = 0; first < 256; ++first) {
        for (int second = 0; second < 256; ++second) {
            expect_as_by_rule({static_cast<uint8_t>(first), static_cast<uint8_t>(second)});
        }
    }
}

TEST(Teletex, EveryPairOfAnAccentLeavesWhatFollows) {
    for (int accent = 0xC1; accent < 0xD0; ++accent) {
        for (int next = 0; next < 256; ++next) {
            expect_as_by_rule({'x', static_cast<uint8_t>(accent), static_cast<uint8_t>(next), 'y', 0xC2, 'e'});
        }
    }
}

} // namespace
