// The manners of the program: what holds for every command.
#include "tests/tools/program.h"

#include "tests/support/temp_dir.h"

#include <nlohmann/json.hpp>

#include <filesystem>
#include <regex>
#include <sstream>

namespace pkider_test {
namespace {

using nlohmann::json;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

// CN=abc
constexpr const char* name_in_hex = "300E310C300A06035504031303616263";

TEST(Program, TellsItsVersion) {
    const run_result_t result = run_pkider({"--version"});
    EXPECT_EQ(result.exit_code, 0) << result;
    EXPECT_THAT(result.out, testing::MatchesRegex("pkider [0-9]+\\.[0-9]+\\.[0-9]+\n"));
    EXPECT_EQ(result.err, "");
}

TEST(Program, HelpNamesCommandsAndExitCodes) {
    const run_result_t result = run_pkider({"--help"});
    EXPECT_EQ(result.exit_code, 0) << result;
    EXPECT_THAT(result.out, HasSubstr("Exit codes: 0 done, 1 the answer is no, 2 fault in the data"));
    EXPECT_EQ(result.err, "");
}

struct command_row_t {
    const char* name;
    std::vector<std::string> command;
};

void PrintTo(const command_row_t& row, std::ostream* stream) {
    *stream << row.name;
}

class ProgramHelp : public testing::TestWithParam<command_row_t> {};

TEST_P(ProgramHelp, HasExamples) {
    std::vector<std::string> arguments = GetParam().command;
    std::string example = "  pkider";
    for (const std::string& word : arguments) example += " " + word;
    arguments.push_back("--help");
    const run_result_t result = run_pkider(arguments);
    EXPECT_EQ(result.exit_code, 0) << result;
    EXPECT_THAT(result.out, HasSubstr("Examples:\n"));
    EXPECT_THAT(result.out, HasSubstr(example));
}

const std::vector<command_row_t> commands = {{"What", {"what"}},
                                             {"Cert", {"cert"}},
                                             {"Dn", {"dn"}},
                                             {"DnEncode", {"dn", "encode"}},
                                             {"DnDecode", {"dn", "decode"}},
                                             {"DnNormalize", {"dn", "normalize"}},
                                             {"DnReverse", {"dn", "reverse"}},
                                             {"DnGet", {"dn", "get"}},
                                             {"DnHas", {"dn", "has"}},
                                             {"DnOrder", {"dn", "order"}},
                                             {"Oid", {"oid"}},
                                             {"Map", {"map"}},
                                             {"MapList", {"map", "list"}},
                                             {"MapFind", {"map", "find"}},
                                             {"MapCheck", {"map", "check"}},
                                             {"Der", {"der"}},
                                             {"Alg", {"alg"}},
                                             {"Key", {"key"}},
                                             {"KeyShow", {"key", "show"}},
                                             {"KeyWrap", {"key", "wrap"}},
                                             {"KeyEncrypt", {"key", "encrypt"}},
                                             {"KeyDecrypt", {"key", "decrypt"}},
                                             {"P12", {"p12"}},
                                             {"P12List", {"p12", "list"}},
                                             {"P12Verify", {"p12", "verify"}},
                                             {"P12Extract", {"p12", "extract"}},
                                             {"P12Create", {"p12", "create"}},
                                             {"Digestinfo", {"digestinfo"}},
                                             {"DigestinfoWrap", {"digestinfo", "wrap"}},
                                             {"DigestinfoRead", {"digestinfo", "read"}},
                                             {"Sig", {"sig"}},
                                             {"SigDsa", {"sig", "dsa"}},
                                             {"SigIke", {"sig", "ike"}}};

INSTANTIATE_TEST_SUITE_P(Commands, ProgramHelp, testing::ValuesIn(commands), row_name);

// The lines of a help below a heading, up to a blank one.
std::vector<std::string> help_lines(std::vector<std::string> command, const std::string& heading) {
    command.push_back("--help");
    std::istringstream help(run_pkider(command).out);
    std::vector<std::string> lines;
    std::string line;
    while (std::getline(help, line) && line != heading) {
    }
    while (std::getline(help, line) && !line.empty()) lines.push_back(line);
    return lines;
}

TEST(Program, HelpNamesNoCommandThatIsNotTested) {
    std::vector<std::vector<std::string>> groups{{}};
    std::size_t num_named = 0;
    for (const command_row_t& row : commands) groups.push_back(row.command);
    for (const std::vector<std::string>& group : groups) {
        for (const std::string& line : help_lines(group, "Subcommands:")) {
            if (line.find_first_not_of(' ') == 2) ++num_named; // others go on with a description
        }
    }
    EXPECT_EQ(num_named, commands.size());
}

TEST(Program, ExamplesThatNeedNoFileRun) {
    const std::string folder = std::filesystem::path(PKIDER_PROGRAM).parent_path();
    const run_options_t options{.environment = {{"PATH", folder + ":/usr/bin:/bin"}}};
    const std::regex needs_file("<|/etc|\\.(der|pem|p12|txt|cfg|bin)\\b");
    int num_run = 0;
    for (const command_row_t& row : commands) {
        for (const std::string& line : help_lines(row.command, "Examples:")) {
            if (std::regex_search(line, needs_file)) continue;
            const run_result_t result = run_program({"/bin/sh", "-c", line}, options);
            EXPECT_EQ(result.exit_code, 0) << line << result;
            EXPECT_EQ(result.err, "") << line;
            ++num_run;
        }
    }
    EXPECT_GE(num_run, 20);
}

class ProgramUsage : public testing::TestWithParam<command_row_t> {};

TEST_P(ProgramUsage, IsRefused) {
    const run_result_t result = run_pkider(GetParam().command);
    EXPECT_EQ(result.exit_code, 64) << result;
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, StartsWith("pkider: "));
    EXPECT_THAT(result.err, EndsWith("\nRun with --help for more information.\n"));
}

const command_row_t command_lines_rows[] = {
    {"NoCommand", {}},
    {"UnknownCommand", {"frob"}},
    {"NoSubcommand", {"dn"}},
    {"UnknownSubcommand", {"dn", "frob"}},
    {"UnknownOption", {"dn", "encode", "--frob", "CN=a"}},
    {"UnknownInputForm", {"dn", "decode", "--in", "xml"}},
    {"TwoOutputForms", {"dn", "encode", "--hex", "--json", "CN=a"}},
    {"TwoMaps", {"dn", "encode", "--no-map", "--config-dir", "/", "CN=a"}},
    {"EmptyMap", {"dn", "encode", "--map", "", "CN=a"}},
    {"EmptyConfigurationFolder", {"dn", "encode", "--config-dir", "", "CN=a"}},
    {"EmptyPasswordFile", {"p12", "verify", "--password-file", "", "a"}},
    {"EmptyOutputFile", {"p12", "extract", "-o", "", "a"}},
    {"EmptyAlgorithm", {"sig", "ike", "--make", ""}},
    {"NoOid", {"oid"}},
    {"NoAttributeType", {"dn", "get"}},
};
INSTANTIATE_TEST_SUITE_P(CommandLines, ProgramUsage, testing::ValuesIn(command_lines_rows), row_name);

TEST(Program, TakesAnArgumentInBracketsAsItIs) {
    const temp_dir_t dir;
    dir.write(u8"[a,b]", name_in_hex);
    dir.write(u8"[m]", "2.5.4.3 = NAME\n");
    const run_options_t options{.directory = dir.path().string()};
    EXPECT_EQ(run_pkider({"dn", "decode", "[a,b]"}, options).out, "CN=abc\n");
    EXPECT_EQ(run_pkider({"dn", "decode", "--map", "[m]", "[a,b]"}, options).out, "NAME=abc\n");
    EXPECT_EQ(run_pkider({"dn", "decode", "--map=[m]", "[a,b]"}, options).out, "NAME=abc\n");
    EXPECT_EQ(run_pkider({"dn", "get", "[T]", "[T]=[1]", "[T]=]"}).out, "[1]\n]\n");
    EXPECT_EQ(run_pkider({"dn", "reverse", "[A=1,B=2]"}).out, "B=2],[A=1\n");
    EXPECT_EQ(run_pkider({"oid", "[]"}).err, "pkider: []: neither dotted text nor a known short name nor hex digits\n");
}

TEST(Program, NamesAnArgumentInBracketsAsItIs) {
    const std::string more = "\nRun with --help for more information.\n";
    EXPECT_EQ(run_pkider({"map", "list", "[x]"}).err, "pkider: The following argument was not expected: [x]" + more);
    EXPECT_EQ(run_pkider({"key", "encrypt", "a", "[b", "[c]"}).err,
              "pkider: The following arguments were not expected: [c] [b" + more);
    EXPECT_EQ(run_pkider({"dn", "decode", "--in", "[x]"}).err, "pkider: --in: [x] not in {base64,der,hex,pem}" + more);
}

TEST(Program, NamesACountBelowZero) {
    EXPECT_EQ(run_pkider({"der", "--max", "-1"}).err,
              "pkider: --max: -1 is below 0\nRun with --help for more information.\n");
    EXPECT_EQ(run_pkider({"der", "--max", "x"}).err,
              "pkider: Could not convert: --max = x\nRun with --help for more information.\n");
}

TEST(Program, NamesAMissingFileInOneLine) {
    for (const char* command : {"cert", "dn"}) {
        std::vector<std::string> arguments{command, "/no/such/file"};
        if (std::string(command) == "dn") arguments.insert(arguments.begin() + 1, "decode");
        const run_result_t result = run_pkider(arguments);
        EXPECT_EQ(result.exit_code, 74) << result;
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err, "pkider: /no/such/file: No such file or directory\n");
    }
}

