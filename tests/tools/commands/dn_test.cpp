// pkider dn: what its subcommands print, in every form.
#include "tests/tools/program.h"

#include "tests/support/temp_dir.h"

#include <nlohmann/json.hpp>

namespace pkider_test {
namespace {

using nlohmann::json;
using testing::HasSubstr;

const std::string abc_hex = "300E310C300A06035504031303616263"; // CN=abc
const std::string abc_base64 = "MA4xDDAKBgNVBAMTA2FiYw==";
const std::string abc_der("\x30\x0E\x31\x0C\x30\x0A\x06\x03\x55\x04\x03\x13\x03"
                          "abc",
                          16);
const std::string abc_pem = "-----BEGIN NAME-----\n" + abc_base64 + "\n-----END NAME-----\n";

json answers(const run_result_t& result) {
    return json::parse(result.out);
}

TEST(DnEncode, PrintsHexUnlessToldOtherwise) {
    EXPECT_EQ(run_pkider({"dn", "encode", "CN=abc"}).out, abc_hex + "\n");
    EXPECT_EQ(run_pkider({"dn", "encode", "--hex", "cn=abc"}).out, abc_hex + "\n");
    EXPECT_EQ(run_pkider({"dn", "encode", "--base64", "2.5.4.3=abc"}).out, abc_base64 + "\n");
    EXPECT_EQ(run_pkider({"dn", "encode", "--der", "CN=abc"}).out, abc_der);
}

TEST(DnEncode, PrintsJson) {
    const run_result_t result = run_pkider({"dn", "encode", "--json", "CN=abc", "C N=a"});
    EXPECT_EQ(result.exit_code, 2) << result;
    EXPECT_EQ(answers(result).at(0), json({{"line", "CN=abc"}, {"der", abc_hex}}));
    EXPECT_EQ(answers(result).at(1)["line"], "C N=a");
    EXPECT_EQ(answers(result).at(1)["fault"]["code"], 1);
    EXPECT_EQ(answers(result).at(1)["fault"]["column"], 3);
    EXPECT_EQ(answers(result).at(1)["fault"]["message"], "expected '=' after the attribute type 'C'");
    EXPECT_EQ(answers(result).at(1)["fault"]["advice"], "write an attribute as TYPE=value, for example CN=Server");
}

TEST(DnEncode, ReadsEveryLineOfStandardInput) {
    const run_result_t result = run_pkider({"dn", "encode"}, {.input = "CN=abc\n\r\nCN=abc\r\nCN=abc"});
    EXPECT_EQ(result.exit_code, 0) << result;
    EXPECT_EQ(result.out, abc_hex + "\n3000\n" + abc_hex + "\n" + abc_hex + "\n");
}

TEST(DnEncode, ReadsStandardInputAmongArguments) {
    const run_result_t result = run_pkider({"dn", "encode", "CN=abc", "-", "FOO=a"}, {.input = "\nBAR=b\n"});
    EXPECT_EQ(result.exit_code, 2) << result;
    EXPECT_EQ(result.out, abc_hex + "\n3000\n");
    EXPECT_THAT(result.err, testing::StartsWith("pkider: standard input:2:1: "));
    EXPECT_THAT(result.err, HasSubstr("\npkider: argument:2:1: "));
}

TEST(DnEncode, OfNoLineIsNothing) {
    EXPECT_EQ(run_pkider({"dn", "encode"}).out, "");
    EXPECT_EQ(run_pkider({"dn", "encode", "--json"}).out, "[]\n");
}

TEST(DnEncode, KeepsACarriageReturnInsideALine) {
    EXPECT_EQ(run_pkider({"dn", "encode"}, {.input = "CN=a\rb\n"}).out, "300E310C300A06035504031603610D62\n");
}

TEST(DnEncode, RefusesALineWithANul) {
    const run_result_t result = run_pkider({"dn", "encode"}, {.input = std::string("CN=a\0b\nCN=abc\n", 14)});
    EXPECT_EQ(result.exit_code, 2);
    EXPECT_EQ(result.out, abc_hex + "\n");
    EXPECT_EQ(result.err, "pkider: standard input:1: a NUL byte at offset 4 of the line\n");
}

// A name that cannot be printed has DER all the same.
TEST(DnEncode, EncodesWhatCannotBePrinted) {
    EXPECT_EQ(run_pkider({"dn", "encode", "CN=#140124"}).out, "300C310A3008060355040314012"
                                                              "4\n");
}

struct length_row_t {
    const char* name;
    std::size_t value_size;
    bool is_refused;
};

void PrintTo(const length_row_t& row, std::ostream* stream) {
    *stream << row.value_size;
}

class DnEncodeLength : public testing::TestWithParam<length_row_t> {};

// The SEQUENCE around all has 16 bytes more than the value from 65,504 on: three headers and the type.
TEST_P(DnEncodeLength, IsRefusedWhereTheLibraryLosesBytes) {
    const run_options_t line{.input = "CN=" + std::string(GetParam().value_size, 'a') + "\n"};
    for (const char* command : {"encode", "normalize"}) {
        const run_result_t result = run_pkider({"dn", command}, line);
        EXPECT_EQ(result.exit_code, GetParam().is_refused ? 2 : 0) << result.err;
        EXPECT_EQ(result.out.empty(), GetParam().is_refused);
        if (GetParam().is_refused) {
            EXPECT_THAT(result.err, HasSubstr("pkider: standard input:1: the name is too long: it takes "));
            EXPECT_THAT(result.err, HasSubstr("lengths of 65536 and more cannot be encoded faithfully"));
        }
    }
}

const length_row_t values_rows[] = {
    {"LastThatFits", 65518, false},       {"FirstThatDoesNot", 65519, true},
    {"WouldReadAsEmpty", 65536, true},    {"WouldReadAsFiveLetters", 65541, true},
    {"WouldBeWrittenRight", 70000, true}, {"HugeWithZeroBytes", 0x1000100, true},
};
INSTANTIATE_TEST_SUITE_P(Values, DnEncodeLength, testing::ValuesIn(values_rows), row_name);

TEST(DnEncode, TellsInJsonThatANameIsTooLong) {
    const run_result_t result =
        run_pkider({"dn", "encode", "--json"}, {.input = "CN=" + std::string(65536, 'a') + "\n"});
    EXPECT_EQ(answers(result).at(0)["fault"]["message"],
              "the name is too long: it takes 65553 bytes of DER, and lengths "
              "of 65536 and more cannot be encoded faithfully");
}

TEST(DnNormalize, PrintsTheOneFormOfAName) {
    const run_result_t result = run_pkider({"dn", "normalize", "cn = \"Smith, John\" ", "CN=\"a,b\", 2.5.4.10=x+ou=y"});
    EXPECT_EQ(result.exit_code, 2); // a blank after the quotes
    EXPECT_EQ(result.out, "CN=a\\,b,O=x+OU=y\n");
}

TEST(DnNormalize, PrintsEveryForm) {
    EXPECT_EQ(run_pkider({"dn", "normalize", "--hex", "cn=abc"}).out, abc_hex + "\n");
    EXPECT_EQ(run_pkider({"dn", "normalize", "--base64", "cn=abc"}).out, abc_base64 + "\n");
    EXPECT_EQ(run_pkider({"dn", "normalize", "--der", "cn=abc"}).out, abc_der);
    EXPECT_EQ(answers(run_pkider({"dn", "normalize", "--json", "cn=abc"})),
              json::parse(R"([{"line": "cn=abc", "name": "CN=abc", "der": ")" + abc_hex + "\"}]"));
}

TEST(DnNormalize, TellsWhatCannotBePrinted) {
    const run_result_t result = run_pkider({"dn", "normalize", "CN=#140124"});
    EXPECT_EQ(result.exit_code, 2);
    EXPECT_EQ(result.err, "pkider: argument:1: offset 13: expected characters of T.61, found 24 [code 17]\n");
}

struct form_row_t {
    const char* name;
    std::string input;
    const char* form;
};

void PrintTo(const form_row_t& row, std::ostream* stream) {
    *stream << row.name;
}

class DnDecodeInput : public testing::TestWithParam<form_row_t> {};

TEST_P(DnDecodeInput, IsGuessed) {
    const run_result_t result = run_pkider({"dn", "decode"}, {.input = GetParam().input});
    EXPECT_EQ(result.exit_code, 0) << result;
    EXPECT_EQ(result.out, "CN=abc\n");
    EXPECT_EQ(result.err, "");
}

TEST_P(DnDecodeInput, IsFixedByIn) {
    for (const char* form : {"pem", "der", "hex", "base64"}) {
        const run_result_t result = run_pkider({"dn", "decode", "--in", form}, {.input = GetParam().input});
        const bool right = std::string(form) == GetParam().form;
        EXPECT_EQ(result.exit_code, right ? 0 : 2) << form << result;
        EXPECT_EQ(result.out, right ? "CN=abc\n" : "") << form;
    }
}

const form_row_t forms_rows[] = {
    {"Der", abc_der, "der"},
    {"Pem", abc_pem, "pem"},
    {"PemInsideText", "subject: x\r\n" + abc_pem + "more\n", "pem"},
    {"Hex", abc_hex + "\n", "hex"},
    {"HexInLowerCase", "300e310c300a06035504031303616263", "hex"},
    {"HexInLines", "30 0E 31 0C 30 0A\n06 03 55 04 03\n13:03:61:62:63", "hex"},
    {"Base64", abc_base64, "base64"},
    {"Base64InLines", "MA4xDDAKBgNV\nBAMTA2FiYw==\n", "base64"},
};
INSTANTIATE_TEST_SUITE_P(Forms, DnDecodeInput, testing::ValuesIn(forms_rows), row_name);

struct bad_input_row_t {
    const char* name;
    std::string input;
    const char* fault;
};

void PrintTo(const bad_input_row_t& row, std::ostream* stream) {
    *stream << row.name;
}

class DnDecodeBadInput : public testing::TestWithParam<bad_input_row_t> {};

TEST_P(DnDecodeBadInput, IsTold) {
    const run_result_t result = run_pkider({"dn", "decode"}, {.input = GetParam().input});
    EXPECT_EQ(result.exit_code, 2) << result;
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, std::string("pkider: standard input") + GetParam().fault + "\n");
}

