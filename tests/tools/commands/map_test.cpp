// pkider map: the map in force, and what becomes of the lines of a file.
#include "tests/tools/program.h"

#include "tests/support/temp_dir.h"
#include "tools/pkider/explain/map_reach.h"
#include "tools/pkider/facts/builtin_map.h"

#include <nlohmann/json.hpp>
#include <pkider/oid.h>

#include <random>

namespace pkider_test {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

TEST(MapList, ListsTheBuiltInTable) {
    const run_result_t result = run_pkider({"map", "list"});
    EXPECT_EQ(result.exit_code, 0) << result;
    EXPECT_THAT(result.out, StartsWith("2.5.4.3                     CN      commonName\n"
                                       "2.5.4.4                     SN      surName\n"));
    EXPECT_THAT(result.out, HasSubstr("2.5.4.8                     S       stateName  [2.5.4.8 is printed as ST "
                                      "(built-in:5); S is still read as 2.5.4.8]\n"));
    EXPECT_EQ(std::ranges::count(result.out, '\n'), 23);
}

// The copy that is listed and the library's own map say the same.
TEST(MapList, ListsWhatTheLibraryFinds) {
    for (const tool::map_line_t& line : tool::read_map_lines("built-in", tool::builtin_map_text)) {
        const OIDdescr_t* const entry =
            oid_map_find_sn(OID_MAP_HANDLE_DEFAULT, line.short_name.data(), line.short_name.size());
        ASSERT_NE(entry, nullptr) << line.short_name;
        EXPECT_EQ(std::string_view(entry->str, entry->str_len), line.oid);
        EXPECT_EQ(std::string_view(entry->ln, entry->ln_len), line.long_name);
    }
}

TEST(MapList, ListsAMapAloneOrBehindTheBuiltInTable) {
    const temp_dir_t dir;
    dir.write(u8"vpnoids.cfg", "# more names\n1.2.643.3.131.1.1 = inn, taxpayerNumber\n2.5.4.3 = NAME\n");
    const json alone = json::parse(run_pkider({"map", "list", "--json", "--map", dir.utf8(u8"vpnoids.cfg")}).out);
    ASSERT_EQ(alone.size(), 2u);
    EXPECT_EQ(alone[0], json({{"oid", "1.2.643.3.131.1.1"},
                              {"short_name", "INN"},
                              {"long_name", "taxpayerNumber"},
                              {"contents", "2A850303810301"
                                           "01"},
                              {"source", dir.utf8(u8"vpnoids.cfg")},
                              {"line", 2},
                              {"shadowed", false}}));
    EXPECT_EQ(alone[1]["shadowed"], false);

    const json behind = json::parse(run_pkider({"map", "list", "--json", "--config-dir", dir.utf8(u8"")}).out);
    ASSERT_EQ(behind.size(), 25u);
    EXPECT_EQ(behind[24]["short_name"], "NAME");
    EXPECT_EQ(behind[24]["shadowed"], true);
    EXPECT_EQ(run_pkider({"map", "list", "--json", "--no-map"}).out, "[]\n");
}

TEST(MapFind, FindsByEveryKey) {
    const json found = json::parse(run_pkider({"map", "find", "--json", "cn", "2.5.4.3", "2.5.4.03", "550403"}).out);
    ASSERT_EQ(found.size(), 4u);
    const char* const keys[] = {"short name", "dotted text", "contents", "contents"};
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(found[i]["found"], true);
        EXPECT_EQ(found[i]["found_by"], keys[i]);
        EXPECT_EQ(found[i]["oid"], "2.5.4.3");
        EXPECT_EQ(found[i]["short_name"], "CN");
        EXPECT_EQ(found[i]["long_name"], "commonName");
        EXPECT_EQ(found[i]["contents"], "550403");
    }
    EXPECT_EQ(run_pkider({"map", "find", "2.5.4.8", "S"}).out, "2.5.4.8  ST  stateName\n2.5.4.8  S  stateName\n");
}

