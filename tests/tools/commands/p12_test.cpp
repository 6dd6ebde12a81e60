#include "tests/tools/keys.h"
#include "tools/pkider/formats/encodings.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace pkider_test {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class P12Commands : public KeysTest {
  protected:
    /// A key with its certificate, and two more, as "out.p12".
    void create(const std::vector<std::string>& more = {}) {
        const run_result_t result =
            run(std::vector<std::string>{"p12", "create", "-o", "out.p12"} + quick +
                std::vector<std::string>{"--key", key, "--name", "Мой ключ", "--id", "01 02", "--cert", cert, "--id",
                                         "0102", "--name", "certificate \"1\"", "--cert", cert} +
                more);
        ASSERT_EQ(result.exit_code, 0) << result;
        EXPECT_EQ(result.out + result.err, "");
    }

    json list(const std::string& file) {
        const run_result_t result = run({"p12", "list", "--json", file});
        EXPECT_EQ(result.exit_code, 0) << result;
        return json::parse(result.out).at(0);
    }

    std::string key = fixture("key.der"), cert = fixture("first_cert.der");
    std::string three = fixture("three_certs.p12");
};

// ---- list and verify ---------------------------------------------------------------------------------------------

TEST_F(P12Commands, ListShowsContentsAndItems) {
    const run_result_t result = run({"p12", "list", three});
    EXPECT_EQ(result.exit_code, 0) << result;
    const std::string id = json::parse(run({"p12", "list", "--json", three}).out)
                               .at(0)["contents"][0]["bags"][0]["local_key_id"]
                               .get<std::string>();
    EXPECT_EQ(id.size(), 40U);
    const std::string cipher = "id-Gost28147-89, id-Gost28147-89-CryptoPro-A-ParamSet, PBKDF2 with 2048 iterations\n";
    EXPECT_EQ(result.out, three +
                              ": MAC GOST 34.11-94, PBKDF2 with 2048 iterations\n"
                              "content 1, encrypted by " +
                              cipher +
                              "  1  certificate, protected, 309 bytes\n"
                              "       subject         CN=Certificate One\n"
                              "       friendly name   Имя\n"
                              "       local key id    " +
                              id +
                              "\n"
                              "  2  certificate, protected, 309 bytes\n"
                              "       subject         CN=Certificate Two\n"
                              "  3  certificate, protected, 313 bytes\n"
                              "       subject         CN=Certificate Three\n"
                              "content 2, plain\n"
                              "  4  private key, protected, 71 bytes\n"
                              "       key             GOST R 34.10-2001, 32 bytes\n"
                              "       friendly name   Имя\n"
                              "       local key id    " +
                              id +
                              "\n"
                              "       encrypted by    " +
                              cipher);
    EXPECT_EQ(result.err, "");
}

TEST_F(P12Commands, ListWorksOnTheOthersBehindAFaultyOne) {
    folder.write(u8"bad", "\x30\x03\x02\x01\x03");
    const run_result_t result = run({"p12", "list", "bad", three, "none"});
    EXPECT_EQ(result.exit_code, 74);
    EXPECT_THAT(result.out, HasSubstr("CN=Certificate Three"));
    EXPECT_THAT(result.err, HasSubstr("pkider: bad: offset 5: expected authSafe (a SEQUENCE), found the end\n"));
    EXPECT_THAT(result.err, HasSubstr("pkider: none: No such file or directory\n"));
}

TEST_F(P12Commands, ListReadsStandardInput) {
    const run_result_t result = run_shell("PKIDER_PASSWORD=secret $PKIDER p12 list < " + three);
    EXPECT_EQ(result.exit_code, 0) << result;
    EXPECT_THAT(result.out, HasSubstr("standard input: MAC"));
}

TEST_F(P12Commands, FilesOfOtherKindsAreRefusedBeforeAPasswordIsAskedFor) {
    for (const std::string command : {"list", "verify", "extract"}) {
        const run_result_t result = run_shell("$PKIDER p12 " + command + " " + cert);
        EXPECT_EQ(result.exit_code, 2) << result;
        EXPECT_THAT(result.err, HasSubstr("expected the version (an INTEGER)"));
    }
}