const bad_input_row_t inputs_rows[] = {
    {"Empty", "", ": empty input"},
    {"OnlyLineEnds", "\n\n", ": empty input"},
    {"Text", "this is not a name!\n", ": not PEM, DER, hex or base64"},
    {"CutBase64", "MA4xDDAKB", ": not PEM, DER, hex or base64"},
    {"PemWithoutEnd", "-----BEGIN NAME-----\nMAA=\n", ":1: no END line"},
    {"PemWithOtherEnd", "\n-----BEGIN A-----\nMAA=\n-----END B-----\n", ":2: END line 4 names another label"},
    {"PemWithBadDigits", "-----BEGIN A-----\nM?A=\n-----END A-----\n", ":1: the base64 digits are faulty"},
    {"NoSequence", "0500", ": offset 0: expected a Name (a SEQUENCE), found 05 00 [code 11]"},
    {"CutSequence", "3005", ": offset 0: expected a Name (a SEQUENCE), found 30 05, whose length is bad [code 11]"},
    {"SequenceForSet", "30023000", ": offset 2: expected a RelativeDistinguishedName (a SET), found 30 00 [code 12]"},
    {"ChildBehindItsParent", "30043102300506032A0304",
     ": offset 4: expected an AttributeTypeAndValue (a SEQUENCE), found 30 05, whose length is bad "
     "[code 13]"},
    {"EmptyAttribute", "300431023000",
     ": offset 6: expected an attribute type (an OBJECT IDENTIFIER), found the end [code 14]"},
    {"CutArc", "300B3109300706022A86130161", ": offset 8: expected an OID of whole arcs, found 2A 86 [code 15]"},
    {"NoValue",
     "300931073005060355040"
     "3",
     ": offset 11: expected the value, found the end [code 16]"},
    {"CutValue", "300A31083006060355040313",
     ": offset 11: expected the value, found 13, whose length is bad [code 16]"},
    {"BadTeletex", "300C310A30080603550403140124", ": offset 13: expected characters of T.61, found 24 [code 17]"},
    {"OddBmp", "300C310A300806035504031E0141",
     ": offset 13: expected characters of 2 bytes, none of them a surrogate, found 41 [code 18]"},
    {"EmptyUniversal", "300B3109300706035504031C00",
     ": offset 13: expected characters of 4 bytes up to 10FFFF, none of them a surrogate, found the "
     "end [code 18]"},
    {"LettersInNumeric", "300C310A30080603550403120161",
     ": offset 13: expected digits and blanks only, found 61 [code 19]"},
};
INSTANTIATE_TEST_SUITE_P(Inputs, DnDecodeBadInput, testing::ValuesIn(inputs_rows), row_name);