TEST(MapFind, AnswersNoWhenThereIsNone) {
    const run_result_t result = run_pkider({"map", "find", "nobody", "1.2.3", "CN"});
    EXPECT_EQ(result.exit_code, 1) << result;
    EXPECT_EQ(result.out, "2.5.4.3  CN  commonName\n");
    EXPECT_EQ(result.err, "pkider: nobody: no entry of the map\npkider: 1.2.3: no entry of the map\n");
    EXPECT_EQ(json::parse(run_pkider({"map", "find", "--json", "nobody"}).out),
              json::parse(R"([{"input": "nobody", "found": false}])"));
    EXPECT_EQ(run_pkider({"map", "find", "--no-map", "CN"}).exit_code, 1);
}

TEST(MapFind, ReadsLinesOfStandardInput) {
    const run_result_t result = run_pkider({"map", "find", "-", "E"}, {.input = "cn\nnobody\n550406\n"});
    EXPECT_EQ(result.exit_code, 1) << result;
    EXPECT_EQ(result.out, "2.5.4.3  CN  commonName\n2.5.4.6  C  countryName\n1.2.840.113549.1.9.1  E  emailAddress\n");
    EXPECT_EQ(result.err, "pkider: standard input:2: nobody: no entry of the map\n");
    EXPECT_EQ(json::parse(run_pkider({"map", "find", "--json", "-"}, {.input = "nobody\nCN\n"}).out).at(1)["oid"],
              "2.5.4.3");
}

struct check_row_t {
    const char* name;
    std::string text;
    int exit_code;
    const char* shown;
};

void PrintTo(const check_row_t& row, std::ostream* stream) {
    *stream << row.name;
}

class MapCheck : public testing::TestWithParam<check_row_t> {};

TEST_P(MapCheck, ExplainsEveryLine) {
    const run_result_t result = run_pkider({"map", "check"}, {.input = GetParam().text});
    EXPECT_EQ(result.exit_code, GetParam().exit_code);
    EXPECT_EQ(result.out, GetParam().shown);
    EXPECT_EQ(result.err, "");
}

