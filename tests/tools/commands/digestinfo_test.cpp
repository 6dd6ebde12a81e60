#include "tests/tools/program.h"

#include "tests/support/hex.h"

namespace pkider_test {
namespace {

using testing::HasSubstr;

constexpr const char* empty_sha1 = "DA39A3EE5E6B4B0D3255BFEF95601890AFD80709";
constexpr const char* empty_sha1_info = "3021300906052B0E03021A05000414DA39A3EE5E6B4B0D3255BFEF95601890AFD80709";

TEST(DigestinfoWrap, PutsADigestIntoDer) {
    const run_result_t result = run_pkider({"digestinfo", "wrap", "SHA1", "--digest", empty_sha1});
    EXPECT_EQ(result.exit_code, 0) << result;
    EXPECT_EQ(result.out, std::string(empty_sha1_info) + "\n");
    EXPECT_EQ(run_pkider({"digestinfo", "wrap", "sha1"}, {.input = empty_sha1}).out, result.out) << "hex text";
    EXPECT_EQ(run_pkider({"digestinfo", "wrap", "sha1"}, {.input = from_hex(empty_sha1).str()}).out, result.out)
        << "bytes";
    EXPECT_EQ(run_pkider({"digestinfo", "wrap", "SHA1", "--digest", empty_sha1, "--der"}).out,
              from_hex(empty_sha1_info).str());
}

TEST(DigestinfoWrap, TellsJson) {
    EXPECT_EQ(run_pkider({"digestinfo", "wrap", "SHA1", "--json"}, {.input = empty_sha1}).out,
              std::string("[\n{\"file\":\"standard input\",\"hash\":\"SHA1\",\"der\":\"") + empty_sha1_info +
                  "\"}\n]\n");
    EXPECT_EQ(run_pkider({"digestinfo", "wrap", "SHA1", "--json"}).out,
              "[\n{\"file\":\"standard input\",\"fault\":{\"message\":\"empty input\"}}\n]\n");
}

TEST(DigestinfoWrap, NamesTheFileThatIsFaulty) {
    const run_result_t result = run_pkider({"digestinfo", "wrap", "SHA1"}, {.input = "00"});
    EXPECT_EQ(result.exit_code, 2);
    EXPECT_THAT(result.err, testing::StartsWith("pkider: standard input: the digest has 1 byte, SHA1 has 20"));
}

TEST(DigestinfoWrap, RefusesADigestOfAnotherSize) {
    const run_result_t result = run_pkider({"digestinfo", "wrap", "SHA256", "--digest", "00"});
    EXPECT_EQ(result.exit_code, 2) << result;
    EXPECT_EQ(result.err,
              "pkider: --digest: the digest has 1 byte, SHA256 has 32 (--any-size wraps it all the same)\n");
    EXPECT_EQ(run_pkider({"digestinfo", "wrap", "SHA256", "--digest", ""}).exit_code, 2);
    EXPECT_EQ(run_pkider({"digestinfo", "wrap", "SHA256", "--digest", "00", "--any-size"}).out,
              "3012300D06096086480165030402010500040100\n");
}

// The library would cut the length of the longer one to 4.
TEST(DigestinfoWrap, RefusesADigestThatIsTooLongToBeEncodedFaithfully) {
    const std::vector<std::string> wrap = {"digestinfo", "wrap", "SHA256", "--any-size", "--in", "der"};
    EXPECT_EQ(run_pkider(wrap, {.input = std::string(65516, 'a')}).exit_code, 0);
    const run_result_t result = run_pkider(wrap, {.input = std::string(65540, 'a')});
    EXPECT_EQ(result.exit_code, 2) << result;
    EXPECT_THAT(result.err, testing::StartsWith("pkider: standard input: the digest info is too long: it takes 65"));
    EXPECT_EQ(run_pkider(wrap, {.input = std::string(65517, 'a')}).exit_code, 2);
}

TEST(DigestinfoWrap, WantsAHashThatHasAnOid) {
    for (const char* const name : {"rot13", "sha256RSA", "RSA", "GOST 34.11-94 (SignalCOM)"}) {
        EXPECT_EQ(run_pkider({"digestinfo", "wrap", name, "--digest", "00"}).exit_code, 64) << name;
    }
    EXPECT_EQ(run_pkider({"digestinfo", "wrap", "SHA1", "--digest", "0G"}).exit_code, 64);
    EXPECT_EQ(run_pkider({"digestinfo", "wrap"}).exit_code, 64);
    EXPECT_EQ(run_pkider({"digestinfo"}).exit_code, 64);
    EXPECT_EQ(run_pkider({"digestinfo", "wrap", "SHA1", "/nonexistent/file"}).exit_code, 74);
}

TEST(DigestinfoWrap, TakesNoneOfSeveralBlocks) {
    const std::string block = "-----BEGIN DIGEST-----\nZm9v\n-----END DIGEST-----\n";
    const run_result_t result = run_pkider({"digestinfo", "wrap", "SHA1", "--any-size"}, {.input = block + block});
    EXPECT_EQ(result.exit_code, 2) << result;
    EXPECT_EQ(result.err, "pkider: standard input: more than one block in it\n");
    EXPECT_EQ(run_pkider({"digestinfo", "wrap", "SHA1", "--any-size"}, {.input = block}).exit_code, 0);
}

TEST(DigestinfoRead, ShowsHashAndDigest) {
    const run_result_t result = run_pkider({"digestinfo", "read"}, {.input = empty_sha1_info});
    EXPECT_EQ(result.exit_code, 0) << result;
    EXPECT_EQ(result.out, std::string("hash    SHA1 (1.3.14.3.2.26)\ndigest  ") + empty_sha1 + "\n");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(run_pkider({"digestinfo", "read", "--json"}, {.input = empty_sha1_info}).out, std::string(R"([
{"file":"standard input","hash":{"name":"SHA1","oid":"1.3.14.3.2.26"},"digest":")") + empty_sha1 +
                                                                                                "\"}\n]\n");
}

TEST(DigestinfoRead, NotesADigestOfAnotherSize) {
    const run_result_t result =
        run_pkider({"digestinfo", "read"}, {.input = "3012300D06096086480165030402010500040100"});
    EXPECT_EQ(result.exit_code, 0) << result;
    EXPECT_THAT(result.err, HasSubstr("the digest has 1 byte, SHA256 has 32"));
}

struct fault_row_t {
    const char* name;
    const char* hex;
    const char* fault;
};

class DigestinfoFault : public testing::TestWithParam<fault_row_t> {};

TEST_P(DigestinfoFault, IsToldWithItsOffset) {
    const run_result_t result = run_pkider({"digestinfo", "read"}, {.input = GetParam().hex});
    EXPECT_EQ(result.exit_code, 2) << result;
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, std::string("pkider: standard input: ") + GetParam().fault + "\n");
}

const fault_row_t faults_rows[] = {
    {"NoSequence", "0500", "offset 0: expected a DigestInfo (a SEQUENCE), found 05 00"},
    {"Indefinite", "30800000", "offset 0: expected a DigestInfo (a SEQUENCE), found 30 80 00 00, whose length is bad"},
    {"NoAlgorithm", "30020500", "offset 2: expected the hash algorithm (a SEQUENCE), found 05 00"},
    {"NoOid", "300430020500", "offset 4: expected the hash (an OBJECT IDENTIFIER), found 05 00"},
    {"NoParameters", "300930070605 2B0E03021A",
     "offset 11: expected the parameters of the hash (a NULL), found the end"},
    {"NoDigest", "300B300906052B0E03021A0500", "offset 13: expected the digest (an OCTET STRING), found the end"},
};
INSTANTIATE_TEST_SUITE_P(Faults, DigestinfoFault, testing::ValuesIn(faults_rows),
                         [](const auto& row) { return row.param.name; });

} // namespace
} // namespace pkider_test