TEST(Program, NamesADirectoryThatIsNoFile) {
    const run_result_t result = run_pkider({"cert", "/"});
    EXPECT_EQ(result.exit_code, 74) << result;
    EXPECT_EQ(result.err, "pkider: /: Is a directory\n");
}

TEST(Program, NamesAMissingMap) {
    for (const char* command : {"encode", "decode", "normalize"}) {
        const run_result_t result = run_pkider({"dn", command, "--map", "/no/map", name_in_hex});
        EXPECT_EQ(result.exit_code, 74) << result;
        EXPECT_EQ(result.err, "pkider: /no/map: No such file or directory\n");
    }
}

TEST(Program, NamesAMissingConfigurationFile) {
    const run_result_t result = run_pkider({"oid", "--config-dir", "/no/dir", "CN"});
    EXPECT_EQ(result.exit_code, 74) << result;
    EXPECT_EQ(result.err, "pkider: /no/dir/vpnoids.cfg: No such file or directory\n");
}

TEST(Program, TakesNamesOfTheConfigurationFile) {
    const temp_dir_t dir;
    dir.write(u8"vpnoids.cfg", "1.2.643.3.131.1.1 = INN, taxpayerNumber\n");
    for (const std::string& path : {dir.utf8(u8""), dir.path().string()}) { // with a separator at the end and without
        const run_result_t result = run_pkider({"dn", "normalize", "--config-dir", path, "1.2.643.3.131.1.1=7,cn=a"});
        EXPECT_EQ(result.exit_code, 0) << result;
        EXPECT_EQ(result.out, "INN=7,CN=a\n");
    }
}