TEST_F(P12Commands, VerifyChecksTheMacAlone) {
    const run_result_t right = run({"p12", "verify", three});
    EXPECT_EQ(right.exit_code, 0);
    EXPECT_EQ(right.out, three + ": the MAC is right: GOST 34.11-94, PBKDF2 with 2048 iterations\n");

    std::string changed = file_contents(three);
    changed[100] = static_cast<char>(changed[100] ^ 1);
    folder.write(u8"changed", changed);
    const run_result_t wrong = run({"p12", "verify", "changed"});
    EXPECT_EQ(wrong.exit_code, 3);
    EXPECT_EQ(wrong.err, "pkider: changed: wrong password or MAC\n");
    EXPECT_EQ(wrong.out, "");
}

/// The file of `create`, its MacData with another INTEGER, of at most 7 octets, as its count.
std::string asking_for(std::string file, const std::string& count) {
    constexpr std::size_t old_size = 4;
    EXPECT_EQ(file.substr(file.size() - old_size), std::string("\x02\x02\x03\xE8", old_size));
    const std::size_t mac_data = file.size() - old_size - (2 + 8) - (2 + 46) - 2;
    for (const std::size_t length : {std::size_t{3}, mac_data + 1}) // of the PFX, and of MacData
        file[length] = static_cast<char>(file[length] + static_cast<int>(count.size() - old_size));
    return file.replace(file.size() - old_size, old_size, count);
}

TEST_F(P12Commands, AHostileIterationCountIsRefusedUnlessAllowed) {
    create();
    const run_result_t refused = run({"p12", "list", "--max-iterations", "999", "out.p12"});
    EXPECT_EQ(refused.exit_code, 2);
    EXPECT_EQ(refused.err, "pkider: out.p12: the MAC asks for 1000 iterations of key derivation; the limit is 999 for "
                           "all keys of a file (--max-iterations)\n");

    const run_result_t half = run({"p12", "list", "--max-iterations", "1999", "out.p12"});
    EXPECT_EQ(half.exit_code, 0) << "the MAC is right; the content is skipped";
    EXPECT_THAT(half.out, HasSubstr("content 1, encrypted, skipped: 1000 iterations, more than allowed"));

    EXPECT_EQ(run({"p12", "list", "--max-iterations", "2000", "out.p12"}).exit_code, 0);

    // The same file, its MacData asking for 4294967295 iterations: no time is spent on it.
    folder.write(u8"hostile", asking_for(contents("out.p12"), std::string("\x02\x05\x00\xFF\xFF\xFF\xFF", 7)));
    const run_result_t result = run({"p12", "verify", "hostile"});
    EXPECT_EQ(result.exit_code, 2) << result;
    EXPECT_THAT(result.err, HasSubstr("4294967295 iterations of key derivation; the limit is 3000000"));
}

// ---- create ------------------------------------------------------------------------------------------------------

TEST_F(P12Commands, CreateKeepsKeysCertificatesNamesAndIds) {
    create();
    const json content = list("out.p12")["contents"];
    ASSERT_EQ(content.size(), 1U);
    const json& bags = content[0]["bags"];
    ASSERT_EQ(bags.size(), 3U);
    EXPECT_EQ(bags[0]["kind"], "private key");
    EXPECT_EQ(bags[0]["friendly_name"], "Мой ключ");
    EXPECT_EQ(bags[0]["local_key_id"], "0102");
    EXPECT_EQ(bags[1]["subject"], "CN=Certificate One");
    EXPECT_EQ(bags[1]["friendly_name"], "certificate \"1\"");
    EXPECT_EQ(bags[1]["local_key_id"], "0102");
    EXPECT_TRUE(bags[2]["friendly_name"].is_null());
    for (const json& bag : bags) EXPECT_TRUE(bag["protected"].get<bool>());
    EXPECT_EQ(mode("out.p12"), 0600U);
    EXPECT_EQ(num_files(), 1U);

    for (const auto& [item, file] : {std::pair("1", key), std::pair("2", cert)}) {
        ASSERT_EQ(
            run({"p12", "extract", "out.p12", "--item", item, "--form", "der", "-o", "item", "--force"}).exit_code, 0);
        EXPECT_EQ(contents("item"), file_contents(file));
    }
}

TEST_F(P12Commands, CreateCanLeaveCertificatesPlain) {
    create({"--plain-certs"});
    const json content = list("out.p12")["contents"];
    ASSERT_EQ(content.size(), 2U);
    EXPECT_FALSE(content[0]["encrypted"].get<bool>());
    EXPECT_EQ(content[0]["bags"].size(), 2U);
    EXPECT_FALSE(content[0]["bags"][0]["protected"].get<bool>());
    EXPECT_TRUE(content[1]["encrypted"].get<bool>());
    EXPECT_EQ(content[1]["bags"][0]["kind"], "private key");
}