const check_row_t lines_rows[] = {
    {"Empty", "", 0, "lines: 0, kept: 0, shadowed: 0, dropped: 0, no entry: 0\n"},
    {"Kept", "1.2.3 = A, a name\n", 0,
     "standard input:1: kept: 1.2.3 = A, a name\n"
     "lines: 1, kept: 1, shadowed: 0, dropped: 0, no entry: 0\n"},
    {"WithoutLineEnd", "1.2.3=", 0,
     "standard input:1: kept: 1.2.3=\n"
     "  without a short name it prints as '=value', which cannot be read\n"
     "lines: 1, kept: 1, shadowed: 0, dropped: 0, no entry: 0\n"},
    {"CommentsAndText", "# 1.2.3 = A\r\n\n; x = y\rsome words\n", 0,
     "standard input:1: no entry: # 1.2.3 = A\n"
     "standard input:2: no entry: \n"
     "standard input:3: no entry: ; x = y\n"
     "standard input:4: no entry: some words\n"
     "lines: 4, kept: 0, shadowed: 0, dropped: 0, no entry: 4\n"},
    {"EqualsOnTheNextLine", "1.2.3\n= B\n", 1,
     "standard input:1: no entry: 1.2.3\n"
     "standard input:2: dropped: = B\n"
     "  there is no OID before the '='\n"
     "lines: 2, kept: 0, shadowed: 0, dropped: 1, no entry: 1\n"},
    {"NoOid", "1 = A\n3.1 = B\n1.2.x = C\nname = D\n1..2 = E\n", 1,
     "standard input:1: dropped: 1 = A\n"
     "  a single arc is no OID\n"
     "standard input:2: dropped: 3.1 = B\n"
     "  the first arc is above 2\n"
     "standard input:3: dropped: 1.2.x = C\n"
     "  there is more than an OID before the '='\n"
     "standard input:4: dropped: name = D\n"
     "  there is no OID before the '='\n"
     "standard input:5: dropped: 1..2 = E\n"
     "  an arc is missing between two dots\n"
     "lines: 5, kept: 0, shadowed: 0, dropped: 5, no entry: 0\n"},
    {"ByteOrderMark",
     "\xEF\xBB\xBF"
     "1.2.3=A\n1.2.4=B\n",
     1,
     "standard input:1: dropped: \\EF\\BB\\BF1.2.3=A\n"
     "  a byte order mark (EF BB BF) is before it; save the file without one\n"
     "standard input:2: kept: 1.2.4=B\n"
     "lines: 2, kept: 1, shadowed: 0, dropped: 1, no entry: 0\n"},
    {"ByteOrderMarkBeforeAComment", "\xEF\xBB\xBF# names\n", 0,
     "standard input:1: no entry: \\EF\\BB\\BF# names\n"
     "  a byte order mark (EF BB BF); it would hide an entry on this line\n"
     "lines: 1, kept: 0, shadowed: 0, dropped: 0, no entry: 1\n"},
    {"OidOfTheBuiltInTable", "2.5.4.3 = NAME, myName\n", 1,
     "standard input:1: shadowed: 2.5.4.3 = NAME, myName\n"
     "  2.5.4.3 is printed as CN (built-in:1)\n"
     "  NAME is still read as 2.5.4.3\n"
     "lines: 1, kept: 0, shadowed: 1, dropped: 0, no entry: 0\n"},
    {"ShortNameOfTheBuiltInTable", "1.2.3 = cn, other\n", 1,
     "standard input:1: shadowed: 1.2.3 = cn, other\n"
     "  CN is read as 2.5.4.3 (built-in:1)\n"
     "  1.2.3 is still printed as CN, which reads back as another OID\n"
     "lines: 1, kept: 0, shadowed: 1, dropped: 0, no entry: 0\n"},
    {"Repeated", "1.2.3 = A\n1.2.3 = A\n", 1,
     "standard input:1: kept: 1.2.3 = A\n"
     "standard input:2: shadowed: 1.2.3 = A\n"
     "  1.2.3 is printed as A (standard input:1)\n"
     "  A is read as 1.2.3 (standard input:1)\n"
     "  nothing reaches it\n"
     "lines: 2, kept: 1, shadowed: 1, dropped: 0, no entry: 0\n"},
    {"SameOidWrittenOtherwise", "2.5.4.03 = CN\n", 1,
     "standard input:1: shadowed: 2.5.4.03 = CN\n"
     "  2.5.4.03 is printed as CN (built-in:1)\n"
     "  CN is read as 2.5.4.3 (built-in:1)\n"
     "  the text 2.5.4.03 still finds it\n"
     "lines: 1, kept: 0, shadowed: 1, dropped: 0, no entry: 0\n"},
    {"WordsBehindTheShortName", "1.2.3 = A b\n", 0,
     "standard input:1: kept: 1.2.3 = A b\n"
     "  'b' is ignored: a long name follows a ','\n"
     "lines: 1, kept: 1, shadowed: 0, dropped: 0, no entry: 0\n"},
    {"BlanksBehindTheLongName", "1.2.3 = A, b \n", 0,
     "standard input:1: kept: 1.2.3 = A, b \n"
     "  the blanks at its end belong to the long name\n"
     "lines: 1, kept: 1, shadowed: 0, dropped: 0, no entry: 0\n"},
    {"InexactOid", "2.999 = A\n", 0,
     "standard input:1: kept: 2.999 = A\n"
     "  the OID is not exact: its bytes are printed as 26.39\n"
     "lines: 1, kept: 1, shadowed: 0, dropped: 0, no entry: 0\n"},
};
INSTANTIATE_TEST_SUITE_P(Lines, MapCheck, testing::ValuesIn(lines_rows), row_name);

TEST(MapCheck, AloneLeavesTheBuiltInTableOut) {
    const run_result_t result = run_pkider({"map", "check", "--alone"}, {.input = "2.5.4.3 = NAME\n1.2.3 = CN\n"});
    EXPECT_EQ(result.exit_code, 0) << result;
    EXPECT_THAT(result.out, HasSubstr("lines: 2, kept: 2, shadowed: 0"));
}

