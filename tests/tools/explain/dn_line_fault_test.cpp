// Faults in lines of text, as `pkider dn encode` shows them: the caret is under the faulty character.
#include "tests/tools/program.h"

#include <nlohmann/json.hpp>

namespace pkider_test {
namespace {

using nlohmann::json;

struct fault_row_t {
    const char* name;
    const char* line;
    unsigned code;
    unsigned position; // the library's
    std::size_t offset;
    const char* shown; // all of standard error
};

void PrintTo(const fault_row_t& row, std::ostream* stream) {
    *stream << row.line;
}

class DnLineFault : public testing::TestWithParam<fault_row_t> {};

TEST_P(DnLineFault, IsShownWithACaret) {
    const run_result_t result = run_pkider({"dn", "encode", "--", GetParam().line});
    EXPECT_EQ(result.exit_code, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, GetParam().shown);
}

TEST_P(DnLineFault, KeepsTheRawPositionInJson) {
    const run_result_t result = run_pkider({"dn", "encode", "--json", "--", GetParam().line});
    EXPECT_EQ(result.exit_code, 2);
    const json fault = json::parse(result.out).at(0).at("fault");
    EXPECT_EQ(fault["code"], GetParam().code);
    EXPECT_EQ(fault["position"], GetParam().position);
    EXPECT_EQ(fault["offset"], GetParam().offset);
}

const fault_row_t lines_rows[] = {
    {"EqualsBeforeType", "=a", 1, 0, 0,
     "pkider: argument:1:1: no attribute type before the '=' [code 1]\n"
     "  =a\n"
     "  ^\n"
     "  write an attribute as TYPE=value, for example CN=Server\n"},
    {"EqualsAfterSeparator", "CN=a, =b", 1, 6, 6,
     "pkider: argument:1:7: no attribute type before the '=' [code 1]\n"
     "  CN=a, =b\n"
     "        ^\n"
     "  write an attribute as TYPE=value, for example CN=Server\n"},
    {"OnlyAType", "CN", 1, 2, 2,
     "pkider: argument:1:3: expected '=' after the attribute type 'CN' [code 1]\n"
     "  CN\n"
     "    ^\n"
     "  write an attribute as TYPE=value, for example CN=Server\n"},
    {"TwoWords", "C N=a", 1, 2, 2,
     "pkider: argument:1:3: expected '=' after the attribute type 'C' [code 1]\n"
     "  C N=a\n"
     "    ^\n"
     "  write an attribute as TYPE=value, for example CN=Server\n"},
    {"NothingAfterComma", "CN=a,", 1, 5, 5,
     "pkider: argument:1:6: nothing follows the ',' [code 1]\n"
     "  CN=a,\n"
     "       ^\n"
     "  remove it, or write '\\,' if it belongs to the value\n"},
    {"OnlyBlanksAfterPlus", "CN=a+  ", 1, 5, 5,
     "pkider: argument:1:6: nothing follows the '+' [code 1]\n"
     "  CN=a+  \n"
     "       ^\n"
     "  remove it, or write '\\+' if it belongs to the value\n"},
    {"CommaOfAValue", "CN=Smith, John", 1, 14, 14,
     "pkider: argument:1:15: expected '=' after the attribute type 'John' [code 1]\n"
     "  CN=Smith, John\n"
     "                ^\n"
     "  if the ',' before it belongs to the value, write '\\,' or put the value in double quotes\n"},
    {"UnknownType", "O=x,FOO=y", 2, 4, 4,
     "pkider: argument:1:5: 'FOO' is neither a known short name nor an OID in dotted form [code 2]\n"
     "  O=x,FOO=y\n"
     "      ^\n"
     "  'pkider map list' shows the known names; others are written as OID, or added with --config-dir\n"},
    {"BadDottedType", "3.1=y", 2, 0, 0,
     "pkider: argument:1:1: '3.1' is neither a known short name nor an OID in dotted form [code 2]\n"
     "  3.1=y\n"
     "  ^\n"
     "  the first arc is above 2\n"},
    {"DoubleComma", "CN=a,,O=b", 2, 5, 5,
     "pkider: argument:1:6: ',O' is neither a known short name nor an OID in dotted form [code 2]\n"
     "  CN=a,,O=b\n"
     "       ^\n"
     "  there is a separator too many before it\n"},
    {"OpenQuote", "O=x,CN=\"a", 3, 7, 7,
     "pkider: argument:1:8: a double quote of this value is not closed [code 3]\n"
     "  O=x,CN=\"a\n"
     "         ^\n"
     "  close it, or write '\\\"' for a double quote that belongs to the value\n"},
    {"OpenQuoteAtTheEnd", "CN=a\"", 3, 3, 3,
     "pkider: argument:1:4: a double quote of this value is not closed [code 3]\n"
     "  CN=a\"\n"
     "     ^\n"
     "  close it, or write '\\\"' for a double quote that belongs to the value\n"},
    {"FewHexDigits", "CN=#0C0", 4, 3, 3,
     "pkider: argument:1:4: fewer than four hex digits after '#' [code 4]\n"
     "  CN=#0C0\n"
     "     ^\n"
     "  a whole DER element in hex digits must follow '#'; write '\\#' for a value that begins with "
     "'#'\n"},
    {"OddHexDigits", "CN=#0C0161 ", 4, 3, 3,
     "pkider: argument:1:4: an odd number of hex digits after '#' [code 4]\n"
     "  CN=#0C0161 \n"
     "     ^\n"
     "  a whole DER element in hex digits must follow '#'; write '\\#' for a value that begins with "
     "'#'\n"},
    {"NoHexDigit", "CN=#0C0G", 5, 6, 7, // the library counts from behind the '#'
     "pkider: argument:1:8: 'G' is no hex digit [code 5]\n"
     "  CN=#0C0G\n"
     "         ^\n"
     "  a whole DER element in hex digits must follow '#'; write '\\#' for a value that begins with "
     "'#'\n"},
    {"BlanksBehindHex", "CN=#0C0161  ", 5, 9, 10,
     "pkider: argument:1:11: ' ' is no hex digit [code 5]\n"
     "  CN=#0C0161  \n"
     "            ^\n"
     "  a whole DER element in hex digits must follow '#'; write '\\#' for a value that begins with "
     "'#'\n"},
    {"HexIsNoElement", "CN=#0C05616263", 6, 3, 3,
     "pkider: argument:1:4: the bytes after '#' are not a whole DER element [code 6]\n"
     "  CN=#0C05616263\n"
     "     ^\n"
     "  a whole DER element in hex digits must follow '#'; write '\\#' for a value that begins with "
     "'#'\n"},
    {"BackslashAtTheEnd", "CN=a\\", 7, 5, 4,
     "pkider: argument:1:5: a backslash ends the value [code 7]\n"
     "  CN=a\\\n"
     "      ^\n"
     "  write '\\\\' for a backslash\n"},
    {"BackslashBeforeTheLastQuote", "CN=\"x\"\\\"", 7, 6, 6,
     "pkider: argument:1:7: a backslash ends the value [code 7]\n"
     "  CN=\"x\"\\\"\n"
     "        ^\n"
     "  the closing double quote needs an even number of backslashes before it\n"},
    {"OneHexDigitAtTheEnd", "CN=a\\4", 8, 6, 6,
     "pkider: argument:1:7: a second hex digit is missing after '\\4' [code 8]\n"
     "  CN=a\\4\n"
     "        ^\n"
     "  write two hex digits for a byte, or '\\\\' for a backslash\n"},
    {"OneHexDigit", "CN=a\\4g,O=x", 8, 6, 6,
     "pkider: argument:1:7: a second hex digit is missing after '\\4' [code 8]\n"
     "  CN=a\\4g,O=x\n"
     "        ^\n"
     "  write two hex digits for a byte, or '\\\\' for a backslash\n"},
    {"UnknownEscape", "CN=a\\xb", 9, 5, 5,
     "pkider: argument:1:6: '\\x' is not an escape [code 9]\n"
     "  CN=a\\xb\n"
     "       ^\n"
     "  write '\\\\' for a backslash; two hex digits or one of \" # + , ; < = > \\ may follow '\\'\n"},
    {"UnknownEscapeOfALetterInUtf8", "CN=\\Ж", 9, 4, 4,
     "pkider: argument:1:5: '\\Ж' is not an escape [code 9]\n"
     "  CN=\\Ж\n"
     "      ^\n"
     "  write '\\\\' for a backslash; two hex digits or one of \" # + , ; < = > \\ may follow '\\'\n"},
    {"Semicolon", "O=x,CN=a;b", 10, 8, 8,
     "pkider: argument:1:9: ';' is not escaped in an unquoted value [code 10]\n"
     "  O=x,CN=a;b\n"
     "          ^\n"
     "  write '\\;' or put the value in double quotes\n"},
    {"BlankBeforeTheQuotes", "CN= \"a,b\"", 10, 4, 4,
     "pkider: argument:1:5: '\"' is not escaped in an unquoted value [code 10]\n"
     "  CN= \"a,b\"\n"
     "      ^\n"
     "  write '\\\"', or let the quotes enclose the whole value, blanks included\n"},
    {"LoneHash", "CN=#", 10, 3, 3,
     "pkider: argument:1:4: '#' is not escaped in an unquoted value [code 10]\n"
     "  CN=#\n"
     "     ^\n"
     "  write '\\#' or put the value in double quotes\n"},
    {"BehindCyrillic", "CN=Жук;b", 10, 9, 9,
     "pkider: argument:1:7: ';' is not escaped in an unquoted value [code 10]\n"
     "  CN=Жук;b\n"
     "        ^\n"
     "  write '\\;' or put the value in double quotes\n"},
    {"BehindWideCharacters", "CN=漢字;b", 10, 9, 9,
     "pkider: argument:1:8: ';' is not escaped in an unquoted value [code 10]\n"
     "  CN=漢字;b\n"
     "         ^\n"
     "  write '\\;' or put the value in double quotes\n"},
    {"BehindACombiningMark", "CN=e\xCC\x81;b", 10, 6, 6,
     "pkider: argument:1:5: ';' is not escaped in an unquoted value [code 10]\n"
     "  CN=e\xCC\x81;b\n"
     "      ^\n"
     "  write '\\;' or put the value in double quotes\n"},
    {"BehindAControlCharacter", "CN=\x1B[31m;b", 10, 8, 8,
     "pkider: argument:1:11: ';' is not escaped in an unquoted value [code 10]\n"
     "  CN=\\1B[31m;b\n"
     "            ^\n"
     "  write '\\;' or put the value in double quotes\n"},
    {"BehindBytesThatAreNoUtf", "CN=\xFF\xC3;b", 10, 5, 5,
     "pkider: argument:1:10: ';' is not escaped in an unquoted value [code 10]\n"
     "  CN=\\FF\\C3;b\n"
     "           ^\n"
     "  write '\\;' or put the value in double quotes\n"},
};
INSTANTIATE_TEST_SUITE_P(Lines, DnLineFault, testing::ValuesIn(lines_rows), row_name);

// Positions have 16 bits; the caret does not.
TEST(DnLineFaultInALongLine, IsFoundBehindThePositionsOfTheLibrary) {
    const std::string line = "CN=" + std::string(70000, 'a') + ",O=b;c";
    const run_result_t result = run_pkider({"dn", "encode", "--json", "-"}, {.input = line + "\n"});
    EXPECT_EQ(result.exit_code, 2);
    const json fault = json::parse(result.out).at(0).at("fault");
    EXPECT_EQ(fault["offset"], 70007);
    EXPECT_EQ(fault["position"], 70007 - 65536);
    EXPECT_EQ(fault["column"], 70008);
}

TEST(DnLineFaultInALongLine, ShowsTheSurroundingsOfTheCaret) {
    const std::string line = "CN=" + std::string(200, 'a') + ";" + std::string(200, 'b');
    const run_result_t result = run_pkider({"dn", "encode", line});
    EXPECT_EQ(result.err, "pkider: argument:1:204: ';' is not escaped in an unquoted value [code 10]\n"
                          "  ..." +
                              std::string(60, 'a') + ";" + std::string(39, 'b') + "...\n" + std::string(65, ' ') +
                              "^\n"
                              "  write '\\;' or put the value in double quotes\n");
}

TEST(DnLineFaultOnStandardInput, NamesTheLine) {
    const run_result_t result = run_pkider({"dn", "encode"}, {.input = "CN=a\r\n\nCN=a;b\n"});
    EXPECT_EQ(result.exit_code, 2);
    EXPECT_EQ(result.out, "300C310A300806035504031301"
                          "61\n3000\n");
    EXPECT_EQ(result.err, "pkider: standard input:3:5: ';' is not escaped in an unquoted value [code 10]\n"
                          "  CN=a;b\n"
                          "      ^\n"
                          "  write '\\;' or put the value in double quotes\n");
}

} // namespace
} // namespace pkider_test
