#include "tests/tools/program.h"

#include "tests/support/hex.h"

namespace pkider_test {
namespace {

using testing::HasSubstr;

TEST(SigDsa, TakesAValueApart) {
    const run_result_t result = run_pkider({"sig", "dsa"}, {.input = "3008020200C302020105"});
    EXPECT_EQ(result.exit_code, 0) << result;
    EXPECT_EQ(result.out, "r  00C3  (8 bits)\n"
                          "s  0105  (9 bits)\n");
    EXPECT_EQ(run_pkider({"sig", "dsa", "--json"}, {.input = "3008020200C302020105"}).out,
              "[\n"
              R"({"file":"standard input","r":"00C3","s":"0105","r_bits":8,"s_bits":9})"
              "\n]\n");
}

TEST(SigIke, NamesAnAlgorithm) {
    const run_result_t result = run_pkider({"sig", "ike"}, {.input = "300D06092A864886F70D01010B0500"});
    EXPECT_EQ(result.exit_code, 0) << result;
    EXPECT_EQ(result.out, "algorithm  sha256RSA\n"
                          "OID        1.2.840.113549.1.1.11\n"
                          "value      0x00040001\n");
}

TEST(SigIke, ShowsTheParametersOfPss) {
    const run_result_t defaults = run_pkider({"sig", "ike"}, {.input = "300D06092A864886F70D01010A3000"});
    EXPECT_THAT(defaults.out, HasSubstr("algorithm  sha1RSASSA-PSS\n"));
    EXPECT_THAT(defaults.out,
                HasSubstr("PSS        hash SHA1 (default), mask MGF1 with SHA1 (default), salt 20 bytes (default)\n"));

    const run_result_t full = run_pkider(
        {"sig", "ike", "--json"}, {.input = "304106092A864886F70D01010A3034A00F300D06096086480165030402010500"
                                            "A11C301A06092A864886F70D010108300D06096086480165030402010500A203020120"});
    EXPECT_EQ(
        full.out,
        "[\n"
        R"({"file":"standard input","name":"sha256RSASSA-PSS","oid":"1.2.840.113549.1.1.10","value":"0x00040002",)"
        R"("pss":{"hash":{"name":"SHA256","oid":"2.16.840.1.101.3.4.2.1"},)"
        R"("mask_hash":{"name":"SHA256","oid":"2.16.840.1.101.3.4.2.1"},)"
        R"("salt_length":32,"trailer_field":1}})"
        "\n]\n");
}

TEST(SigIke, AnswersNoToAnUnknownAlgorithm) {
    const run_result_t result = run_pkider({"sig", "ike"}, {.input = "300A06082A8648CE3D040302"});
    EXPECT_EQ(result.exit_code, 1) << result;
    EXPECT_EQ(result.out, "algorithm  ecdsa-with-SHA256\n"
                          "OID        1.2.840.10045.4.3.2\n");
    EXPECT_EQ(run_pkider({"sig", "ike"}, {.input = "300D06092A864886F70D01010A0500"}).exit_code, 1) << "PSS of NULL";
}

TEST(SigIke, MakesAnIdentifier) {
    EXPECT_EQ(run_pkider({"sig", "ike", "--make", "sha256RSA"}).out, "300D06092A864886F70D01010B0500\n");
    EXPECT_EQ(run_pkider({"sig", "ike", "--make", "sha256RSA", "--der"}).out,
              "30 0D 06 09 2A 86 48 86 F7 0D 01 01 0B 05 00"_hex.str());
    EXPECT_EQ(run_pkider({"sig", "ike", "--make", "sha256RSA", "--json"}).out,
              "[\n"
              R"({"name":"sha256RSA","value":"0x00040001","identifier":"300D06092A864886F70D01010B0500"})"
              "\n]\n");
    EXPECT_EQ(run_pkider({"sig", "ike", "--make", "shaRSA"}).exit_code, 1) << "there is none ready-made";
    EXPECT_EQ(run_pkider({"sig", "ike", "--make", "rot13"}).exit_code, 64);
    EXPECT_EQ(run_pkider({"sig", "ike", "--hex"}, {.input = "0500"}).exit_code, 64);
}

struct fault_row_t {
    const char* name;
    const char* command;
    const char* hex;
    const char* fault;
};

class SigFault : public testing::TestWithParam<fault_row_t> {};

TEST_P(SigFault, IsToldWithItsOffset) {
    const run_result_t result = run_pkider({"sig", GetParam().command}, {.input = GetParam().hex});
    EXPECT_EQ(result.exit_code, 2) << result;
    EXPECT_EQ(result.err, std::string("pkider: standard input: ") + GetParam().fault + "\n");
}

const fault_row_t faults_rows[] = {
    {"NoValue", "dsa", "0500", "offset 0: expected the signature value (a SEQUENCE), found 05 00"},
    {"NoR", "dsa", "30020500", "offset 2: expected r (an INTEGER), found 05 00"},
    {"NoS", "dsa", "3003020105", "offset 5: expected s (an INTEGER), found the end"},
    {"ValueCut", "dsa", "3006020105",
     "offset 0: expected the signature value (a SEQUENCE), found 30 06 02 01 05, whose length is bad"},
    {"NoIdentifier", "ike", "0500", "offset 0: expected the algorithm identifier (a SEQUENCE), found 05 00"},
    {"NoOid", "ike", "30020500", "offset 2: expected the algorithm (an OBJECT IDENTIFIER), found 05 00"},
};
INSTANTIATE_TEST_SUITE_P(Faults, SigFault, testing::ValuesIn(faults_rows),
                         [](const auto& row) { return row.param.name; });

} // namespace
} // namespace pkider_test