TEST(Program, TakesTheNamesOfAMapAlone) {
    const temp_dir_t dir;
    dir.write(u8"names", "2.5.4.3 = NAME\n");
    const std::string map = dir.utf8(u8"names");
    EXPECT_EQ(run_pkider({"dn", "decode", "--map", map, name_in_hex}).out, "NAME=abc\n");
    EXPECT_EQ(run_pkider({"dn", "encode", "--map", map, "NAME=abc"}).out, std::string(name_in_hex) + "\n");
    EXPECT_EQ(run_pkider({"dn", "encode", "--map", map, "CN=abc"}).exit_code, 2);
}

TEST(Program, TakesNoNamesWithoutAMap) {
    EXPECT_EQ(run_pkider({"dn", "decode", "--no-map", name_in_hex}).out, "2.5.4.3=abc\n");
    EXPECT_EQ(run_pkider({"dn", "encode", "--no-map", "CN=abc"}).exit_code, 2);
}

TEST(Program, WorksOnTheOtherFilesAndTellsTheWorst) {
    const temp_dir_t dir;
    dir.write(u8"good", name_in_hex);
    dir.write(u8"bad", "0500");
    const std::string good = dir.utf8(u8"good");
    const std::string bad = dir.utf8(u8"bad");

    const run_result_t faulty = run_pkider({"dn", "decode", bad, good});
    EXPECT_EQ(faulty.exit_code, 2) << faulty;
    EXPECT_EQ(faulty.out, "CN=abc\n");
    EXPECT_EQ(faulty.err, "pkider: " + bad + ": offset 0: expected a Name (a SEQUENCE), found 05 00 [code 11]\n");

    const run_result_t missing = run_pkider({"dn", "decode", bad, "/no/such/file", good});
    EXPECT_EQ(missing.exit_code, 74) << missing;
    EXPECT_EQ(missing.out, "CN=abc\n");
}

