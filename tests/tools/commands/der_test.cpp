#include "tests/tools/program.h"

#include "tests/support/hex.h"
#include "tests/support/temp_dir.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace pkider_test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

run_result_t der(const bytes_t& bytes, std::vector<std::string> options = {}) {
    options.insert(options.begin(), "der");
    return run_pkider(options, {.input = bytes.str()});
}

TEST(DerCommand, ShowsATree) {
    const run_result_t result = der("30 08 06 03 55 04 03 13 01 61"_hex);
    EXPECT_EQ(result.exit_code, 0) << result;
    EXPECT_EQ(result.out, "   0  2+8     SEQUENCE\n"
                          "   2  2+3       OBJECT IDENTIFIER CN (2.5.4.3)\n"
                          "   7  2+1       PrintableString \"a\"\n");
    EXPECT_EQ(result.err, "");
}

TEST(DerCommand, ShowsWhatStoodBeforeAFault) {
    const run_result_t result = der("30 08 02 01 05 04 09 41 42 43"_hex);
    EXPECT_EQ(result.exit_code, 2) << result;
    EXPECT_EQ(result.out, "   0  2+8     SEQUENCE\n"
                          "   2  2+1       INTEGER 5\n"
                          "   5          FAULT: an element of 11 bytes where 5 are left in the SEQUENCE at offset 0\n"
                          "                04 09 41 42 43                                    |..ABC|\n");
    EXPECT_EQ(result.err, "pkider: standard input: offset 5: expected an element, found an element of 11 bytes where 5 "
                          "are left in the SEQUENCE at offset 0\n");
}