TEST_F(P12Commands, CreateTakesEveryCertificateOfABundle) {
    ASSERT_EQ(run({"p12", "extract", three, "-o", "all.pem"}).exit_code, 0);
    ASSERT_EQ(run(std::vector<std::string>{"p12", "create", "-o", "out.p12", "--cert", "all.pem", "--name", "first",
                                           "--key", "all.pem"} +
                  quick)
                  .exit_code,
              0);
    const json bags = list("out.p12")["contents"][0]["bags"];
    ASSERT_EQ(bags.size(), 4U);
    EXPECT_EQ(bags[0]["friendly_name"], "first");
    EXPECT_TRUE(bags[1]["friendly_name"].is_null());
    EXPECT_EQ(bags[2]["subject"], "CN=Certificate Three");
    EXPECT_EQ(bags[3]["kind"], "private key");
}

TEST_F(P12Commands, CreateKeepsNamesOutsideTheBmp) {
    ASSERT_EQ(run(std::vector<std::string>{"p12", "create", "-o", "out.p12", "--cert", cert, "--name", "🔑 key"} + quick)
                  .exit_code,
              0);
    EXPECT_EQ(list("out.p12")["contents"][0]["bags"][0]["friendly_name"], "🔑 key");
}

TEST_F(P12Commands, CreateReplacesOnlyWhenItIsForced) {
    folder.write(u8"out.p12", "old");
    const std::vector<std::string> command =
        std::vector<std::string>{"p12", "create", "-o", "out.p12", "--cert", cert} + quick;
    const run_result_t refused = run(command);
    EXPECT_EQ(refused.exit_code, 74);
    EXPECT_EQ(refused.err, "pkider: out.p12: is there already; --force replaces it\n");
    EXPECT_EQ(contents("out.p12"), "old");
    EXPECT_EQ(run(command + std::vector<std::string>{"--force"}).exit_code, 0);
    EXPECT_EQ(list("out.p12")["contents"].size(), 1U);
    EXPECT_EQ(num_files(), 1U);
}

TEST_F(P12Commands, CreateWritesNothingWhenAPartIsMissing) {
    folder.write(u8"bad", "not a certificate");
    const std::vector<std::string> begin = std::vector<std::string>{"p12", "create", "-o", "out.p12"} + quick;
    const auto create_with = [&](const std::vector<std::string>& sources) { return run(begin + sources); };
    EXPECT_EQ(create_with({"--key", key, "--cert", "none", "--cert", "bad"}).exit_code, 74);
    EXPECT_EQ(create_with({"--cert", "bad", "--key", key}).exit_code, 2);
    EXPECT_EQ(create_with({"--cert", key}).exit_code, 2);
    EXPECT_EQ(create_with({"--key", cert}).exit_code, 2);
    EXPECT_EQ(create_with({"--key", fixture("set_A.p8e")}).exit_code, 2);
    EXPECT_EQ(create_with({}).exit_code, 64);
    EXPECT_EQ(create_with({"--name", "x", "--key", key}).exit_code, 64);
    EXPECT_EQ(create_with({"--key", key, "--name", "\xFF"}).exit_code, 64);
    EXPECT_EQ(create_with({"--key", key, "--id", "0"}).exit_code, 64);
    EXPECT_EQ(create_with({"--key", key, "--id", ""}).exit_code, 64);
    EXPECT_FALSE(exists("out.p12"));
}

TEST_F(P12Commands, CreateTellsWhatIsWrongWithASubject) {
    folder.write(u8"bad", "300F 300D 020101 3000 3000 3000 3002 0500");
    const run_result_t result =
        run(std::vector<std::string>{"p12", "create", "-o", "out.p12", "--cert", "bad"} + quick);
    EXPECT_EQ(result.exit_code, 2) << result;
    EXPECT_EQ(result.err,
              "pkider: bad: offset 15: expected a RelativeDistinguishedName (a SET), found 05 00 [code 12]\n");
}

// Of the digests that a MAC can have, this one takes longest.
TEST_F(P12Commands, ASmallFileCannotAskForMinutes) {
    create();
    const std::string count("\x02\x04\x00\x98\x96\x7F", 6);
    folder.write(u8"hostile.p12", asking_for(contents("out.p12"), count));
    const run_result_t result = run({"p12", "list", "hostile.p12"});
    EXPECT_EQ(result.exit_code, 2);
    EXPECT_EQ(result.err, "pkider: hostile.p12: the MAC asks for 9999999 iterations of key derivation; the limit is "
                          "3000000 for all keys of a file (--max-iterations)\n");
}

