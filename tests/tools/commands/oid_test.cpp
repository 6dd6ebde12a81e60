#include "tests/tools/program.h"

#include <nlohmann/json.hpp>

namespace pkider_test {
namespace {

using nlohmann::json;

struct oid_row_t {
    const char* name;
    const char* value;
    const char* form;     // how it is read without --in
    json dotted;          // null when the library gives none
    const char* contents; // hex
    bool exact;
    const char* loss; // the first one's words, in part
};

void PrintTo(const oid_row_t& row, std::ostream* stream) {
    *stream << row.value;
}

class OidCommandForms : public testing::TestWithParam<oid_row_t> {};

TEST_P(OidCommandForms, ConvertsAndSaysWhatIsNotExact) {
    const oid_row_t& row = GetParam();
    const run_result_t result = run_pkider({"oid", "--json", "--", row.value});
    EXPECT_EQ(result.exit_code, 0) << result;
    const json answers = json::parse(result.out);
    ASSERT_EQ(answers.size(), 1u);
    const json& answer = answers[0];
    EXPECT_EQ(answer["input"], row.value);
    EXPECT_EQ(answer["form"], row.form);
    EXPECT_EQ(answer["dotted"], row.dotted);
    EXPECT_EQ(answer["contents"], row.contents);
    EXPECT_EQ(answer["exact"], row.exact);
    EXPECT_EQ(answer["losses"].empty(), row.exact);
    if (row.exact) return;
    EXPECT_THAT(answer["losses"].at(0).get<std::string>(), testing::HasSubstr(row.loss));
}

const oid_row_t values_rows[] = {
    {"Dotted", "2.5.4.3", "dotted", "2.5.4.3", "550403", true, ""},
    {"LeadingZeros", "02.05.004.3", "dotted", "2.5.4.3", "550403", true, ""},
    {"ShortName", "CN", "name", "2.5.4.3", "550403", true, ""},
    {"ShortNameInLowerCase", "uid", "name", "0.9.2342.19200300.100.1.1", "0992268993F22C640101", true, ""},
    {"ShortNameOfHexDigits", "DC", "name", "0.9.2342.19200300.100.1.25", "0992268993F22C640119", true, ""},
    {"Contents", "550403", "hex", "2.5.4.3", "550403", true, ""},
    {"ContentsWithBlanks", "2a 86 48", "hex", "1.2.840", "2A8648", true, ""},
    {"ContentsWithColons", "2a:86:48", "hex", "1.2.840", "2A8648", true, ""},
    {"SecondArcAboveThousand", "2.999", "dotted", "26.39", "8837", false, "mean 2.999"},
    {"ContentsOfAnArcAboveThousand", "8837", "hex", "26.39", "8837", false, "mean 2.999"},
    {"SecondArcAboveThirtyNine", "1.50", "dotted", "2.10", "5A", false, "those of 2.10, not of 1.50"},
    {"SumThatWraps", "2.4294967295", "dotted", "1.39", "4F", false, "those of 1.39"},
    {"ArcThatWraps", "2A 90 80 80 80 00", "hex", "1.2.0", "2A9080808000", false, "1.2.4294967296"},
    {"PaddedArc", "2A 80 01", "hex", "1.2.1", "2A8001", false, "reads back as other contents: 2A01"},
    {"CutArc", "2A 86", "hex", json(), "2A86", false, "no whole arcs"},
};
INSTANTIATE_TEST_SUITE_P(Values, OidCommandForms, testing::ValuesIn(values_rows), row_name);

TEST(OidCommand, PrintsAllForms) {
    const run_result_t result = run_pkider({"oid", "cn"});
    EXPECT_EQ(result.exit_code, 0) << result;
    EXPECT_EQ(result.out, "cn\n"
                          "  short name: CN\n"
                          "  long name:  commonName\n"
                          "  dotted:     2.5.4.3\n"
                          "  contents:   550403\n"
                          "  DER:        0603550403\n"
                          "  exact:      yes\n");
    EXPECT_EQ(result.err, "");
}

TEST(OidCommand, NamesTheAlgorithmOfAnOid) {
    EXPECT_EQ(run_pkider({"oid", "1.2.840.113549.1.1.11"}).out, "1.2.840.113549.1.1.11\n"
                                                                "  algorithm:  sha256RSA\n"
                                                                "  dotted:     1.2.840.113549.1.1.11\n"
                                                                "  contents:   2A864886F70D01010B\n"
                                                                "  DER:        06092A864886F70D01010B\n"
                                                                "  exact:      yes\n");
    const json answers = json::parse(run_pkider({"oid", "--json", "2A85030701010302", "CN"}).out);
    EXPECT_EQ(answers.at(0)["algorithm"], "GOST R 34.11-2012/34.10-2012 256");
    EXPECT_EQ(answers.at(1)["algorithm"], json());
}

TEST(OidCommand, PrintsWhatIsNotExact) {
    const run_result_t result = run_pkider({"oid", "2.999"});
    EXPECT_EQ(result.exit_code, 0) << result;
    EXPECT_EQ(result.out, "2.999\n"
                          "  dotted:     26.39\n"
                          "  contents:   8837\n"
                          "  DER:        06028837\n"
                          "  exact:      no\n"
                          "    the contents mean 2.999, which is printed as 26.39\n"
                          "    26.39 cannot be read back: the first arc is above 2\n");
}

TEST(OidCommand, WritesTheLengthOfALongElement) {
    const run_result_t result = run_pkider({"oid", "--json", "--in", "hex", std::string(400, '1')});
    EXPECT_THAT(json::parse(result.out)[0]["der"].get<std::string>(), testing::StartsWith("0681C81111"));
    const run_result_t longer = run_pkider({"oid", "--json", "--in", "hex", std::string(600, '1')});
    EXPECT_THAT(json::parse(longer.out)[0]["der"].get<std::string>(), testing::StartsWith("0682012C1111"));
}

TEST(OidCommand, KnowsAnArcOfAnUuid) {
    const run_result_t result = run_pkider({"oid", "--json", "6983D6A4D4F2C5A4D4F2C5A4D4F2C5A4D4F2C501"});
    EXPECT_THAT(json::parse(result.out)[0]["x660"].get<std::string>(), testing::StartsWith("2.25."));
}

TEST(OidCommand, InFixesTheForm) {
    EXPECT_EQ(json::parse(run_pkider({"oid", "--json", "--in", "hex", "DC01"}).out)[0]["contents"], "DC01");
    EXPECT_EQ(json::parse(run_pkider({"oid", "--json", "--in", "der", "06 03 55 04 03"}).out)[0]["dotted"], "2.5.4.3");
    EXPECT_EQ(run_pkider({"oid", "--in", "dotted", "CN"}).exit_code, 2);
    EXPECT_EQ(run_pkider({"oid", "--in", "name", "2.5.4.3"}).exit_code, 2);
    EXPECT_EQ(run_pkider({"oid", "--in", "der", "550403"}).exit_code, 2);
    EXPECT_EQ(run_pkider({"oid", "--in", "der", "060355040305"}).exit_code, 2);
    EXPECT_EQ(run_pkider({"oid", "--in", "octal", "1"}).exit_code, 64);
}

TEST(OidCommand, NotesThatHexLooksLikeAWholeElement) {
    const run_result_t result = run_pkider({"oid", "0603550403"});
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_THAT(result.out, testing::HasSubstr("0.6.3.85.4.3"));
    EXPECT_EQ(result.err, "pkider: note: 0603550403: taken as contents; for a whole element use --in der\n");
}

TEST(OidCommand, WorksOnTheOthersBehindAFaultyOne) {
    const run_result_t result = run_pkider({"oid", "3.1", "2.5.4.3"});
    EXPECT_EQ(result.exit_code, 2) << result;
    EXPECT_THAT(result.out, testing::StartsWith("2.5.4.3\n"));
    EXPECT_EQ(result.err, "pkider: 3.1: not an OID in dotted form: the first arc is above 2\n");
}

TEST(OidCommand, ReadsLinesOfStandardInput) {
    const run_result_t result = run_pkider({"oid", "-"}, {.input = "CN\r\n3.1\n\n550406"});
    EXPECT_EQ(result.exit_code, 2) << result;
    EXPECT_EQ(result.out, run_pkider({"oid", "CN", "550406"}).out);
    EXPECT_EQ(result.err, "pkider: standard input:2: 3.1: not an OID in dotted form: the first arc is above 2\n"
                          "pkider: standard input:3: '': neither dotted text nor a known short name nor hex digits\n");
    const json answers = json::parse(run_pkider({"oid", "--json", "-"}, {.input = "CN\n3.1\nC\n"}).out);
    ASSERT_EQ(answers.size(), 3u);
    EXPECT_EQ(answers[1]["input"], "3.1");
    EXPECT_EQ(answers[1]["fault"]["message"], "not an OID in dotted form: the first arc is above 2");
    EXPECT_EQ(answers[2]["dotted"], "2.5.4.6");
}

TEST(OidCommand, ReadsStandardInputAmongArguments) {
    EXPECT_EQ(run_pkider({"oid", "C", "-", "O"}, {.input = "CN\nL\n"}).out,
              run_pkider({"oid", "C", "CN", "L", "O"}).out);
    EXPECT_EQ(run_pkider({"oid", "-"}).out, "") << "no line, no answer";
}

TEST(OidCommand, RefusesALineWithANul) {
    const run_result_t result = run_pkider({"oid", "-"}, {.input = std::string("C\0\nCN\n", 6)});
    EXPECT_EQ(result.exit_code, 2);
    EXPECT_EQ(result.err, "pkider: standard input:1: C\\00: a NUL byte at offset 1 of the line\n");
    EXPECT_THAT(result.out, testing::StartsWith("CN\n"));
}

struct refusal_t {
    const char* name;
    const char* value;
    const char* reason;
};

void PrintTo(const refusal_t& row, std::ostream* stream) {
    *stream << row.value;
}

class OidCommandRefusal : public testing::TestWithParam<refusal_t> {};

TEST_P(OidCommandRefusal, SaysWhy) {
    const run_result_t result = run_pkider({"oid", GetParam().value});
    EXPECT_EQ(result.exit_code, 2) << result;
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, std::string("pkider: ") + GetParam().value + ": " + GetParam().reason + "\n");
}

const refusal_t oid_command_refusal_values_rows[] = {
    {"UnknownName", "nobody", "neither dotted text nor a known short name nor hex digits"},
    {"OddHexDigits", "550", "neither dotted text nor a known short name nor hex digits"},
    {"FirstArc", "3.1", "not an OID in dotted form: the first arc is above 2"},
    {"SingleArc", "1.", "not an OID in dotted form: an arc is missing after the last dot"},
    {"EmptyArc", "1..2", "not an OID in dotted form: an arc is missing between two dots"},
    {"NoFirstArc", ".1", "not an OID in dotted form: the first arc is missing"},
    {"LargeArc", "1.2.4294967296", "not an OID in dotted form: the arc 4294967296 is above 4294967295"},
};
INSTANTIATE_TEST_SUITE_P(Values, OidCommandRefusal, testing::ValuesIn(oid_command_refusal_values_rows), row_name);

TEST(OidCommand, SaysThatAnOidIsTooLong) {
    std::string dotted = "1.2";
    for (int i = 0; i < 506; ++i) dotted += ".1";
    const run_result_t result = run_pkider({"oid", dotted});
    EXPECT_EQ(result.exit_code, 2);
    EXPECT_THAT(result.err, testing::EndsWith(": it takes more than 506 bytes\n"));
}

} // namespace
} // namespace pkider_test
