#include "tools/pkider/facts/der_tree.h"

#include "tests/support/hex.h"

#include <gtest/gtest.h>

namespace pkider_test {
namespace {

/// The lines of the first element of `bytes`.
std::string first_lines(const bytes_t& bytes, std::uint64_t max_bytes = 64) {
    tool::der_walker_t walker(bytes, {});
    const tool::der_node_t* const node = walker.next();
    if (node == nullptr) return "no element";
    return tool::der_tree_t(bytes.size()).lines(*node, tool::describe_value(*node, max_bytes, OID_MAP_HANDLE_DEFAULT));
}

struct value_row_t {
    const char* name;
    bytes_t element;
    const char* lines;
};

class DerTree : public testing::TestWithParam<value_row_t> {};

TEST_P(DerTree, ShowsTheValue) {
    EXPECT_EQ(first_lines(GetParam().element), GetParam().lines);
}

const value_row_t values_rows[] = {
    {"False", "01 01 00"_hex, "   0  2+1     BOOLEAN FALSE\n"},
    {"True", "01 01 FF"_hex, "   0  2+1     BOOLEAN TRUE\n"},
    {"TrueOfBer", "01 01 01"_hex, "   0  2+1     BOOLEAN 01  |.|\n"},
    {"Zero", "02 01 00"_hex, "   0  2+1     INTEGER 0\n"},
    {"Negative", "02 02 FF 7F"_hex, "   0  2+2     INTEGER -129\n"},
    {"Largest", "02 08 7F FF FF FF FF FF FF FF"_hex, "   0  2+8     INTEGER 9223372036854775807\n"},
    {"Smallest", "02 08 80 00 00 00 00 00 00 00"_hex, "   0  2+8     INTEGER -9223372036854775808\n"},
    {"NineBytes", "02 09 00 80 00 00 00 00 00 00 00"_hex,
     "   0  2+9     INTEGER\n"
     "                00 80 00 00 00 00 00 00  00                       |.........|\n"},
    {"EmptyInteger", "02 00"_hex, "   0  2+0     INTEGER\n"},
    {"Enumerated", "0A 01 05"_hex, "   0  2+1     ENUMERATED 5\n"},
    {"Bits", "03 02 05 A0"_hex, "   0  2+2     BIT STRING 5 unused bits A0  |.|\n"},
    {"OneUnusedBit", "03 02 01 A0"_hex, "   0  2+2     BIT STRING 1 unused bit A0  |.|\n"},
    {"NoUnusedBits", "03 02 00 41"_hex, "   0  2+2     BIT STRING 41  |A|\n"},
    {"NineUnusedBits", "03 02 09 41"_hex, "   0  2+2     BIT STRING 09 41  |.A|\n"},
    {"Octets", "04 03 00 41 7F"_hex, "   0  2+3     OCTET STRING 00 41 7F  |.A.|\n"},
    {"Null", "05 00"_hex, "   0  2+0     NULL\n"},
    {"Oid", "06 03 55 04 03"_hex, "   0  2+3     OBJECT IDENTIFIER CN (2.5.4.3)\n"},
    {"OidWithPadding", "06 02 80 01"_hex, "   0  2+2     OBJECT IDENTIFIER 0.1, not minimal 80 01  |..|\n"},
    {"CutOid", "06 02 2A 86"_hex, "   0  2+2     OBJECT IDENTIFIER 2A 86  |*.|\n"},
    {"Utf8", "0C 03 C3 A9 21"_hex, "   0  2+3     UTF8String \"\xC3\xA9!\"\n"},
    {"EmptyString", "13 00"_hex, "   0  2+0     PrintableString \"\"\n"},
    {"EscapeSequence", "0C 04 1B 5B 33 6D"_hex, "   0  2+4     UTF8String \"\\1B[3m\"\n"},
    {"NotUtf8", "0C 01 FF"_hex, "   0  2+1     UTF8String \"\\FF\"\n"},
    {"Teletex", "14 02 C2 65"_hex, "   0  2+2     TeletexString \"\xC3\xA9\"\n"},
    {"TeletexThatDoesNotConvert", "14 01 24"_hex, "   0  2+1     TeletexString 24  |$|\n"},
    {"Bmp", "1E 04 04 22 00 2C"_hex, "   0  2+4     BMPString \"\xD0\xA2,\"\n"},
    {"OddBmp", "1E 01 41"_hex, "   0  2+1     BMPString 41  |A|\n"},
    {"Universal", "1C 04 00 01 F6 00"_hex, "   0  2+4     UniversalString \"\xF0\x9F\x98\x80\"\n"},
    {"Time", "17 0D 32 36 31 31 32 31 30 39 33 33 35 39 5A"_hex, "   0  2+13    UTCTime \"261121093359Z\"\n"},
    {"Context", "82 02 61 62"_hex, "   0  2+2     [2] 61 62  |ab|\n"},
    {"TwoLines", "04 11 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10"_hex,
     "   0  2+17    OCTET STRING\n"
     "                00 01 02 03 04 05 06 07  08 09 0A 0B 0C 0D 0E 0F  |................|\n"
     "                10                                                |.|\n"},
};
INSTANTIATE_TEST_SUITE_P(Values, DerTree, testing::ValuesIn(values_rows),
                         [](const auto& row) { return row.param.name; });

TEST(DerTree, CutsLongValuesAndSaysSo) {
    EXPECT_EQ(first_lines("04 04 41 42 43 44"_hex, 3), "   0  2+4     OCTET STRING 41 42 43  |ABC| ... 1 more byte\n");
    EXPECT_EQ(first_lines("0C 04 41 42 43 44"_hex, 2), "   0  2+4     UTF8String \"AB\" ... 2 more bytes\n");
    EXPECT_EQ(first_lines("04 04 41 42 43 44"_hex, 0), "   0  2+4     OCTET STRING ... 4 more bytes\n");
    EXPECT_EQ(first_lines("02 0A 01 02 03 04 05 06 07 08 09 0A"_hex, 9),
              "   0  2+10    INTEGER\n"
              "                01 02 03 04 05 06 07 08  09                       |.........|\n"
              "                ... 1 more byte\n");
}

TEST(DerTree, CutsNoCharacterInTwo) {
    EXPECT_EQ(first_lines("0C 03 41 C3 A9"_hex, 2), "   0  2+3     UTF8String \"A\" ... 2 more bytes\n");
    EXPECT_EQ(first_lines("1E 06 00 41 00 42 00 43"_hex, 5), "   0  2+6     BMPString \"AB\" ... 2 more bytes\n");
}

TEST(DerTree, NamesNoOidThatIsTooLongForOne) {
    bytes_t bytes = "06 82 01 01"_hex;
    bytes.resize(bytes.size() + 257, 0x01);
    EXPECT_EQ(first_lines(bytes, 2), "   0  4+257   OBJECT IDENTIFIER 01 01  |..| ... 255 more bytes\n");
}

TEST(DerTree, TellsJsonTheSame) {
    const auto json = [](const bytes_t& bytes) {
        tool::der_walker_t walker(bytes, {});
        const tool::der_node_t& node = *walker.next();
        return tool::der_json(node, tool::describe_value(node, 2, OID_MAP_HANDLE_DEFAULT)).dump();
    };
    EXPECT_EQ(json("06 03 55 04 03"_hex),
              R"({"offset":0,"depth":0,"header_length":2,"content_length":3,"identifier":6,"constructed":false,)"
              R"("tag_number":6,"tag":"OBJECT IDENTIFIER","name":"CN","oid":"2.5.4.3"})");
    EXPECT_EQ(json("04 03 01 02 03"_hex),
              R"({"offset":0,"depth":0,"header_length":2,"content_length":3,"identifier":4,"constructed":false,)"
              R"("tag_number":4,"tag":"OCTET STRING","hex":"0102","hidden_bytes":1})");
    EXPECT_EQ(json("BF 83 49 00"_hex),
              R"({"offset":0,"depth":0,"header_length":4,"content_length":0,"identifier":191,"constructed":true,)"
              R"("tag_number":457,"tag":"[457]"})");
    EXPECT_EQ(json("02 01 05"_hex),
              R"({"offset":0,"depth":0,"header_length":2,"content_length":1,"identifier":2,"constructed":false,)"
              R"("tag_number":2,"tag":"INTEGER","value":"5"})");
    EXPECT_EQ(json("0C 02 FF 41"_hex),
              R"({"offset":0,"depth":0,"header_length":2,"content_length":2,"identifier":12,"constructed":false,)"
              R"("tag_number":12,"tag":"UTF8String","text":"\\FFA"})");
}

} // namespace
} // namespace pkider_test