TEST(DnDecode, PrintsEveryForm) {
    EXPECT_EQ(run_pkider({"dn", "decode", abc_hex}).out, "CN=abc\n");
    EXPECT_EQ(run_pkider({"dn", "decode", "--hex"}, {.input = abc_base64}).out, abc_hex + "\n");
    EXPECT_EQ(run_pkider({"dn", "decode", "--base64", abc_hex}).out, abc_base64 + "\n");
    EXPECT_EQ(run_pkider({"dn", "decode", "--der", abc_hex}).out, abc_der);
}

TEST(DnDecode, PrintsJson) {
    const run_result_t result =
        run_pkider({"dn", "decode", "--json"}, {.input = abc_pem + "-----BEGIN NAME-----\nBQA=\n-----END NAME-----\n"});
    EXPECT_EQ(result.exit_code, 2) << result;
    EXPECT_EQ(answers(result).at(0),
              json({{"file", "standard input"}, {"line", 1}, {"name", "CN=abc"}, {"der", abc_hex}}));
    EXPECT_EQ(answers(result).at(1), json({{"file", "standard input"},
                                           {"line", 4},
                                           {"fault",
                                            {{"code", 11},
                                             {"offset", 0},
                                             {"expected", "a Name (a SEQUENCE)"},
                                             {"found", "05 00"},
                                             {"message", "offset 0: expected a Name (a SEQUENCE), found 05 00"}}}}));
}