TEST(DerCommand, TellsTheFaultInJson) {
    const run_result_t result = der("05 00 30"_hex, {"--json"});
    EXPECT_EQ(result.exit_code, 2) << result;
    EXPECT_THAT(result.out, StartsWith(R"([
{"file":"standard input","offset":0,"depth":0,"header_length":2,"content_length":0,)"));
    EXPECT_THAT(
        result.out,
        HasSubstr(R"({"file":"standard input","fault":{"offset":2,"expected":"an element","found":"no length octet")"));
}

TEST(DerCommand, OpensStringsWhenAsked) {
    const bytes_t bytes = "04 03 02 01 05"_hex;
    EXPECT_EQ(der(bytes).out, "   0  2+3     OCTET STRING 02 01 05  |...|\n");
    EXPECT_EQ(der(bytes, {"--open"}).out, "   0  2+3     OCTET STRING, holds DER\n"
                                          "   2  2+1       INTEGER 5\n");
}

/// SEQUENCEs of definite length, one in the other, until the outermost has `size` bytes or a few more.
std::string nested_sequences(std::size_t size) {
    std::vector<std::string> headers; // the innermost first
    for (std::size_t len = 0; len < size; len += headers.back().size()) {
        std::string octets;
        for (std::size_t rest = len; rest != 0; rest >>= 8) octets.insert(octets.begin(), static_cast<char>(rest));
        if (len < 0x80) {
            octets = std::string(1, static_cast<char>(len));
        } else {
            octets.insert(octets.begin(), static_cast<char>(0x80 | octets.size()));
        }
        headers.push_back("0" + octets); // 0x30
    }
    std::string der;
    for (auto header = headers.rbegin(); header != headers.rend(); ++header) der += *header;
    return der;
}

TEST(DerCommand, GivesADepthBeyondTheBlanksAsANumber) {
    const run_result_t result = run_pkider({"der", "--max-depth", "66"}, {.input = nested_sequences(132)});
    EXPECT_EQ(result.exit_code, 0) << result;
    const std::string blanks(2 * 63, ' ');
    EXPECT_THAT(result.out, EndsWith(" 128  2+4     " + blanks +
                                     "SEQUENCE\n"
                                     " 130  2+2     depth 64: SEQUENCE\n"
                                     " 132  2+0     depth 65: SEQUENCE\n"));
}

TEST(DerCommand, PrintsOutputInProportionToDeepNesting) {
    const std::string der = nested_sequences(1'000'000);
    const run_result_t result = run_pkider({"der", "--max-depth", "4294967295"}, {.input = der});
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_EQ(std::ranges::count(result.out, '\n'), 203'320);
    EXPECT_LT(result.out.size(), 12 * der.size());
}

TEST(DerCommand, SaysThatItStoppedAtTheDepthLimit) {
    const run_result_t result = der("30 04 30 02 05 00"_hex, {"--max-depth", "2"});
    EXPECT_EQ(result.exit_code, 0) << result;
    EXPECT_EQ(result.out, "   0  2+4     SEQUENCE\n"
                          "   2  2+2       SEQUENCE ... below the depth limit, not shown\n");
    EXPECT_THAT(der("30 04 30 02 05 00"_hex, {"--max-depth", "2", "--json"}).out, HasSubstr(R"("too_deep":true)"));
    EXPECT_EQ(der("05 00"_hex, {"--max-depth", "0"}).exit_code, 64);
}

TEST(DerCommand, ShowsAsManyElementsAsAsked) {
    const bytes_t bytes = "30 06 05 00 05 00 05 00"_hex;
    EXPECT_EQ(der(bytes, {"--max", "2"}).out, "   0  2+6     SEQUENCE\n"
                                              "   2  2+0       NULL\n"
                                              "... stopped after 2 elements\n");
    EXPECT_EQ(der(bytes, {"--max", "1"}).out, "   0  2+6     SEQUENCE\n"
                                              "... stopped after 1 element\n");
    EXPECT_THAT(der(bytes, {"--max", "4"}).out, testing::Not(HasSubstr("stopped"))) << "there are no more";
    EXPECT_THAT(der(bytes, {"--max", "2", "--json"}).out, HasSubstr(R"({"file":"standard input","stopped_after":2})"));
    EXPECT_EQ(der(bytes, {"--offset", "4", "--max", "1"}).out, "   4  2+0     NULL\n"
                                                               "... stopped after 1 element\n");
}

TEST(DerCommand, RefusesNegativeCounts) {
    for (const char* const option : {"--offset", "--max", "--bytes", "--max-depth"}) {
        EXPECT_EQ(der("05 00"_hex, {option, "-1"}).exit_code, 64) << option;
    }
}

TEST(DerCommand, ShowsAsManyBytesAsAsked) {
    const bytes_t bytes = "04 04 41 42 43 44"_hex;
    EXPECT_EQ(der(bytes, {"--bytes", "1"}).out, "   0  2+4     OCTET STRING 41  |A| ... 3 more bytes\n");
    EXPECT_EQ(der(bytes, {"--bytes", "1", "--all-bytes"}).out, "   0  2+4     OCTET STRING 41 42 43 44  |ABCD|\n");
}

TEST(DerCommand, ReadsEveryFormAndNamesThePemBlocks) {
    EXPECT_EQ(run_pkider({"der"}, {.input = "0500"}).out, "   0  2+0     NULL\n");
    EXPECT_EQ(run_pkider({"der"}, {.input = "BQA=\n"}).out, "   0  2+0     NULL\n");
    const std::string pem =
        "-----BEGIN ONE-----\nBQA=\n-----END ONE-----\n-----BEGIN TWO-----\nBQA=\n-----END TWO-----\n";
    EXPECT_EQ(run_pkider({"der"}, {.input = pem}).out, "# standard input:1 ONE\n"
                                                       "   0  2+0     NULL\n"
                                                       "# standard input:4 TWO\n"
                                                       "   0  2+0     NULL\n");
}

TEST(DerCommand, RefusesWhatIsNotThere) {
    EXPECT_EQ(der({}).exit_code, 2);
    const run_result_t offset = der("05 00"_hex, {"--offset", "3"});
    EXPECT_EQ(offset.exit_code, 2);
    EXPECT_THAT(offset.err, HasSubstr("offset 3: expected an element, found the end of the data at offset 2"));
    const run_result_t missing = run_pkider({"der", "/nonexistent/file"});
    EXPECT_EQ(missing.exit_code, 74);
    EXPECT_EQ(missing.err, "pkider: /nonexistent/file: No such file or directory\n");
    const run_result_t text = run_pkider({"der"}, {.input = "hello, world"});
    EXPECT_EQ(text.exit_code, 2);
    EXPECT_EQ(text.err, "pkider: standard input: not PEM, DER, hex or base64\n");
}

TEST(DerCommand, GoesOnWithTheNextFile) {
    const temp_dir_t dir;
    dir.write(u8"bad", "\x05");
    dir.write(u8"good", std::string("\x05\x00", 2));
    const run_result_t result = run_pkider({"der", dir.utf8(u8"bad"), "/nonexistent/file", dir.utf8(u8"good")});
    EXPECT_EQ(result.exit_code, 74) << result;
    EXPECT_THAT(result.out, HasSubstr("   0  2+0     NULL\n"));
}

TEST(DerCommand, CostsOnlyWhatIsShown) {
    // A sparse file of four gigabytes less a little: reading it whole would take memory and minutes.
    const temp_dir_t dir;
    constexpr std::uint32_t contents = 0xFFFFFF00;
    dir.write(u8"huge", "30 84 FF FF FF 00 04 84 FF FF FE FA"_hex.str());
    std::filesystem::resize_file(dir.path() / u8"huge", std::uint64_t{contents} + 6);
    const run_result_t result = run_pkider({"der", dir.utf8(u8"huge")});
    EXPECT_EQ(result.exit_code, 0) << result;
    EXPECT_THAT(result.out, StartsWith("         0  6+4294967040  SEQUENCE\n"
                                       "         6  6+4294967034    OCTET STRING\n"));
    EXPECT_THAT(result.out, HasSubstr("... 4294966970 more bytes\n"));
}

// Opened once: at the second time its writer would be gone.
TEST(DerCommand, ReadsANamedPipe) {
    const temp_dir_t dir;
    const run_options_t options{.environment = {{"PKIDER", PKIDER_PROGRAM}}, .directory = dir.path().string()};
    const std::string line = "mkfifo pipe; printf 0500 > pipe & timeout 10 $PKIDER der pipe";
    const run_result_t result = run_program({"/bin/sh", "-c", line}, options);
    EXPECT_EQ(result.exit_code, 0) << result;
    EXPECT_EQ(result.out, "   0  2+0     NULL\n");
}

TEST(DerCommand, SendsNoControlCharacterToATerminal) {
    const run_result_t result = run_pkider_on_terminal({"der"}, {.input = "30 06 0C 04 1B 5B 32 4A"_hex.str()});
    EXPECT_THAT(result.out, HasSubstr("UTF8String \"\\1B[2J\""));
    EXPECT_THAT(result.out, testing::Not(HasSubstr("\x1B")));
}

} // namespace
} // namespace pkider_test
