#include "tools/pkider/text/terminal_text.h"

#include "tests/support/utf8_by_the_rule.h"
#include "tools/pkider/formats/encodings.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace pkider_test {
namespace {

struct range_t {
    char32_t first, last;
};

// Default_Ignorable_Code_Point, DerivedCoreProperties.txt of Unicode 15.0.0, unassigned code points included.
constexpr range_t default_ignorable[] = {
    {0x00AD, 0x00AD}, {0x034F, 0x034F}, {0x061C, 0x061C},   {0x115F, 0x1160},   {0x17B4, 0x17B5},   {0x180B, 0x180F},
    {0x200B, 0x200F}, {0x202A, 0x202E}, {0x2060, 0x206F},   {0x3164, 0x3164},   {0xFE00, 0xFE0F},   {0xFEFF, 0xFEFF},
    {0xFFA0, 0xFFA0}, {0xFFF0, 0xFFF8}, {0x1BCA0, 0x1BCA3}, {0x1D173, 0x1D17A}, {0xE0000, 0xE0FFF},
};

std::string escapes_of(const std::string& bytes) {
    std::string escapes;
    for (const char byte : bytes) escapes += "\\" + tool::to_hex({&byte, 1});
    return escapes;
}

TEST(TerminalText, ShowsWhatIsHarmless) {
    for (const char* text : {"", "CN=a b", "Ж漢字", "e\xCC\x81", "\xF0\x9F\x98\x80", "\u0915\u093F", "\u0600"}) {
        EXPECT_EQ(tool::printable(text), text);
        EXPECT_EQ(tool::printable_name(text), text);
        EXPECT_EQ(tool::valid_utf8(text), text);
    }
}

// A name brings its own escapes; anywhere else `\1B` would be the same as the escape of the character U+001B.
TEST(TerminalText, EscapesABackslashThatLooksLikeAnEscape) {
    EXPECT_EQ(tool::printable("a\\1B"), "a\\5C1B");
    EXPECT_EQ(tool::printable("\\\\FF"), "\\\\5CFF");
    EXPECT_EQ(tool::printable_width("\\1B"), 5u);
    EXPECT_EQ(tool::printable_name("CN=a\\1B\x1B"), "CN=a\\1B\\1B");
    EXPECT_EQ(tool::valid_utf8("a\\1B"), "a\\1B");
}

TEST(TerminalText, KeepsOtherBackslashes) {
    for (const char* const path :
         {"C:\\keys\\a.pem", "C:\\certs\\0x.der", "a\\", "\\", "\\1", "\\1b", "\\\\server\\A"}) {
        EXPECT_EQ(tool::printable(path), path);
        EXPECT_EQ(tool::printable_width(path), std::string_view(path).size());
    }
    EXPECT_EQ(tool::printable("\\\x1B"), "\\\\1B");
}

std::string without_escapes(std::string_view shown) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    while (!shown.empty()) {
        const bool is_escape = shown.size() >= 3 && shown[0] == '\\' &&
                               digits.find(shown[1]) != std::string_view::npos &&
                               digits.find(shown[2]) != std::string_view::npos;
        text += is_escape ? static_cast<char>(digits.find(shown[1]) << 4 | digits.find(shown[2])) : shown[0];
        shown.remove_prefix(is_escape ? 3 : 1);
    }
    return text;
}

TEST(TerminalText, IsShownWithoutAmbiguity) {
    constexpr std::string_view pieces = "\\\\\\15BCbx\x1B\xFF";
    std::mt19937 random(3);
    for (int round = 0; round < 100000; ++round) {
        std::string text;
        for (std::size_t size = random() % 8; size != 0; --size) text += pieces[random() % pieces.size()];
        ASSERT_EQ(without_escapes(tool::printable(text)), text) << tool::to_hex(text);
    }
}

TEST(TerminalText, EscapesEveryControlCharacter) {
    for (char32_t c = 0; c < 0xA0; ++c) {
        if (c >= 0x20 && c < 0x7F) continue;
        const std::string text = utf8_by_the_rule(c);
        EXPECT_EQ(tool::printable(text), escapes_of(text));
        EXPECT_EQ(tool::printable_name(text), escapes_of(text));
        EXPECT_EQ(tool::valid_utf8(text), text);
    }
}

TEST(TerminalText, EscapesEveryDefaultIgnorableCodePoint) {
    for (const range_t& range : default_ignorable) {
        for (char32_t c = range.first; c <= range.last; ++c) {
            const std::string text = utf8_by_the_rule(c);
            EXPECT_EQ(tool::printable(text), escapes_of(text)) << std::hex << static_cast<unsigned>(c);
            EXPECT_EQ(tool::printable_name(text), escapes_of(text)) << std::hex << static_cast<unsigned>(c);
        }
    }
}