TEST(DnDecode, TellsInJsonThatAFileIsMissing) {
    const run_result_t result = run_pkider({"dn", "decode", "--json", "/no/file"});
    EXPECT_EQ(result.exit_code, 74);
    EXPECT_EQ(answers(result),
              json::parse(R"([{"file": "/no/file", "fault": {"message": "/no/file: No such file or directory"}}])"));
}

TEST(DnDecode, ReversesTheRdns) {
    const std::string hex = run_pkider({"dn", "encode", "CN=a,O=b+OU=c,C=RU"}).out;
    EXPECT_EQ(run_pkider({"dn", "decode", "--reverse"}, {.input = hex}).out, "C=RU,O=b+OU=c,CN=a\n");
}

TEST(DnDecode, NotesBytesBehindTheName) {
    const run_result_t result = run_pkider({"dn", "decode", abc_hex + "0500"});
    EXPECT_EQ(result.exit_code, 0) << result;
    EXPECT_EQ(result.out, "CN=abc\n");
    EXPECT_EQ(result.err, "pkider: note: argument: 2 bytes after the name\n");
    EXPECT_EQ(run_pkider({"dn", "decode", "--hex", abc_hex + "0500"}).out, abc_hex + "\n");
}

// A file of such a name is read; only then is the argument taken as hex.
TEST(DnDecode, PrefersAFileToHexDigits) {
    const temp_dir_t dir;
    dir.write(u8"3000", abc_hex);
    EXPECT_EQ(run_pkider({"dn", "decode", "3000"}, {.directory = dir.path().string()}).out, "CN=abc\n");
    EXPECT_EQ(run_pkider({"dn", "decode", "3000"}).out, "\n");
}