TEST(Program, ReadsStandardInput) {
    EXPECT_EQ(run_pkider({"dn", "decode", "-"}, {.input = name_in_hex}).out, "CN=abc\n");
    EXPECT_EQ(run_pkider({"dn", "decode"}, {.input = name_in_hex}).out, "CN=abc\n");
    EXPECT_EQ(run_pkider({"dn", "normalize", "-"}, {.input = "cn=abc\n"}).out, "CN=abc\n");
    EXPECT_EQ(run_pkider({"dn", "normalize"}, {.input = "cn=abc"}).out, "CN=abc\n");
    EXPECT_EQ(run_pkider({"map", "check", "-"}, {.input = "1.2.3 = A\n"}).exit_code, 0);
}

TEST(Program, TellsThatStandardInputIsFaulty) {
    const run_result_t result = run_pkider({"dn", "decode"}, {.input = "0500"});
    EXPECT_EQ(result.exit_code, 2);
    EXPECT_THAT(result.err, StartsWith("pkider: standard input: offset 0: "));
}

TEST(Program, TellsThatStandardOutputIsFull) {
    const run_result_t result = run_pkider({"dn", "normalize", "CN=a"}, {.output_file = "/dev/full"});
    EXPECT_EQ(result.exit_code, 74) << result;
    EXPECT_EQ(result.err, "pkider: standard output: No space left on device\n");
    for (const char* const flag : {"--help", "--version"}) {
        EXPECT_EQ(run_pkider({flag}, {.output_file = "/dev/full"}).exit_code, 74) << flag;
    }
}

// CN= with an escape sequence, a C1 control, a mark that turns the direction, a NUL and a byte that is no UTF-8.
constexpr const char* hostile_name = "3020311E301C06035504030C15"
                                     "1B5B33316D"
                                     "61"
                                     "C29B"
                                     "62"
                                     "E280AE"
                                     "63"
                                     "00"
                                     "64"
                                     "FF"
                                     "65"
                                     "EFBBBF"
                                     "66";

TEST(Program, WritesNoControlCharacterOfAName) {
    const run_result_t result = run_pkider({"dn", "decode", hostile_name});
    EXPECT_EQ(result.exit_code, 0) << result;
    EXPECT_EQ(result.out, "CN=\\1B[31ma\\C2\\9Bb\\E2\\80\\AEc\\00d\\FFe\\EF\\BB\\BFf\n");
}

