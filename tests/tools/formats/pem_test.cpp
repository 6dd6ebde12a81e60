#include "tools/pkider/formats/pem.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace pkider_test {
namespace {

std::vector<tool::block_t> read_pem(std::string_view text) {
    std::vector<tool::block_t> blocks;
    tool::pem_reader_t reader(text);
    for (tool::block_t block; reader.next(block);) blocks.push_back(std::move(block));
    return blocks;
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

} // namespace
} // namespace pkider_test
