// pkider cert: bundles of every form, and certificates that are none.
#include "tests/tools/program.h"

#include "tests/support/der_builder.h"
#include "tests/support/temp_dir.h"
#include "tools/pkider/formats/encodings.h"

#include <nlohmann/json.hpp>

namespace pkider_test {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

const bytes_t sha256_rsa = "30 0D 06 09 2A 86 48 86 F7 0D 01 01 0B 05 00"_hex;
const bytes_t one_time = "17 0D 32 36 31 31 32 31 30 39 33 33 35 39 5A"_hex;
const bytes_t later_time = "17 0D 33 36 31 31 32 31 30 39 33 33 35 39 5A"_hex;
// RSA with a modulus of 8 bits
const bytes_t rsa_key = "30 1C 30 0D 06 09 2A 86 48 86 F7 0D 01 01 01 05 00 03 0B 00 30 08 02 02 00 C3 02 02 01 01"_hex;

// C=<country>,CN=a
bytes_t name(const char* country) {
    const bytes_t value = to_bytes(country);
    return der(0x30, {der(0x31, {der(0x30, {"06 03 55 04 06"_hex, der(0x13, value)})}),
                      der(0x31, {der(0x30, {"06 03 55 04 03 13 01 61"_hex})})});
}

struct fields_t {
    bytes_t version = "A0 03 02 01 02"_hex;
    bytes_t serial = "02 02 00 C3"_hex;
    bytes_t issuer = name("DE");
    bytes_t validity = der(0x30, {one_time, later_time});
    bytes_t subject = name("RU");
    bytes_t key = rsa_key;
    bytes_t rest = {};
    bytes_t signature = "03 02 00 AA"_hex;
};

std::string certificate(const fields_t& fields = {}) {
    const bytes_t tbs = der(0x30, {fields.version, fields.serial, sha256_rsa, fields.issuer, fields.validity,
                                   fields.subject, fields.key, fields.rest});
    return der(0x30, {tbs, sha256_rsa, fields.signature}).str();
}

std::string pem(const std::string& label, const std::string& der) {
    return "-----BEGIN " + label + "-----\n" + tool::to_base64(der, 64) + "\n-----END " + label + "-----\n";
}

run_result_t cert(const std::string& input, std::vector<std::string> options = {}) {
    options.insert(options.begin(), "cert");
    return run_pkider(options, {.input = input});
}

std::vector<json> answers(const run_result_t& result) {
    return json::parse(result.out);
}

TEST(CertCommand, TellsWhatIsInACertificate) {
    const run_result_t result = cert(certificate());
    EXPECT_EQ(result.exit_code, 0) << result;
    EXPECT_EQ(result.out, "certificate 1 of standard input\n"
                          "  subject: C=RU,CN=a\n"
                          "  issuer: C=DE,CN=a\n"
                          "  serial: C3\n"
                          "  valid: 2026-11-21T09:33:59Z to 2036-11-21T09:33:59Z\n"
                          "  key: RSA, 8 bits, exponent 257\n"
                          "  signature: sha256RSA\n");
    EXPECT_EQ(result.err, "");
}

TEST(CertCommand, PrintsTheLastRdnFirstWhenAsked) {
    const run_result_t result = cert(certificate(), {"--reverse"});
    EXPECT_THAT(result.out, HasSubstr("  subject: CN=a,C=RU\n  issuer: CN=a,C=DE\n"));
    EXPECT_EQ(answers(cert(certificate(), {"--reverse", "--json"})).at(0)["subject"], "CN=a,C=RU");
}

TEST(CertCommand, TellsJson) {
    const std::vector<json> certificates =
        answers(cert(certificate() + certificate({.serial = "02 01 FF"_hex}), {"--json"}));
    ASSERT_EQ(certificates.size(), 2u);
    EXPECT_EQ(
        certificates[0],
        json(
            {{"file", "standard input"},
             {"index", 1},
             {"subject", "C=RU,CN=a"},
             {"issuer", "C=DE,CN=a"},
             {"version", 3},
             {"serial", "C3"},
             {"signature_algorithm",
              {{"name", "sha256RSA"}, {"oid", "1.2.840.113549.1.1.11"}, {"value", "0x00040001"}}},
             {"not_before", "2026-11-21T09:33:59Z"},
             {"not_after", "2036-11-21T09:33:59Z"},
             {"public_key",
              {{"algorithm", {{"name", "RSA"}, {"oid", "1.2.840.113549.1.1.1"}}}, {"bits", 8}, {"exponent", "257"}}}}));
    EXPECT_EQ(certificates[1]["index"], 2);
    EXPECT_EQ(certificates[1]["serial"], "-01");
}

struct form_row_t {
    const char* name;
    std::string input;
};

class CertCommandForm : public testing::TestWithParam<form_row_t> {};

TEST_P(CertCommandForm, IsRead) {
    const run_result_t result = cert(GetParam().input, {"--json"});
    EXPECT_EQ(result.exit_code, 0) << result;
    EXPECT_EQ(result.err, "");
    const std::vector<json> certificates = answers(result);
    ASSERT_EQ(certificates.size(), 2u);
    EXPECT_EQ(certificates[0]["subject"], "C=RU,CN=a");
    EXPECT_EQ(certificates[1]["subject"], "C=FR,CN=a");
}

const std::string first = certificate();
const std::string second = certificate({.subject = name("FR")});

std::string with_carriage_returns(const std::string& text) {
    std::string out;
    for (const char c : text) out += c == '\n' ? std::string("\r\n") : std::string(1, c);
    return out;
}

const form_row_t inputs_rows[] = {
    {"Der", first + second},
    {"Hex", tool::to_hex(first) + "\n" + tool::to_hex(second)},
    {"Base64", tool::to_base64(first + second, 64)},
    {"Base64BehindAByteOrderMark", "\xEF\xBB\xBF" + tool::to_base64(first + second)},
    {"Pem", pem("CERTIFICATE", first) + pem("CERTIFICATE", second)},
    {"PemBehindAByteOrderMark", "\xEF\xBB\xBF" + pem("CERTIFICATE", first) + pem("CERTIFICATE", second)},
    {"PemOfWindows", with_carriage_returns(pem("CERTIFICATE", first) + pem("CERTIFICATE", second))},
    {"PemWithoutALastLineEnd",
     pem("CERTIFICATE", first) + pem("CERTIFICATE", second).substr(0, pem("CERTIFICATE", second).size() - 1)},
    {"PemAmongOtherThings", "# of a server\n" + pem("EC PARAMETERS", "\x05") + pem("CERTIFICATE", first) +
                                pem("PRIVATE KEY", "junk") + "\n" + pem("CERTIFICATE", second)},
    {"PemOfOldLabels", pem("X509 CERTIFICATE", first) + pem("TRUSTED CERTIFICATE", second + "30")},
};
INSTANTIATE_TEST_SUITE_P(Inputs, CertCommandForm, testing::ValuesIn(inputs_rows), row_name);

TEST(CertCommand, NotesBytesBehindACertificateInPem) {
    const run_result_t result = cert(pem("CERTIFICATE", first + "ab"));
    EXPECT_EQ(result.exit_code, 0) << result;
    EXPECT_EQ(result.err, "pkider: note: standard input:1: 2 bytes after the certificate\n");
}

TEST(CertCommand, GoesOnBehindABrokenBlock) {
    const std::string broken = "-----BEGIN CERTIFICATE-----\nMII?\n-----END CERTIFICATE-----\n";
    const std::string cut = pem("CERTIFICATE", first.substr(0, first.size() - 1));
    const run_result_t result = cert(broken + cut + pem("CERTIFICATE", second), {"--json"});
    EXPECT_EQ(result.exit_code, 2) << result;
    EXPECT_THAT(result.err,
                StartsWith("pkider: standard input:1: the base64 digits are faulty\n"
                           "pkider: standard input:4: offset 0: expected a certificate (a SEQUENCE), found 30 "));
    const std::vector<json> certificates = answers(result);
    ASSERT_EQ(certificates.size(), 3u);
    EXPECT_EQ(
        certificates[0],
        json({{"file", "standard input"}, {"index", 1}, {"fault", {{"message", "the base64 digits are faulty"}}}}));
    EXPECT_EQ(certificates[1]["fault"]["offset"], 0);
    EXPECT_EQ(certificates[2]["index"], 3);
    EXPECT_EQ(certificates[2]["subject"], "C=FR,CN=a");
}

TEST(CertCommand, GoesOnWithTheOtherFiles) {
    const temp_dir_t dir;
    dir.write(u8"bundle", pem("CERTIFICATE", first) + pem("CERTIFICATE", second));
    dir.write(u8"broken", first.substr(0, 20));
    dir.write(u8"last", first);
    const run_result_t result =
        run_pkider({"cert", "bundle", "broken", "missing", "last"}, {.directory = dir.path().string()});
    EXPECT_EQ(result.exit_code, 74) << result;
    EXPECT_THAT(result.out, StartsWith("certificate 1 of bundle\n"));
    EXPECT_THAT(result.out, HasSubstr("certificate 2 of bundle\n"));
    EXPECT_THAT(result.out, HasSubstr("certificate 1 of last\n"));
    EXPECT_THAT(result.err, StartsWith("pkider: broken: offset 0: expected a certificate (a SEQUENCE), found 30 "));
    EXPECT_THAT(result.err, testing::EndsWith("\npkider: missing: No such file or directory\n"));
    EXPECT_EQ(run_pkider({"cert", "bundle", "broken", "last"}, {.directory = dir.path().string()}).exit_code, 2);
}

struct fault_row_t {
    const char* name;
    std::string input;
    const char* fault;
};

class CertCommandFault : public testing::TestWithParam<fault_row_t> {};

TEST_P(CertCommandFault, IsToldInOneLine) {
    const run_result_t result = cert(GetParam().input);
    EXPECT_EQ(result.exit_code, 2) << result;
    EXPECT_EQ(result.err, std::string("pkider: standard input: ") + GetParam().fault + "\n");
}

const fault_row_t cert_command_fault_inputs_rows[] = {
    {"Empty", "", "empty input"},
    {"BlankLine", "\n", "empty input"},
    {"ByteOrderMark", "\xEF\xBB\xBF", "empty input"},
    {"Text", "no certificate", "not PEM, DER, hex or base64"},
    {"Junk", "\xFF\xFE\xFD", "offset 0: expected a certificate (a SEQUENCE), found FF FE FD"},
    {"OtherBlocks", pem("PRIVATE KEY", "junk"), "no certificate in it"},
    {"OtherDer", "3003020105", "offset 2: expected tbsCertificate (a SEQUENCE), found 02 01 05"},
    {"Version", certificate({.version = "A0 03 02 01 03"_hex}), "offset 8: expected a version from 0 to 2"},
    {"NoSerial", certificate({.serial = {}}),
     "offset 11: expected the serial number (an INTEGER), found 30 0D 06 09 2A 86 ..."},
    {"NotAfter", certificate({.validity = der(0x30, one_time)}),
     "offset 73: expected notAfter (a UTCTime or GeneralizedTime), found the end"},
    {"Key", certificate({.key = "30 02 05 00"_hex}), "offset 115: expected a SubjectPublicKeyInfo"},
    {"NoSignature", certificate({.signature = {}}), "offset 161: expected the signature (a BIT STRING), found the end"},
};
INSTANTIATE_TEST_SUITE_P(Inputs, CertCommandFault, testing::ValuesIn(cert_command_fault_inputs_rows), row_name);

TEST(CertCommand, TakesEveryVersion) {
    EXPECT_EQ(answers(cert(certificate({.version = {}}), {"--json"})).at(0)["version"], 1);
    EXPECT_EQ(answers(cert(certificate({.version = "A0 03 02 01 01"_hex}), {"--json"})).at(0)["version"], 2);
}

TEST(CertCommand, StepsOverUniqueIdentifiers) {
    EXPECT_EQ(cert(certificate({.rest = "81 02 00 AA 82 02 00 BB A3 02 30 00"_hex})).exit_code, 0);
    EXPECT_EQ(cert(certificate({.rest = "A3 02 05 00"_hex})).exit_code, 2);
}

TEST(CertCommand, CountsNamesThatComeBackAsTheyWere) {
    const run_result_t equal = cert(first + second, {"--round-trip"});
    EXPECT_EQ(equal.exit_code, 0) << equal;
    EXPECT_THAT(equal.out, testing::EndsWith("names: 4, equal: 4, differing: 0\n"));

    // 2.999 prints as 26.39, which is no OID.
    const bytes_t strange = der(0x30, {der(0x31, {der(0x30, {"06 02 88 37 13 01 61"_hex})})});
    const run_result_t differing = cert(certificate({.subject = strange}), {"--round-trip"});
    EXPECT_EQ(differing.exit_code, 1) << differing;
    EXPECT_THAT(differing.out, HasSubstr("  subject: 26.39=a\n    printed again: (cannot be read: "));
    EXPECT_THAT(differing.out, testing::EndsWith("names: 2, equal: 1, differing: 1\n"));
    const std::vector<json> certificates = answers(cert(first, {"--round-trip", "--json"}));
    EXPECT_EQ(certificates.at(0)["subject_again"], certificates.at(0)["subject"]);
}

TEST(CertCommand, ReadsTheFormThatItIsTold) {
    EXPECT_EQ(cert(first, {"--in", "der"}).exit_code, 0);
    EXPECT_EQ(cert(first, {"--in", "pem"}).err, "pkider: standard input: no PEM block in it\n");
    EXPECT_EQ(cert(tool::to_base64(first), {"--in", "hex"}).err, "pkider: standard input: not hex\n");
    EXPECT_EQ(cert(pem("CERTIFICATE", first), {"--in", "base64"}).err, "pkider: standard input: not base64\n");
}

} // namespace
} // namespace pkider_test