TEST(Program, PrintedNamesWithControlCharactersEncodeToTheSameBytes) {
    const std::string printed = run_pkider({"dn", "decode", hostile_name}).out;
    EXPECT_EQ(run_pkider({"dn", "encode"}, {.input = printed}).out, std::string(hostile_name) + "\n");
}

// U+034F, U+3164 and U+E0001, which no font draws: the name would look like CN=ab.
TEST(Program, ShowsCharactersWithoutAPicture) {
    const std::string name = run_pkider({"dn", "encode", "CN=a\u034F\u3164\U000E0001b"}).out;
    const run_result_t result = run_pkider({"dn", "decode", "-"}, {.input = name});
    EXPECT_EQ(result.out, "CN=a\\CD\\8F\\E3\\85\\A4\\F3\\A0\\80\\81b\n");
    EXPECT_EQ(run_pkider({"dn", "encode"}, {.input = result.out}).out, name);
}

TEST(Program, TellsABackslashFromAnEscape) {
    EXPECT_EQ(run_pkider({"der"}, {.input = "0C035C3142"}).out, "   0  2+3     UTF8String \"\\5C1B\"\n");
    EXPECT_EQ(run_pkider({"what", "/nonexistent/\\1B"}).err,
              "pkider: /nonexistent/\\5C1B: No such file or directory\n");
    EXPECT_EQ(run_pkider({"what", "/nonexistent/a\\b.pem"}).err,
              "pkider: /nonexistent/a\\b.pem: No such file or directory\n");
}

TEST(Program, LeavesTheEscapesOfANameAlone) {
    const std::string hex = "3010310E300C06035504030C05612C5C3142"; // UTF8String a,\1B
    EXPECT_EQ(run_pkider({"dn", "decode", hex}).out, "CN=a\\,\\\\1B\n");
    EXPECT_THAT(run_pkider({"what"}, {.input = hex}).out, HasSubstr("  name         CN=a\\,\\\\1B\n"));
    EXPECT_EQ(run_pkider({"dn", "normalize", "CN=a\\,\\\\1B"}).out, "CN=a\\,\\\\1B\n");
    EXPECT_EQ(run_pkider({"dn", "get", "CN", "CN=a\\,b"}).out, "a\\,b\n");
}

TEST(Program, JsonIsAsciiForAnyBytes) {
    const run_result_t result = run_pkider({"dn", "decode", "--json", hostile_name});
    EXPECT_EQ(result.exit_code, 0) << result;
    for (const char c : result.out) EXPECT_TRUE((c >= 0x20 && c < 0x7F) || c == '\n') << static_cast<int>(c);
    const json answer = json::parse(result.out).at(0);
    EXPECT_EQ(answer["name"], std::string("CN=\x1B[31ma\xC2\x9B"
                                          "b\xE2\x80\xAE"
                                          "c\0d\\FFe\xEF\xBB\xBF"
                                          "f",
                                          26));
    EXPECT_EQ(answer["der"], hostile_name);
}

struct input_row_t {
    const char* name;
    std::vector<std::string> command;
    const char* input;
};

void PrintTo(const input_row_t& row, std::ostream* stream) {
    *stream << row.name;
}

class ProgramHostileMap : public testing::TestWithParam<input_row_t> {};

// A short name of a map may hold any byte: here an escape sequence and a byte that is no UTF-8.
TEST_P(ProgramHostileMap, IsPrintedSafelyAndIsJson) {
    const temp_dir_t dir;
    dir.write(u8"map", "1.2.643.100.7 = \x1B[31M\xFF\n");
    std::vector<std::string> arguments = GetParam().command;
    arguments.insert(arguments.end(), {"--map", dir.utf8(u8"map")});
    const run_result_t text = run_pkider(arguments, {.input = GetParam().input});
    EXPECT_THAT(text.out, HasSubstr("\\1B[31M\\FF")) << text;
    EXPECT_THAT(text.out, Not(HasSubstr("\x1B")));

    arguments.push_back("--json");
    const run_result_t json_result = run_pkider(arguments, {.input = GetParam().input});
    EXPECT_EQ(json_result.exit_code, text.exit_code) << json_result;
    ASSERT_TRUE(json::accept(json_result.out)) << json_result;
    EXPECT_THAT(json_result.out, HasSubstr("\\u001b[31M\\\\FF"));
}