TEST(MapCheck, PrintsJson) {
    const run_result_t result = run_pkider({"map", "check", "--json"}, {.input = "2.5.4.3 = n\xFF, long\n3.1=x\n\n"});
    EXPECT_EQ(result.exit_code, 1) << result;
    const json lines = json::parse(result.out);
    EXPECT_EQ(lines.at(0),
              json({{"file", "standard input"},
                    {"line", 1},
                    {"text", "2.5.4.3 = n\\FF, long"},
                    {"state", "shadowed"},
                    {"oid", "2.5.4.3"},
                    {"short_name", "N\\FF"},
                    {"long_name", "long"},
                    {"contents", "550403"},
                    {"notes", {"2.5.4.3 is printed as CN (built-in:1)", "N\\FF is still read as 2.5.4.3"}}}));
    EXPECT_EQ(lines.at(1)["state"], "dropped");
    EXPECT_EQ(lines.at(1)["notes"], json::array({"the first arc is above 2"}));
    EXPECT_EQ(lines.at(2)["state"], "no entry");
    EXPECT_EQ(lines.at(2)["notes"], json::array());
}

TEST(MapCheck, WorksOnTheOtherFiles) {
    const temp_dir_t dir;
    dir.write(u8"names", "1.2.3 = A\n");
    const run_result_t result = run_pkider({"map", "check", "/no/file", dir.utf8(u8"names")});
    EXPECT_EQ(result.exit_code, 74) << result;
    EXPECT_THAT(result.out, HasSubstr(":1: kept: 1.2.3 = A\n"));
}

const OIDdescr_t* find_by_contents(oid_map_handle_t map, const std::string& contents) {
    return oid_map_find_asn(map, reinterpret_cast<const uint8_t*>(contents.data()), contents.size());
}

bool is_entry_of(const OIDdescr_t* found, const tool::map_line_t& line) {
    return found != nullptr && std::string_view(found->str, found->str_len) == line.oid &&
           std::string_view(found->sn, found->sn_len) == line.short_name &&
           std::string_view(found->ln, found->ln_len) == line.long_name;
}

// What is said of the lines is what the library does with them, for texts that are put together at random.
TEST(MapReach, AgreesWithTheLibrary) {
    constexpr const char* pieces[] = {"1.2.3", "2.5.4.3", "2.5.4.03", "3.1", "1", ".",  " ",  "\t", "=",    " = ",
                                      "CN",    "cn",      "A",        ",",   "#", "\n", "\r", "\n", "\r\n", "name"};
    std::mt19937 random(20);
    std::uniform_int_distribution<std::size_t> pick(0, std::size(pieces) - 1);
    std::size_t num_entries = 0;
    for (int round = 0; round < 10000; ++round) {
        std::string text;
        for (int i = 0; i < 60; ++i) text += pieces[pick(random)];
        const std::vector<tool::map_line_t> lines = tool::read_map_lines("text", text);
        tool::map_reach_t reach;
        reach.add(lines);
        const oid_map_handle_t map = oid_map_parse(text.data(), text.size());
        for (const tool::map_line_t& line : lines) {
            if (line.kind != tool::map_line_kind_t::entry) continue;
            ++num_entries;
            EXPECT_TRUE(is_entry_of(find_by_contents(map, line.contents), reach.owner_of_oid(line)));
            EXPECT_TRUE(
                is_entry_of(oid_map_find_str(map, line.oid.data(), line.oid.size()), reach.owner_of_dotted(line)));
            EXPECT_TRUE(is_entry_of(oid_map_find_sn(map, line.short_name.data(), line.short_name.size()),
                                    reach.owner_of_short_name(line)));
        }
        for (const char* probe : {"CN", "A", "", "NAME", "CNA"}) {
            const OIDdescr_t* const found = oid_map_find_sn(map, probe, std::string_view(probe).size());
            const bool listed = std::ranges::any_of(lines, [&](const tool::map_line_t& line) {
                return line.kind == tool::map_line_kind_t::entry && line.short_name == probe;
            });
            EXPECT_EQ(found != nullptr, listed) << probe;
        }
        oid_map_release(map);
    }
    EXPECT_GT(num_entries, 1000u);
}

} // namespace
} // namespace pkider_test