TEST(DnDecode, WorksOnEveryBlockOfABundle) {
    const run_result_t result =
        run_pkider({"dn", "decode"}, {.input = abc_pem + "-----BEGIN A-----\n-----END B-----\n" + abc_pem});
    EXPECT_EQ(result.exit_code, 2) << result;
    EXPECT_EQ(result.out, "CN=abc\nCN=abc\n");
}

TEST(DnReverse, TurnsTheGroupsRound) {
    EXPECT_EQ(run_pkider({"dn", "reverse", "C=RU,O=x,CN=a", "A=1, B=2", "CN=a+O=b"}).out,
              "CN=a,O=x,C=RU\n B=2,A=1\nCN=a+O=b\n");
    EXPECT_EQ(answers(run_pkider({"dn", "reverse", "--json", "A=1,B=2"})),
              json::parse(R"([{"line": "A=1,B=2", "name": "B=2,A=1"}])"));
}

TEST(DnReverse, ShowsAFaultOfTheLine) {
    const run_result_t result = run_pkider({"dn", "reverse", "CN=a,"});
    EXPECT_EQ(result.exit_code, 2);
    EXPECT_THAT(result.err, HasSubstr("pkider: argument:1:6: nothing follows the ',' [code 1]\n"));
}

TEST(DnGet, PrintsTheValueAsItIsWritten) {
    EXPECT_EQ(run_pkider({"dn", "get", "O", "CN=a,O=\"b,c\",O=d"}).out, "\"b,c\"\n");
    EXPECT_EQ(run_pkider({"dn", "get", "--pair", "O", "CN=a,O =b,C=RU"}).out, "O =b\n");
    EXPECT_EQ(answers(run_pkider({"dn", "get", "--json", "O", "O=b"})),
              json::parse(R"([{"line": "O=b", "value": "b"}])"));
    EXPECT_EQ(answers(run_pkider({"dn", "get", "--json", "--pair", "O", "O=b"})),
              json::parse(R"([{"line": "O=b", "pair": "O=b"}])"));
}

TEST(DnGet, AnswersNoWhenThereIsNone) {
    const run_result_t result = run_pkider({"dn", "get", "cn", "CN=a", "cn=b"});
    EXPECT_EQ(result.exit_code, 1) << result;
    EXPECT_EQ(result.out, "b\n");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(answers(run_pkider({"dn", "get", "--json", "O", "CN=a"})),
              json::parse(R"([{"line": "CN=a", "value": null}])"));
}

TEST(DnHas, AnswersYesOrNo) {
    const run_result_t yes = run_pkider({"dn", "has", "CN=a,C=RU", "CN=a,O=b,C=RU"});
    EXPECT_EQ(yes.exit_code, 0) << yes;
    EXPECT_EQ(yes.out, "yes\n");
    const run_result_t no = run_pkider({"dn", "has", "C=RU,CN=a", "CN=a,O=b,C=RU"});
    EXPECT_EQ(no.exit_code, 1) << no;
    EXPECT_EQ(no.out, "no\n");
    EXPECT_EQ(answers(run_pkider({"dn", "has", "--json", "O=b", "O=b", "O=c"})),
              json::parse(R"([{"line": "O=b", "answer": true}, {"line": "O=c", "answer": false}])"));
}

TEST(DnOrder, AnswersWhetherTheCountryComesFirst) {
    EXPECT_EQ(run_pkider({"dn", "order", "C=RU,CN=a", "O=x"}).out, "yes\nyes\n");
    const run_result_t no = run_pkider({"dn", "order", "CN=a,C=RU"});
    EXPECT_EQ(no.exit_code, 1) << no;
    EXPECT_EQ(no.out, "no\n");
    EXPECT_EQ(run_pkider({"dn", "order", "CN"}).exit_code, 2);
    EXPECT_EQ(answers(run_pkider({"dn", "order", "--json", "CN=a"})),
              json::parse(R"([{"line": "CN=a", "answer": true}])"));
}

} // namespace
} // namespace pkider_test
