// Hex, base64, PEM, UTF-8 and what is safe to show.
#include "tools/pkider/base/failure.h"
#include "tools/pkider/formats/blocks.h"
#include "tools/pkider/formats/encodings.h"
#include "tools/pkider/formats/pem.h"
#include "tools/pkider/formats/utf8.h"
#include "tools/pkider/text/character_width.h"
#include "tools/pkider/text/terminal_text.h"

#include <gtest/gtest.h>

namespace pkider_test {
namespace {

/// Secrets are not compared with ==.
std::optional<std::string> as_text(const std::optional<tool::secret_t>& secret) {
    return secret ? std::optional(std::string(secret->text())) : std::nullopt;
}

std::vector<tool::block_t> read_pem(std::string_view text) {
    std::vector<tool::block_t> blocks;
    tool::pem_reader_t reader(text);
    for (tool::block_t block; reader.next(block);) blocks.push_back(std::move(block));
    return blocks;
}

std::string first_block(const std::string& bytes, tool::input_form_t form) {
    tool::block_t block;
    EXPECT_TRUE(tool::block_reader_t(bytes, form).next(block));
    return std::string(tool::as_text(block.der));
}

TEST(Hex, ConvertsEveryByte) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
    EXPECT_EQ(as_text(tool::from_hex(tool::to_hex(all))), all);
    EXPECT_EQ(tool::to_hex(std::string("\0\x7F\x80\xFF", 4)), "007F80FF");
}

TEST(Hex, SkipsWhiteSpaceAndColonsBetweenBytes) {
    EXPECT_EQ(as_text(tool::from_hex("61:62 63\t64\r\n65")), "abcde");
    EXPECT_EQ(as_text(tool::from_hex("")), "");
}

TEST(Hex, RefusesOtherCharactersAndHalfBytes) {
    for (const char* text : {"6", "616", "6 1", "6g", "0x61", "61-62"})
        EXPECT_EQ(as_text(tool::from_hex(text)), std::nullopt) << text;
}

// RFC 4648 10
TEST(Base64, KnowsTheTestVectors) {
    constexpr std::pair<const char*, const char*> vectors[] = {{"", ""},
                                                               {"f", "Zg=="},
                                                               {"fo", "Zm8="},
                                                               {"foo", "Zm9v"},
                                                               {"foob", "Zm9vYg=="},
                                                               {"fooba", "Zm9vYmE="},
                                                               {"foobar", "Zm9vYmFy"}};
    for (const auto& [bytes, text] : vectors) {
        EXPECT_EQ(tool::to_base64(bytes), text);
        EXPECT_EQ(as_text(tool::from_base64(text)), bytes);
    }
}

TEST(Base64, ConvertsEveryByteAtEveryPlace) {
    for (std::size_t size = 0; size < 6; ++size) {
        for (int byte = 0; byte < 256; ++byte) {
            const std::string bytes = std::string(size, 'x') + static_cast<char>(byte);
            EXPECT_EQ(as_text(tool::from_base64(tool::to_base64(bytes))), bytes);
        }
    }
}

TEST(Base64, BreaksLines) {
    EXPECT_EQ(tool::to_base64("foobar", 4), "Zm9v\nYmFy");
    EXPECT_EQ(as_text(tool::from_base64("Zm9v\r\n YmFy\t")), "foobar");
}

TEST(Base64, RefusesWhatIsNotWhole) {
    for (const char* text : {"Z", "Zg", "Zg=", "Zg===", "=", "====", "Zm8", "Zm9vY", "Zg==Zg==", "Z=g=", "Zm9?", "Zm-_",
                             "Zh==", "Zm9="}) { // bits after the last byte
        EXPECT_EQ(as_text(tool::from_base64(text)), std::nullopt) << text;
    }
}

TEST(Pem, ReadsBlocksWithTheirLabelsAndLines) {
    const auto blocks = read_pem("text\r\n-----BEGIN A-----\r\nZm9v\r\nYmFy\r\n-----END A-----\r\n\n"
                                 "-----BEGIN B C-----  \nProc-Type: 4,ENCRYPTED\nDEK-Info: x\n\nZm8=\n"
                                 "-----END B C-----");
    ASSERT_EQ(blocks.size(), 2u);
    EXPECT_EQ(blocks[0].label, "A");
    EXPECT_EQ(blocks[0].line, 2u);
    EXPECT_EQ(blocks[0].decoded.text(), "foobar");
    EXPECT_EQ(blocks[0].fault, "");
    EXPECT_EQ(blocks[1].label, "B C");
    EXPECT_EQ(blocks[1].line, 7u);
    EXPECT_EQ(blocks[1].decoded.text(), "fo");
}

TEST(Pem, GoesOnBehindAFaultyBlock) {
    const auto blocks = read_pem("-----BEGIN A-----\nZm9\n-----END A-----\n"
                                 "-----BEGIN B-----\nZm9v\n-----END C-----\n"
                                 "-----BEGIN D-----\nZm9v\n-----END D-----\n"
                                 "-----BEGIN E-----\nZm9v\n");
    ASSERT_EQ(blocks.size(), 4u);
    EXPECT_EQ(blocks[0].fault, "the base64 digits are faulty");
    EXPECT_EQ(blocks[1].fault, "END line 6 names another label");
    EXPECT_EQ(blocks[2].fault, "");
    EXPECT_EQ(blocks[3].fault, "no END line");
    for (std::size_t i : {0u, 1u, 3u}) EXPECT_EQ(blocks[i].decoded.text(), "");
}

// A block whose END line is lost does not swallow the next one.
TEST(Pem, EndsABlockWhereTheNextBegins) {
    const auto blocks = read_pem("-----BEGIN A-----\nZm9v\n-----BEGIN B-----\nZm9v\n-----END B-----\n");
    ASSERT_EQ(blocks.size(), 2u);
    EXPECT_EQ(blocks[0].fault, "no END line");
    EXPECT_EQ(blocks[1].label, "B");
    EXPECT_EQ(blocks[1].line, 3u);
    EXPECT_EQ(blocks[1].decoded.text(), "foo");
}

TEST(Pem, IsOnlySeenInAWholeBeginLine) {
    EXPECT_TRUE(tool::looks_like_pem("-----BEGIN A-----"));
    EXPECT_TRUE(tool::looks_like_pem("x\n-----BEGIN A-----  \r\n"));
    EXPECT_FALSE(tool::looks_like_pem("x -----BEGIN A-----"));
    EXPECT_FALSE(tool::looks_like_pem("-----BEGIN A-----x"));
    EXPECT_FALSE(tool::looks_like_pem(std::string("\n-----BEGIN \0-----END ", 22)));
    EXPECT_TRUE(read_pem("-----BEGIN A----\n-----BEGIN \n-----BEGIN --\n-----END A-----\n").empty());
}

struct pem_row_t {
    const char* name;
    std::string text;
    const char* label;
    const char* der;
    const char* fault;
};

class PemBlock : public testing::TestWithParam<pem_row_t> {};

TEST_P(PemBlock, IsRead) {
    const auto blocks = read_pem(GetParam().text);
    ASSERT_EQ(blocks.size(), 1u);
    EXPECT_EQ(blocks[0].label, GetParam().label);
    EXPECT_EQ(blocks[0].decoded.text(), GetParam().der);
    EXPECT_EQ(blocks[0].fault, GetParam().fault);
}

const pem_row_t texts_rows[] = {
    {"OneLongLine", "-----BEGIN A-----\nZm9vYmFyZm9vYmFy\n-----END A-----", "A", "foobarfoobar", ""},
    {"BlanksAmongDigits", "-----BEGIN A-----\n Zm9v YmFy\t\n\nZm9v\n-----END A-----", "A", "foobarfoo", ""},
    {"NoDigits", "-----BEGIN A-----\n-----END A-----\n", "A", "", ""},
    {"EmptyLabel", "-----BEGIN -----\nZm9v\n-----END -----\n", "", "foo", ""},
    {"LabelWithDashes", "-----BEGIN A-B-----\nZm9v\n-----END A-B-----\n", "A-B", "foo", ""},
    {"TextBehindTheEnd", "-----BEGIN A-----\nZm9v\n-----END A-----\nZm9v\n", "A", "foo", ""},
    {"HeaderBehindDigits", "-----BEGIN A-----\nZm9v\nA: b\n-----END A-----\n", "A", "", "the base64 digits are faulty"},
    {"NulAmongDigits", std::string("-----BEGIN A-----\nZm9\0v\n-----END A-----\n", 39), "A", "",
     "the base64 digits are faulty"},
    {"EndLineWithTextBehind", "-----BEGIN A-----\nZm9v\n-----END A-----x\n", "A", "", "no END line"},
    {"BeginLineAlone", "-----BEGIN A-----", "A", "", "no END line"},
};
INSTANTIATE_TEST_SUITE_P(Texts, PemBlock, testing::ValuesIn(texts_rows),
                         [](const auto& row) { return row.param.name; });

TEST(InputForm, IsGuessed) {
    using tool::input_form_t;
    EXPECT_EQ(tool::guess_form(std::string("\x30\x00", 2)), input_form_t::der);
    EXPECT_EQ(tool::guess_form("3000"), input_form_t::hex);
    EXPECT_EQ(tool::guess_form("MAA="), input_form_t::base64);
    EXPECT_EQ(tool::guess_form("30\x80"), input_form_t::der);
    EXPECT_EQ(tool::guess_form("abcdefgh"), input_form_t::base64);
    EXPECT_EQ(tool::guess_form("abcdefab"), input_form_t::hex);
    EXPECT_EQ(tool::guess_form("\x7F"
                               "ELF\n-----BEGIN \n"),
              input_form_t::der)
        << "a program that writes PEM";
}

TEST(InputForm, IsGuessedBehindAByteOrderMark) {
    using tool::input_form_t;
    EXPECT_EQ(tool::guess_form("\xEF\xBB\xBF-----BEGIN A-----\n"), input_form_t::pem);
    EXPECT_EQ(tool::guess_form("\xEF\xBB\xBF"
                               "3000"),
              input_form_t::hex);
    EXPECT_EQ(tool::guess_form("\xEF\xBB\xBFMAA="), input_form_t::base64);
    EXPECT_EQ(tool::guess_form("3000\xEF\xBB\xBF"), input_form_t::der) << "it is a mark at the start only";
}

TEST(InputBlocks, AreReadBehindAByteOrderMark) {
    using tool::input_form_t;
    const std::string mark = "\xEF\xBB\xBF";
    for (const std::string text : {"3000", "MAA=", "-----BEGIN A-----\nMAA=\n-----END A-----\n"}) {
        EXPECT_EQ(first_block(mark + text, input_form_t::guess), std::string("0\0", 2)) << text;
    }
    EXPECT_EQ(first_block(mark + "MAA=", input_form_t::base64), std::string("0\0", 2));
    EXPECT_EQ(first_block(mark, input_form_t::der), mark) << "DER has no mark";
}

TEST(InputBlocks, HaveTheFormThatWasFound) {
    using tool::input_form_t;
    constexpr std::pair<const char*, input_form_t> rows[] = {
        {"0\x80", input_form_t::der},
        {"3000", input_form_t::hex},
        {"MAA=", input_form_t::base64},
        {"-----BEGIN A-----\nMAA=\n-----END A-----\n", input_form_t::pem},
    };
    for (const auto& [bytes, form] : rows) {
        tool::block_reader_t reader(bytes, input_form_t::guess);
        tool::block_t block;
        ASSERT_TRUE(reader.next(block)) << bytes;
        EXPECT_EQ(block.form, form) << bytes;
        EXPECT_FALSE(reader.next(block)) << bytes;
    }
}

TEST(InputBlocks, OfOtherTextAreAFaultOrDer) {
    tool::block_t block;
    EXPECT_THROW(tool::block_reader_t("some text", tool::input_form_t::guess).next(block), tool::data_fault_t);
    tool::block_reader_t passing("some text", tool::input_form_t::guess, tool::other_text_t::passes);
    ASSERT_TRUE(passing.next(block));
    EXPECT_EQ(block.form, tool::input_form_t::der);
    EXPECT_EQ(tool::as_text(block.der), "some text");
}

TEST(InputBlocks, AreIndependentOfTheInputOnceDetached) {
    std::string bytes = "0\x80";
    tool::block_t block;
    tool::block_reader_t(bytes, tool::input_form_t::der).next(block);
    block.detach();
    const tool::block_t moved = std::move(block);
    bytes = "xx";
    EXPECT_EQ(tool::as_text(moved.der), "0\x80");
}

TEST(Utf8, StepsOverWholeCharacters) {
    const auto step = [](std::string_view text) { return tool::next_utf8(text); };
    EXPECT_EQ(step("a").character, U'a');
    EXPECT_EQ(step("\xC2\x80").character, char32_t{0x80});
    EXPECT_EQ(step("\xDF\xBF").character, char32_t{0x7FF});
    EXPECT_EQ(step("\xE0\xA0\x80").character, char32_t{0x800});
    EXPECT_EQ(step("\xED\x9F\xBF").character, char32_t{0xD7FF});
    EXPECT_EQ(step("\xEF\xBF\xBF").character, char32_t{0xFFFF});
    EXPECT_EQ(step("\xF0\x90\x80\x80").character, char32_t{0x10000});
    EXPECT_EQ(step("\xF4\x8F\xBF\xBF").character, char32_t{0x10FFFF});
    EXPECT_EQ(step("\xF4\x8F\xBF\xBF").size, 4u);
}

TEST(Utf8, StepsOverOneByteThatIsPartOfNone) {
    for (const char* text : {"\x80", "\xBF", "\xC0\x80", "\xC1\xBF", "\xC2", "\xC2 ", "\xE0\x9F\xBF", "\xED\xA0\x80",
                             "\xEF\xBF", "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF"}) {
        const tool::utf8_step_t step = tool::next_utf8(text);
        EXPECT_FALSE(step.valid) << text;
        EXPECT_EQ(step.size, 1u) << text;
    }
}

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
