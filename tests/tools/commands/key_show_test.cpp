#include "tests/tools/program.h"

#include "tests/support/hex.h"

namespace pkider_test {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST(KeyShow, ShowsTheNumbersOfAnRsaKey) {
    const char* const key = "301C300D06092A864886F70D010101050003 0B 00 3008020200C302020003";
    const run_result_t result = run_pkider({"key", "show"}, {.input = key});
    EXPECT_EQ(result.exit_code, 0) << result;
    EXPECT_EQ(result.out, "standard input: RSA, 8 bits, exponent 3\n"
                          "  algorithm   RSA (1.2.840.113549.1.1.1)\n"
                          "  modulus, 1 byte\n"
                          "    C3\n");
    EXPECT_EQ(
        run_pkider({"key", "show", "--json"}, {.input = key}).out,
        "[\n"
        R"({"file":"standard input","algorithm":{"name":"RSA","oid":"1.2.840.113549.1.1.1"},"bits":8,"exponent":"3","modulus":"C3"})"
        "\n]\n");
}

TEST(KeyShow, ShowsALongExponentInHex) {
    const char* const key = "3024300D06092A864886F70D010101050003130030100202 00C3 020A 00FF00000000000000 01";
    EXPECT_THAT(run_pkider({"key", "show"}, {.input = key}).out, HasSubstr("exponent 0xFF0000000000000001\n"));
}

TEST(KeyShow, NamesTheParameterSetsOfAGostKey) {
    const char* const three = "302B301F06062A8503020213301506072A85030202230106072A850302021E01"
                              "      0601 2A 03 08 00 04 05 AABBCCDDEE";
    const run_result_t result = run_pkider({"key", "show"}, {.input = three});
    EXPECT_EQ(result.exit_code, 0) << result;
    EXPECT_EQ(result.out, "standard input: GOST R 34.10-2001, 20 bits\n"
                          "  algorithm   GOST R 34.10-2001 (1.2.643.2.2.19)\n"
                          "  parameters  id-GostR3410-2001-CryptoPro-A-ParamSet (1.2.643.2.2.35.1)\n"
                          "  digest set  id-GostR3411-94-CryptoProParamSet (1.2.643.2.2.30.1)\n"
                          "  cipher set  1.2\n"
                          "  key, 5 bytes\n"
                          "    AABBCCDDEE\n");
}

TEST(KeyShow, ShowsAGostKeyThatNamesNoDigest) {
    // RFC 9215 4.2: with the curves of 2012 the digest parameter set is left out.
    const char* const key = "3023 3017 06082A85030701010101 300B 06092A8503070102010101 0308 00 0405 AABBCCDDEE";
    EXPECT_EQ(
        run_pkider({"key", "show", "--json"}, {.input = key}).out,
        "[\n"
        R"({"file":"standard input","algorithm":{"name":"GOST R 34.10-2012 256","oid":"1.2.643.7.1.1.1.1"},"bits":20,)"
        R"("parameter_sets":{"public_key":{"name":"id-tc26-gost-3410-2012-256-paramSetA","oid":"1.2.643.7.1.2.1.1.1"},)"
        R"("digest":null,"encryption":null},"key":"AABBCCDDEE"})"
        "\n]\n");
}

TEST(KeyShow, ShowsAnEllipticCurveByName) {
    const char* const key = "3018301306072A8648CE3D020106082A8648CE3D030107 0301 00";
    EXPECT_EQ(run_pkider({"key", "show"}, {.input = key}).out,
              "standard input: ecPublicKey, secp256r1 (1.2.840.10045.3.1.7)\n"
              "  algorithm   ecPublicKey (1.2.840.10045.2.1)\n"
              "  key, 0 bytes\n");
}

TEST(KeyShow, ReadsNothingOutOfAnEmptyBitString) {
    const run_result_t rsa = run_pkider({"key", "show"}, {.input = "3011300D06092A864886F70D01010105000300"});
    EXPECT_EQ(rsa.exit_code, 0) << rsa;
    EXPECT_THAT(rsa.out, HasSubstr("key, 0 bytes\n"));
    const run_result_t gost =
        run_pkider({"key", "show"}, {.input = "301E301A06062A8503020213301006072A85030202230106052A850302020300"});
    EXPECT_EQ(gost.exit_code, 0) << gost;
    EXPECT_THAT(gost.out, HasSubstr("key, 0 bytes\n"));
}

TEST(KeyShow, RefusesWhatHasNoPublicKey) {
    const run_result_t result = run_pkider({"key", "show"}, {.input = "0603550403"});
    EXPECT_EQ(result.exit_code, 2) << result;
    EXPECT_EQ(result.err, "pkider: standard input: no public key in it: object identifier\n");
    EXPECT_EQ(run_pkider({"key"}).exit_code, 64);
    EXPECT_EQ(run_pkider({"key", "show", "/nonexistent/file"}).exit_code, 74);
}

} // namespace
} // namespace pkider_test
