#include "tools/pkider/formats/blocks.h"

#include "tools/pkider/base/failure.h"
#include "tools/pkider/formats/encodings.h"

#include <gtest/gtest.h>

namespace pkider_test {
namespace {

std::string first_block(const std::string& bytes, tool::input_form_t form) {
    tool::block_t block;
    EXPECT_TRUE(tool::block_reader_t(bytes, form).next(block));
    return std::string(tool::as_text(block.der));
}

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
    EXPECT_THROW(tool::block_reader_t("not base64", tool::input_form_t::guess).next(block), tool::data_fault_t);
    tool::block_reader_t passing("not base64", tool::input_form_t::guess, tool::other_text_t::passes);
    ASSERT_TRUE(passing.next(block));
    EXPECT_EQ(block.form, tool::input_form_t::der);
    EXPECT_EQ(tool::as_text(block.der), "not base64");
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

} // namespace
} // namespace pkider_test