const input_row_t commands_rows[] = {
    {"Der", {"der"}, "0605 2A85036407"},
    {"What", {"what"}, "3007 0605 2A85036407"},
    {"KeyShow", {"key", "show"}, "300D 3007 0605 2A85036407 0302 0001"},
    {"SigIke", {"sig", "ike"}, "3007 0605 2A85036407"},
    {"SigIkeWithParameters", {"sig", "ike"}, "3018 0609 2A864886F70D01010A 300B A009 3007 0605 2A85036407"},
    {"Oid", {"oid", "--in", "hex", "-"}, "2A85036407"},
    {"MapFind", {"map", "find", "-"}, "1.2.643.100.7"},
    {"MapList", {"map", "list"}, ""},
    {"DnDecode", {"dn", "decode"}, "300E 310C 300A 0605 2A85036407 0C01 61"},
};
INSTANTIATE_TEST_SUITE_P(Commands, ProgramHostileMap, testing::ValuesIn(commands_rows), row_name);

TEST(Program, WritesNoControlCharacterOfAnArgument) {
    const run_result_t file = run_pkider({"cert", "no\x1B[31mfile"});
    EXPECT_EQ(file.err, "pkider: no\\1B[31mfile: No such file or directory\n");
    const run_result_t usage = run_pkider({"dn", "encode", "--\x1B[31m"});
    EXPECT_THAT(usage.err, Not(HasSubstr("\x1B")));
    const run_result_t line = run_pkider({"dn", "get", "CN", "CN=\x1B[31mred"});
    EXPECT_EQ(line.out, "\\1B[31mred\n");
}

const run_options_t on_xterm{.environment = {{"TERM", "xterm"}}};

TEST(Program, UsesColourOnlyOnATerminal) {
    const std::string red = "\x1B[1;31mpkider:\x1B[0m ";
    EXPECT_THAT(run_pkider_on_terminal({"oid", "3.1"}, on_xterm).out, StartsWith(red));
    EXPECT_THAT(run_pkider({"oid", "3.1"}, on_xterm).err, StartsWith("pkider: "));
}

TEST(Program, HonoursNoColor) {
    const auto run = [](std::vector<std::pair<std::string, std::string>> environment) {
        return run_pkider_on_terminal({"oid", "3.1"}, {.environment = std::move(environment)}).out;
    };
    EXPECT_THAT(run({{"TERM", "xterm"}, {"NO_COLOR", "1"}}), StartsWith("pkider: "));
    EXPECT_THAT(run({{"TERM", "xterm"}, {"NO_COLOR", ""}}), StartsWith("\x1B[")); // empty is not set
    EXPECT_THAT(run({{"TERM", "dumb"}}), StartsWith("pkider: "));
    EXPECT_THAT(run({}), StartsWith("pkider: "));
}

TEST(Program, ShowsResultsBeforeALaterFaultOnOneTerminal) {
    const run_result_t result = run_pkider_on_terminal({"dn", "normalize", "CN=a", "FOO=b"});
    EXPECT_EQ(result.exit_code, 2);
    EXPECT_THAT(result.out, StartsWith("CN=a\r\npkider: argument:2:1: "));
}

TEST(Program, WritesNoDerToATerminal) {
    const run_result_t result = run_pkider_on_terminal({"dn", "encode", "--der", "CN=abc"});
    EXPECT_EQ(result.exit_code, 64) << result;
    EXPECT_THAT(result.out, HasSubstr("DER is not written to a terminal"));
    EXPECT_EQ(run_pkider({"dn", "encode", "--der", "CN=abc"}).out.substr(0, 2), "0\x0E");
}

} // namespace
} // namespace pkider_test
