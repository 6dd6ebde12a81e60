#include "tests/tools/program.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace pkider_test {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST(AlgCommand, ExplainsASignatureAlgorithm) {
    const run_result_t result = run_pkider({"alg", "sha256RSA"});
    EXPECT_EQ(result.exit_code, 0) << result;
    EXPECT_EQ(result.out, "sha256RSA\n"
                          "  value       0x00040001\n"
                          "  in code     PKI_ALG_SHA256_RSA\n"
                          "  hash        SHA256 (0x00040000)\n"
                          "  key         RSA (0x00000001)\n"
                          "  OID         1.2.840.113549.1.1.11\n"
                          "  contents    2A 86 48 86 F7 0D 01 01 0B\n"
                          "  identifier  30 0D 06 09 2A 86 48 86 F7 0D 01 01 0B 05 00\n");
    EXPECT_EQ(result.err, "");
}

TEST(AlgCommand, TakesNamesOidsAndValues) {
    const std::string explained = run_pkider({"alg", "sha256RSA"}).out;
    for (const char* const query :
         {"SHA256rsa", "PKI_ALG_SHA256_RSA", "1.2.840.113549.1.1.11", "0x00040001", "0x40001", "262145"}) {
        EXPECT_EQ(run_pkider({"alg", query}).out, explained) << query;
    }
    EXPECT_EQ(run_pkider({"alg", "SHA1", "0x00020000"}).out,
              run_pkider({"alg", "SHA1"}).out + run_pkider({"alg", "SHA1"}).out);
}

TEST(AlgCommand, WarnsOfTheDefaultsOfPss) {
    EXPECT_THAT(run_pkider({"alg", "sha256RSASSA-PSS"}).out,
                HasSubstr("names at most the hash: MGF1 with SHA-1 and a salt of 20 bytes hold by default"));
    EXPECT_THAT(run_pkider({"alg", "RSASSA-PSS"}).out,
                HasSubstr("no parameters: SHA-1, MGF1 with SHA-1 and a salt of 20 bytes hold"));
}

TEST(AlgCommand, WarnsWhereAnOidIsReadAsAnotherAlgorithm) {
    EXPECT_THAT(run_pkider({"alg", "GOST 34.11-94 (CPRO)"}).out,
                HasSubstr("the object identifier alone is read as GOST 34.11-94 (0x00090000)"));
    EXPECT_THAT(run_pkider({"alg", "sha1RSA"}).out, HasSubstr("1.3.14.3.2.29 is read as this, too"));
    EXPECT_EQ(run_pkider({"alg", "1.3.14.3.2.29"}).out, run_pkider({"alg", "sha1RSA"}).out);
    EXPECT_THAT(run_pkider({"alg", "shaRSA"}).out, HasSubstr("it has no object identifier"));
}

TEST(AlgCommand, AnswersNoToTheUnknown) {
    for (const char* const query : {"rot13", "1.2.3.4", "0x12345678", "0", "99999999999", "0x", "-1", ""}) {
        const run_result_t result = run_pkider({"alg", "--", query});
        EXPECT_EQ(result.exit_code, 1) << query << result;
        EXPECT_THAT(result.err, HasSubstr(": no algorithm of this name, OID or value"));
    }
    const run_result_t both = run_pkider({"alg", "rot13", "MD5"});
    EXPECT_EQ(both.exit_code, 1);
    EXPECT_THAT(both.out, testing::StartsWith("MD5\n")) << "the others are still explained";
}

TEST(AlgCommand, ReadsLinesOfStandardInput) {
    const run_result_t result = run_pkider({"alg", "-"}, {.input = "GOST 34.11-94\nrot13\nMD5\n"});
    EXPECT_EQ(result.exit_code, 1) << result;
    EXPECT_EQ(result.out, run_pkider({"alg", "GOST 34.11-94", "MD5"}).out);
    EXPECT_THAT(result.err, testing::StartsWith("pkider: standard input:2: rot13: no algorithm"));
}

TEST(AlgCommand, ListsAllWithValueNameAndOid) {
    const std::string list = run_pkider({"alg", "--list"}).out;
    EXPECT_EQ(std::count(list.begin(), list.end(), '\n'), 62);
    EXPECT_THAT(list, HasSubstr("0x00040001  sha256RSA                           1.2.840.113549.1.1.11\n"));
    EXPECT_THAT(list, HasSubstr("0x04090000  GOST 34.11-94 (SignalCOM)\n"));
}

TEST(AlgCommand, TellsJson) {
    const auto json = nlohmann::json::parse(run_pkider({"alg", "--json", "sha256RSASSA-PSS"}).out);
    ASSERT_EQ(json.size(), 1u);
    EXPECT_EQ(json[0]["name"], "sha256RSASSA-PSS");
    EXPECT_EQ(json[0]["value"], "0x00040002");
    EXPECT_EQ(json[0]["enumerator"], "PKI_ALG_RSASSA_PSS_SHA256");
    EXPECT_EQ(json[0]["hash"], "SHA256");
    EXPECT_EQ(json[0]["key"], "RSASSA-PSS");
    EXPECT_TRUE(json[0]["variant"].is_null());
    EXPECT_TRUE(json[0]["hash_oid"].is_null());
    EXPECT_EQ(json[0]["signature_oid"], "1.2.840.113549.1.1.10");
    EXPECT_EQ(json[0]["identifier"], "301E06092A864886F70D01010A3011A00F300D06096086480165030402010500");
    EXPECT_EQ(json[0]["notes"].size(), 2u);
    EXPECT_EQ(nlohmann::json::parse(run_pkider({"alg", "--json", "--list"}).out).size(), 62u);
    EXPECT_EQ(nlohmann::json::parse(run_pkider({"alg", "--json", "rot13"}).out).at(0)["input"], "rot13");
}

TEST(AlgCommand, WantsAlgorithmsOrTheList) {
    EXPECT_EQ(run_pkider({"alg"}).exit_code, 64);
    EXPECT_EQ(run_pkider({"alg", "--list", "MD5"}).exit_code, 64);
}

} // namespace
} // namespace pkider_test