TEST(TerminalText, ShowsTheNeighboursOfIgnorableCodePoints) {
    for (const char32_t c : {0xACu, 0xAEu, 0x34Eu, 0x350u, 0x115Eu, 0x1161u, 0x17B3u, 0x17B6u, 0x180Au, 0x1810u,
                             0x3163u, 0x3165u, 0xFE10u, 0xFF9Fu, 0xFFFCu, 0x1BC9Fu, 0x1D172u, 0x1D17Bu}) {
        const std::string text = utf8_by_the_rule(c);
        EXPECT_EQ(tool::printable(text), text) << std::hex << static_cast<unsigned>(c);
    }
}

TEST(TerminalText, EscapesWhatElseIsNotSeen) {
    EXPECT_EQ(tool::printable("a\u2028\u2029b"), "a\\E2\\80\\A8\\E2\\80\\A9b") << "separators of lines";
    EXPECT_EQ(tool::printable("\uFFF9\uFFFB"), "\\EF\\BF\\B9\\EF\\BF\\BB") << "marks around annotations";
    EXPECT_EQ(tool::printable("\u0378\uFFFF"), "\\CD\\B8\\EF\\BF\\BF") << "not assigned";
}

TEST(TerminalText, EscapesBytesThatAreNoUtf) {
    EXPECT_EQ(tool::printable("a\xFF\xC3"), "a\\FF\\C3");
    EXPECT_EQ(tool::printable_name("a\xFF\xC3"), "a\\FF\\C3");
    EXPECT_EQ(tool::valid_utf8("a\xFF\xC3"), "a\\FF\\C3");
}

TEST(TerminalText, ShowsEveryCodePointWholeOrEscaped) {
    for (char32_t c = 0; c <= 0x10FFFF; ++c) {
        if (c >= 0xD800 && c <= 0xDFFF) continue;
        const std::string text = utf8_by_the_rule(c);
        const std::string shown = tool::printable(text);
        const bool escaped = shown != text;
        ASSERT_TRUE(!escaped || shown == escapes_of(text)) << std::hex << static_cast<unsigned>(c);
        const std::size_t width = tool::printable_width(text);
        ASSERT_TRUE(escaped ? width == shown.size() : width <= 2) << std::hex << static_cast<unsigned>(c);
    }
}

struct width_row_t {
    const char* name;
    std::size_t width;
    std::vector<char32_t> characters;
};

class TerminalTextWidth : public testing::TestWithParam<width_row_t> {};

TEST_P(TerminalTextWidth, IsThatOfATerminal) {
    for (const char32_t c : GetParam().characters) {
        EXPECT_EQ(tool::printable_width(utf8_by_the_rule(c)), GetParam().width) << std::hex << static_cast<unsigned>(c);
    }
}

const width_row_t width_rows[] = {
    {"Narrow", 1, {U'a', U'~', 0xE9, 0x416, 0x5D0, 0x2190}},
    {"Wide", 2, {0x1100, 0x3042, 0x6F22, 0xAC00, 0xFF01, 0x1F600, 0x20000}},
    {"Marks", 0, {0x300, 0x36E, 0x483, 0x5BF, 0x20D0, 0x302A}},
    {"SpacingMarks", 1, {0x903, 0x93F, 0xBBE, 0x17B6}},
    {"EnclosingSigns", 1, {0x600, 0x6DD, 0x70F, 0x110BD}},
    {"VowelsAndFinalsOfHangul", 0, {0x1161, 0x11A7, 0x11A8, 0x11FF}},
};
INSTANTIATE_TEST_SUITE_P(Characters, TerminalTextWidth, testing::ValuesIn(width_rows),
                         [](const auto& row) { return row.param.name; });

TEST(TerminalText, CountsColumnsOfWhatIsShown) {
    EXPECT_EQ(tool::printable_width("ab"), 2u);
    EXPECT_EQ(tool::printable_width("Ж漢e\xCC\x81"), 4u);
    EXPECT_EQ(tool::printable_width("\x1B"), 3u);
    EXPECT_EQ(tool::printable_width("\xC2\x9B\xFF"), 9u);
    EXPECT_EQ(tool::printable_width("\u034F"), 6u);
    EXPECT_EQ(tool::printable_width("a\\b"), 3u);
    EXPECT_EQ(tool::printable_name_width("a\\b"), 3u);
}

} // namespace
} // namespace pkider_test