TEST_F(P12Commands, TheLimitIsThatOfAllContainersOfAFile) {
    create();
    const std::string block =
        "-----BEGIN PKCS12-----\n" + tool::to_base64(contents("out.p12"), 64) + "\n-----END PKCS12-----\n";
    folder.write(u8"two.pem", block + block);
    folder.write(u8"one.pem", block);
    const run_result_t two = run({"p12", "verify", "--max-iterations", "1999", "two.pem"});
    EXPECT_EQ(two.exit_code, 2);
    EXPECT_EQ(std::ranges::count(two.out, '\n'), 1);
    EXPECT_THAT(two.err,
                HasSubstr("the MAC asks for 1000 iterations of key derivation; of the 1999 that are allowed for "
                          "all keys of a file, 999 are left (--max-iterations)"));
    EXPECT_EQ(run({"p12", "verify", "--max-iterations", "2000", "two.pem"}).exit_code, 0);
    EXPECT_EQ(run({"p12", "verify", "--max-iterations", "1000", "one.pem", "one.pem", "out.p12"}).exit_code, 0);
}

TEST_F(P12Commands, CreateNamesTheNearestCountsThatCanBeStored) {
    const run_result_t result = run({"p12", "create", "-o", "out.p12", "--cert", cert, "--iterations", "65536"});
    EXPECT_EQ(result.exit_code, 64);
    EXPECT_THAT(result.err, HasSubstr("an iteration count of 65536 cannot be stored, take 65535 or 65793"));
    EXPECT_EQ(run({"p12", "create", "-o", "out.p12", "--cert", cert, "--iterations", "0"}).exit_code, 64);
    const run_result_t limited = run({"p12", "create", "-o", "out.p12", "--cert", cert, "--iterations", "1500001"});
    EXPECT_EQ(limited.exit_code, 64) << "nobody could open it without --max-iterations";
    EXPECT_THAT(limited.err, HasSubstr("3000002 iterations of key derivation; the limit is 3000000"));
    EXPECT_FALSE(exists("out.p12"));
}

TEST_F(P12Commands, CreateTakesSixHundredThousandIterationsOnItsOwn) {
    ASSERT_EQ(run({"p12", "create", "-o", "out.p12", "--cert", cert, "--plain-certs"}).exit_code, 0);
    EXPECT_EQ(list("out.p12")["mac"], "GOST 34.11-94, PBKDF2 with 600000 iterations");
}

/// A certificate as far as anybody looks, of exactly `size` bytes (more than 65,600).
std::string large_certificate(std::size_t size) {
    const auto header = [](char tag, std::size_t length) {
        return std::string{tag, '\x83', static_cast<char>(length >> 16), static_cast<char>(length >> 8),
                           static_cast<char>(length)};
    };
    const std::string fields("\x02\x01\x01"
                             "\x30\x00"
                             "\x30\x00"
                             "\x30\x00"
                             "\x30\x00",
                             11); // serial ... subject
    const std::size_t padding = size - 5 - 5 - fields.size() - 5;
    return header('\x30', size - 5) + header('\x30', size - 10) + fields + header('\x04', padding) +
           std::string(padding, 'x');
}

