#include "tests/tools/program.h"

#include "tests/support/hex.h"
#include "tests/support/temp_dir.h"

namespace pkider_test {
namespace {

using testing::HasSubstr;

struct what_row_t {
    const char* name;
    bytes_t bytes;
    const char* out; // after "standard input: "
};

class WhatCommand : public testing::TestWithParam<what_row_t> {};

TEST_P(WhatCommand, TellsWhatItIs) {
    const run_result_t result = run_pkider({"what", "--in", "der"}, {.input = GetParam().bytes.str()});
    EXPECT_EQ(result.exit_code, 0) << result;
    EXPECT_EQ(result.out, std::string("standard input: ") + GetParam().out);
    EXPECT_EQ(result.err, "");
}

const what_row_t kinds_rows[] = {
    {"Name", "30 0E 31 0C 30 0A 06 03 55 04 03 13 03 61 62 63"_hex,
     "name, DER\n"
     "  name         CN=abc\n"
     "  look closer  pkider dn decode -\n"},
    {"AlgorithmIdentifier", "30 0D 06 09 2A 86 48 86 F7 0D 01 01 0B 05 00"_hex,
     "algorithm identifier, DER\n"
     "  algorithm    sha256RSA (1.2.840.113549.1.1.11)\n"
     "  signature    sha256RSA\n"
     "  look closer  pkider sig ike -\n"},
    {"AlgorithmIdentifierOfPss", "30 0D 06 09 2A 86 48 86 F7 0D 01 01 0A 30 00"_hex,
     "algorithm identifier, DER\n"
     "  algorithm    RSASSA-PSS (1.2.840.113549.1.1.10)\n"
     "  signature    sha1RSASSA-PSS\n"
     "  PSS          hash SHA1 (default), mask MGF1 with SHA1 (default), salt 20 bytes (default)\n"
     "  look closer  pkider sig ike -\n"},
    {"DigestInfo", "30 0F 30 09 06 05 2B 0E 03 02 1A 05 00 04 02 AB CD"_hex,
     "digest info, DER\n"
     "  hash         SHA1 (1.3.14.3.2.26)\n"
     "  digest       ABCD\n"
     "  look closer  pkider digestinfo read -\n"},
    {"SignatureValue", "30 16 02 09 00 81 00 00 00 00 00 00 01 02 09 01 42 00 00 00 00 00 00 01"_hex,
     "signature value (DSA, ECDSA), DER\n"
     "  r            64 bits\n"
     "  s            65 bits\n"
     "  look closer  pkider sig dsa -\n"},
    {"PublicKey", "30 1B 30 0D 06 09 2A 86 48 86 F7 0D 01 01 01 05 00 03 0A 00 30 07 02 02 00 C3 02 01 03"_hex,
     "public key, DER\n"
     "  key          RSA, 8 bits, exponent 3\n"
     "  look closer  pkider key show -\n"},
    {"PrivateKey", "30 16 02 01 00 30 0D 06 09 2A 86 48 86 F7 0D 01 01 01 05 00 04 02 30 00"_hex,
     "private key (PKCS#8), DER\n"
     "  algorithm    RSA (1.2.840.113549.1.1.1)\n"
     "  private key  2 bytes, not encrypted\n"
     "  look closer  pkider key show -\n"},
    {"EncryptedPrivateKey",
     "30 2D 30 27 06 09 2A 86 48 86 F7 0D 01 05 0D 30 1A"
     "      30 0B 06 09 2A 86 48 86 F7 0D 01 05 0C"
     "      30 0B 06 09 60 86 48 01 65 03 04 01 2A"
     "   04 02 AB CD"_hex,
     "encrypted private key (PKCS#8), DER\n"
     "  encryption   PBES2 (1.2.840.113549.1.5.13)\n"
     "  derivation   PBKDF2 (1.2.840.113549.1.5.12)\n"
     "  cipher       aes256-CBC (2.16.840.1.101.3.4.1.42)\n"
     "  encrypted    2 bytes\n"
     "  look closer  pkider key show -\n"},
    {"Pkcs12WithoutMac", "30 14 02 01 03 30 0F 06 09 2A 86 48 86 F7 0D 01 07 01 A0 02 04 00"_hex,
     "PKCS#12 container without a MAC, DER\n"
     "  version      3\n"
     "  content      data (1.2.840.113549.1.7.1)\n"
     "  MAC          none\n"
     "  look closer  pkider der -\n"},
    {"Pkcs12",
     "30 33 02 01 03"
     "   30 0F 06 09 2A 86 48 86 F7 0D 01 07 01 A0 02 04 00"
     "   30 1D 30 0D 30 09 06 05 2B 0E 03 02 1A 05 00 04 00 04 08 01 02 03 04 05 06 07 08 02 02 08 00"_hex,
     "PKCS#12 container, DER\n"
     "  version      3\n"
     "  content      data (1.2.840.113549.1.7.1)\n"
     "  MAC          SHA1 (1.3.14.3.2.26), 2048 iterations\n"
     "  look closer  pkider p12 list -\n"},
    {"CmsContent", "30 0F 06 09 2A 86 48 86 F7 0D 01 07 02 A0 02 30 00"_hex,
     "CMS content (PKCS#7), DER\n"
     "  content      signedData (1.2.840.113549.1.7.2)\n"
     "  look closer  pkider der -\n"},
    {"EcPrivateKey", "30 10 02 01 01 04 01 05 A0 08 06 06 2B 81 04 00 22 01"_hex,
     "EC private key, DER\n"
     "  private key  1 byte, not encrypted\n"
     "  curve        1.3.132.0.34.1\n"
     "  look closer  pkider der -\n"},
    {"RsaPrivateKey", "30 1B 02 01 00 02 01 0F 02 01 03 02 01 03 02 01 05 02 01 03 02 01 03 02 01 01 02 01 02"_hex,
     "RSA private key (PKCS#1), DER\n"
     "  key          RSA, 4 bits, exponent 3, not encrypted\n"
     "  look closer  pkider der -\n"},
    {"ObjectIdentifier", "06 03 55 04 03"_hex,
     "object identifier, DER\n"
     "  OID          CN (2.5.4.3)\n"
     "  look closer  pkider der -\n"},
    {"PlainSequence", "30 05 02 01 05 05 00"_hex,
     "DER of no known kind, DER\n"
     "  outermost    SEQUENCE, 5 bytes of contents\n"
     "  look closer  pkider der -\n"},
    {"PlainInteger", "02 01 05"_hex,
     "DER of no known kind, DER\n"
     "  outermost    INTEGER, 1 byte of contents\n"
     "  look closer  pkider der -\n"},
    {"SmallNumbers", "30 06 02 01 05 02 01 07"_hex,
     "DER of no known kind, DER\n"
     "  outermost    SEQUENCE, 6 bytes of contents\n"
     "  look closer  pkider der -\n"},
    {"SomethingBehindIt", "06 03 55 04 03 05 00"_hex,
     "object identifier, DER\n"
     "  OID          CN (2.5.4.3)\n"
     "  after it     2 bytes more\n"
     "  look closer  pkider der -\n"},
};
INSTANTIATE_TEST_SUITE_P(Kinds, WhatCommand, testing::ValuesIn(kinds_rows),
                         [](const auto& row) { return row.param.name; });

TEST(WhatCommand, AnswersNoToWhatItDoesNotKnow) {
    const temp_dir_t dir;
    dir.write(u8"notes.txt", "Dear diary");
    const run_result_t result = run_pkider({"what", dir.utf8(u8"notes.txt")});
    EXPECT_EQ(result.exit_code, 1) << result;
    EXPECT_EQ(result.out, dir.utf8(u8"notes.txt") + ": none of the known kinds\n");
    EXPECT_EQ(run_pkider({"what"}, {.input = "\x89PNG\r\n"}).exit_code, 1);
}

TEST(WhatCommand, TellsWhereDerIsAtFault) {
    const run_result_t inside = run_pkider({"what"}, {.input = "30 05 02 01 05 05 01"});
    EXPECT_EQ(inside.exit_code, 2) << inside;
    EXPECT_EQ(inside.err,
              "pkider: standard input: offset 5: expected an element, found an element of 3 bytes where 2 are "
              "left in the SEQUENCE at offset 0\n");
    const run_result_t cut = run_pkider({"what"}, {.input = "30 82 01 00 02 01"});
    EXPECT_EQ(cut.exit_code, 2) << cut;
    EXPECT_THAT(cut.err,
                HasSubstr("offset 0: expected an element, found an element of 260 bytes where 6 are left in the data"));
}

TEST(WhatCommand, NamesTheFormAndTheLabel) {
    EXPECT_THAT(run_pkider({"what"}, {.input = "0603550403"}).out, HasSubstr("object identifier, hex\n"));
    EXPECT_THAT(run_pkider({"what"}, {.input = "BgNVBAM=\n"}).out, HasSubstr("object identifier, base64\n"));
    const std::string pem = "text before\n-----BEGIN OID-----\nBgNVBAM=\n-----END OID-----\n";
    EXPECT_THAT(run_pkider({"what"}, {.input = pem}).out, HasSubstr("standard input:2: object identifier, PEM OID\n"));
}

TEST(WhatCommand, CountsTheBlocksOfALongFile) {
    std::string pem;
    for (int i = 0; i < 9; ++i) pem += "-----BEGIN OID-----\nBgNVBAM=\n-----END OID-----\n";
    EXPECT_EQ(run_pkider({"what"}, {.input = pem}).out, "standard input: PEM, 9 blocks: 9 x object identifier\n"
                                                        "  look closer  pkider der -\n");
}

TEST(WhatCommand, CountsBlocksThatItDoesNotKnow) {
    std::string pem;
    for (int i = 0; i < 9; ++i) pem += "-----BEGIN A-----\nZm9v\n-----END A-----\n";
    const run_result_t result = run_pkider({"what"}, {.input = pem});
    EXPECT_EQ(result.exit_code, 1) << result;
    EXPECT_EQ(result.out, "standard input: PEM, 9 blocks: 9 x none of the known kinds\n");
}

TEST(WhatCommand, ShowsAFileBeforeTheFaultOfTheNext) {
    const run_result_t result = run_pkider_on_terminal({"what", "-", "/nonexistent/file"}, {.input = "0603550403"});
    EXPECT_THAT(result.out, testing::StartsWith("standard input: object identifier, hex\r\n"));
    EXPECT_THAT(result.out, testing::EndsWith("pkider: /nonexistent/file: No such file or directory\r\n"));
}

TEST(WhatCommand, QuotesAFileNameForTheShell) {
    const temp_dir_t dir;
    dir.write(u8"a b'c", "\x06\x03\x55\x04\x03");
    EXPECT_THAT(run_pkider({"what", "a b'c"}, {.directory = dir.path().string()}).out,
                HasSubstr("look closer  pkider der 'a b'\"'\"'c'\n"));
}

TEST(WhatCommand, NamesAFileThatLooksLikeAnOption) {
    const temp_dir_t dir;
    dir.write(u8"-x", "\x06\x03\x55\x04\x03");
    EXPECT_THAT(run_pkider({"what", "--", "-x"}, {.directory = dir.path().string()}).out,
                HasSubstr("look closer  pkider der ./-x\n"));
}

TEST(WhatCommand, TellsJson) {
    const run_result_t result = run_pkider({"what", "--json"}, {.input = "0603550403"});
    EXPECT_EQ(result.out,
              "[\n"
              R"~({"file":"standard input","form":"hex","kind":"object_identifier","facts":{"OID":"CN (2.5.4.3)"},)~"
              R"("look_closer":"pkider der -"})"
              "\n]\n");
    EXPECT_EQ(run_pkider({"what", "--json"}, {.input = "Dear diary"}).out,
              "[\n"
              R"({"file":"standard input","form":"DER","kind":"none","facts":{},"look_closer":null})"
              "\n]\n");
}

TEST(WhatCommand, NamesAnUnreadableFile) {
    const run_result_t result = run_pkider({"what", "/nonexistent/file"});
    EXPECT_EQ(result.exit_code, 74);
    EXPECT_EQ(result.err, "pkider: /nonexistent/file: No such file or directory\n");
}

} // namespace
} // namespace pkider_test
