#include "tools/pkider/text/terminal_text.h"

#include "tools/pkider/formats/encodings.h"
#include "tools/pkider/text/character_width.h"

#include <gtest/gtest.h>

namespace pkider_test {
namespace {

TEST(CharacterWidth, IsThatOfATerminal) {
    for (const char32_t narrow : std::u32string_view(U"a~\u00E9Ж\u05D0\u2190")) {
        EXPECT_EQ(tool::character_width(narrow), 1) << static_cast<unsigned>(narrow);
    }
    for (const char32_t wide : {0x1100u, 0x3042u, 0x6F22u, 0xAC00u, 0xFF01u, 0x1F600u, 0x20000u}) {
        EXPECT_EQ(tool::character_width(wide), 2) << static_cast<unsigned>(wide);
    }
    for (const char32_t mark :
         {0x300u, 0x36Fu, 0x483u, 0x5BFu, 0x1160u, 0x200Du, 0x20D0u, 0x302Au, 0xFE0Fu, 0xE0100u}) {
        EXPECT_EQ(tool::character_width(mark), 0) << static_cast<unsigned>(mark);
    }
}

TEST(TerminalText, ShowsWhatIsHarmless) {
    for (const char* text : {"", "CN=a b", "Ж漢字", "e\xCC\x81", "\xF0\x9F\x98\x80", "\\"}) {
        EXPECT_EQ(tool::printable(text), text);
        EXPECT_EQ(tool::valid_utf8(text), text);
    }
}

TEST(TerminalText, EscapesEveryControlCharacter) {
    for (int c = 0; c < 0xA0; ++c) {
        if (c >= 0x20 && c < 0x7F) continue;
        std::string text;
        if (c >= 0x80) text += '\xC2';
        text += static_cast<char>(c);
        EXPECT_EQ(tool::printable(text),
                  c >= 0x80 ? "\\C2\\" + tool::to_hex(text.substr(1)) : "\\" + tool::to_hex(text));
        EXPECT_EQ(tool::valid_utf8(text), text);
    }
}

TEST(TerminalText, EscapesWhatMisleads) {
    EXPECT_EQ(tool::printable("a\u202Eb"), "a\\E2\\80\\AEb");
    EXPECT_EQ(tool::printable("\u2066\u2069\u200F\u061C"), "\\E2\\81\\A6\\E2\\81\\A9\\E2\\80\\8F\\D8\\9C");
    EXPECT_EQ(tool::printable("\u200B\uFEFF\u2028"), "\\E2\\80\\8B\\EF\\BB\\BF\\E2\\80\\A8");
}

TEST(TerminalText, EscapesBytesThatAreNoUtf) {
    EXPECT_EQ(tool::printable("a\xFF\xC3"), "a\\FF\\C3");
    EXPECT_EQ(tool::valid_utf8("a\xFF\xC3"), "a\\FF\\C3");
}

TEST(TerminalText, CountsColumnsOfWhatIsShown) {
    EXPECT_EQ(tool::printable_width("ab"), 2u);
    EXPECT_EQ(tool::printable_width("Ж漢e\xCC\x81"), 4u);
    EXPECT_EQ(tool::printable_width("\x1B"), 3u);
    EXPECT_EQ(tool::printable_width("\xC2\x9B\xFF"), 9u);
}

} // namespace
} // namespace pkider_test