// A length of 65,536 to 65,791 is written without its zero byte: nobody could read the file, so there is none.
TEST_F(P12Commands, CreateDeliversNothingThatDoesNotReadBack) {
    folder.write(u8"fatal.der", large_certificate(65'600));
    const std::vector<std::string> begin = std::vector<std::string>{"p12", "create", "-o", "out.p12"} + quick;
    const run_result_t fatal = run(begin + std::vector<std::string>{"--cert", "fatal.der"});
    EXPECT_EQ(fatal.exit_code, 2) << fatal;
    EXPECT_THAT(fatal.err, HasSubstr("not written: it would not read back"));
    EXPECT_EQ(num_files(), 1U);

    folder.write(u8"good.der", large_certificate(70'000));
    EXPECT_EQ(run(begin + std::vector<std::string>{"--cert", "good.der"}).exit_code, 0);
    EXPECT_EQ(list("out.p12")["contents"][0]["bags"][0]["size"], 70'000);
}

// ---- extract -----------------------------------------------------------------------------------------------------

TEST_F(P12Commands, ExtractWritesPem) {
    ASSERT_EQ(run({"p12", "extract", three, "-o", "all.pem"}).exit_code, 0);
    EXPECT_EQ(mode("all.pem"), 0600U) << "there is a key in it";
    const std::string text = contents("all.pem");
    EXPECT_THAT(text, testing::StartsWith("-----BEGIN CERTIFICATE-----\n"));
    EXPECT_THAT(text, testing::EndsWith("-----END PRIVATE KEY-----\n"));

    ASSERT_EQ(run({"p12", "extract", three, "--keys", "-o", "key.pem"}).exit_code, 0);
    EXPECT_THAT(contents("key.pem"), Not(HasSubstr("CERTIFICATE")));
    ASSERT_EQ(run({"p12", "extract", three, "--certs", "-o", "certs.pem"}).exit_code, 0);
    EXPECT_EQ(
        mode("certs.pem") & 0077U, 0044U &
                                       ~[] {
                                           const mode_t mask = umask(0);
                                           umask(mask);
                                           return mask;
                                       }())
        << "everybody may read certificates, as far as the umask allows";
    EXPECT_EQ(text, contents("certs.pem") + contents("key.pem"));
}

TEST_F(P12Commands, ExtractWritesOneItemAsDer) {
    ASSERT_EQ(run({"p12", "extract", three, "--item", "1", "--form", "der", "-o", "cert.der"}).exit_code, 0);
    EXPECT_EQ(contents("cert.der"), file_contents(cert));
    const run_result_t several = run({"p12", "extract", three, "--certs", "--form", "der", "-o", "certs.der"});
    EXPECT_EQ(several.exit_code, 64);
    EXPECT_FALSE(exists("certs.der"));
    const run_result_t missing = run({"p12", "extract", three, "--item", "1", "--item", "9"});
    EXPECT_EQ(missing.exit_code, 2);
    EXPECT_THAT(missing.err, HasSubstr(": there is no item 9\n"));
    EXPECT_EQ(run({"p12", "extract", three, "--item", "-1"}).exit_code, 64);
    EXPECT_EQ(run({"p12", "extract", three, "--max-iterations", "-1"}).exit_code, 64);
}

TEST_F(P12Commands, ExtractPrintsPrivateKeysOnlyWhenToldTo) {
    const run_result_t certs = run({"p12", "extract", three, "--certs"});
    EXPECT_EQ(certs.exit_code, 0);
    EXPECT_THAT(certs.out, HasSubstr("BEGIN CERTIFICATE"));
    for (const std::vector<std::string>& which : {std::vector<std::string>{"--keys"}, {"--item", "4"}, {}}) {
        const run_result_t refused = run(std::vector<std::string>{"p12", "extract", three} + which);
        EXPECT_EQ(refused.exit_code, 64);
        EXPECT_EQ(refused.out, "");
        const run_result_t revealed = run(std::vector<std::string>{"p12", "extract", three, "--reveal"} + which);
        EXPECT_EQ(revealed.exit_code, 0);
        EXPECT_THAT(revealed.out, HasSubstr("BEGIN PRIVATE KEY"));
    }
}

TEST_F(P12Commands, ExtractReplacesOnlyWhenItIsForced) {
    folder.write(u8"all.pem", "old");
    EXPECT_EQ(run_shell("$PKIDER p12 extract " + three + " -o all.pem").exit_code, 74)
        << "before a password is asked for";
    EXPECT_EQ(contents("all.pem"), "old");
    EXPECT_EQ(run({"p12", "extract", three, "-o", "all.pem", "--force"}).exit_code, 0);
    EXPECT_NE(contents("all.pem"), "old");
    EXPECT_EQ(mode("all.pem"), 0600U);
}

TEST_F(P12Commands, ExtractSaysWhatItLeavesOut) {
    create();
    const run_result_t result = run({"p12", "extract", "out.p12", "--certs", "--max-iterations", "1000"});
    EXPECT_EQ(result.exit_code, 2);
    EXPECT_THAT(result.err, HasSubstr("note: content 1 skipped: 1000 iterations, more than allowed"));
    EXPECT_THAT(result.err, HasSubstr("nothing in it to extract"));
}

TEST_F(P12Commands, EveryCommandHasHelpWithExamples) {
    for (const std::string command : {"list", "verify", "extract", "create"}) {
        const run_result_t help = run({"p12", command, "--help"});
        EXPECT_EQ(help.exit_code, 0);
        EXPECT_THAT(help.out, HasSubstr("Examples:\n  pkider p12 " + command));
    }
}

} // namespace
} // namespace pkider_test
