#include "tests/tools/keys.h"

namespace pkider_test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class Password : public KeysTest {
  protected:
    void SetUp() override { ASSERT_EQ(run({"p12", "verify", p12}).exit_code, 0); }

    run_result_t verify(const std::string& options) { return run_shell("$PKIDER p12 verify " + p12 + " " + options); }

    std::string p12 = fixture("three_certs.p12");
};

TEST_F(Password, ComesFromTheFirstLineOfAFile) {
    for (const char* const text : {"secret", "secret\n", "secret\r\n", "secret\nother\n"}) {
        folder.write(u8"password", text);
        EXPECT_EQ(verify("--password-file password").exit_code, 0) << text;
    }
    for (const char* const text : {"", "\nsecret", "secret ", " secret", "secret\r\r\n", "Secret"}) {
        folder.write(u8"password", text);
        EXPECT_EQ(verify("--password-file password").exit_code, 3) << text;
    }
}

TEST_F(Password, MayBeEmpty) {
    folder.write(u8"password", "\n");
    EXPECT_EQ(run_shell("$PKIDER p12 verify --password-file password " + fixture("empty_password.p12")).exit_code, 0);
}

TEST_F(Password, ComesFromADescriptorAndLeavesTheRest) {
    EXPECT_EQ(verify("--password-fd 7 7<<END\nsecret\nEND\n").exit_code, 0);
    const run_result_t both = run_shell("printf 'wrong\\nsecret\\n' | { $PKIDER p12 verify --password-fd 0 " + p12 +
                                        "; $PKIDER p12 verify --password-fd 0 " + p12 + "; }");
    EXPECT_EQ(both.exit_code, 0) << both;
    EXPECT_THAT(both.out, HasSubstr("the MAC is right"));
    EXPECT_THAT(both.err, HasSubstr("wrong password or MAC"));
}

TEST_F(Password, IsTakenFromTheFileBeforeTheEnvironment) {
    folder.write(u8"password", "secret");
    EXPECT_EQ(run_shell("PKIDER_PASSWORD=wrong $PKIDER p12 verify --password-file password " + p12).exit_code, 0);
    EXPECT_EQ(run_shell("PKIDER_PASSWORD=secret $PKIDER p12 verify " + p12).exit_code, 0);
    EXPECT_EQ(run_shell("PKIDER_PASSWORD=wrong $PKIDER p12 verify " + p12).exit_code, 3);
}

TEST_F(Password, IsNeverAnArgument) {
    EXPECT_EQ(run({"p12", "verify", "--password", "secret", p12}).exit_code, 64);
    EXPECT_EQ(verify("--password-file a --password-fd 3").exit_code, 64);
    EXPECT_EQ(verify("--password-fd -2").exit_code, 64);
}

TEST_F(Password, IsMissedWhereThereIsNoTerminal) {
    const run_result_t result = verify("");
    EXPECT_EQ(result.exit_code, 64);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, HasSubstr("no password"));
    EXPECT_THAT(result.err, HasSubstr("--password-file"));
}

TEST_F(Password, TellsWhyItCannotBeRead) {
    const run_result_t missing = verify("--password-file none");
    EXPECT_EQ(missing.exit_code, 74);
    EXPECT_EQ(missing.err, "pkider: none: No such file or directory\n");
    EXPECT_EQ(verify("--password-file .").exit_code, 74);
    EXPECT_EQ(verify("--password-fd 99").exit_code, 74);
}

TEST_F(Password, HasAtMost4096BytesWithoutTheEndOfItsLine) {
    for (const std::string end : {"", "\n", "\r\n", "\nother"}) {
        folder.write(u8"password", std::string(4096, 'x') + end);
        EXPECT_EQ(verify("--password-file password").exit_code, 3) << end;
        EXPECT_EQ(verify("--password-fd 7 7<password").exit_code, 3) << end;
        folder.write(u8"password", std::string(4097, 'x') + end);
        const run_result_t result = verify("--password-file password");
        EXPECT_EQ(result.exit_code, 2) << end;
        EXPECT_EQ(result.err, "pkider: " + p12 + ": password: password of more than 4096 bytes\n");
        EXPECT_EQ(verify("--password-fd 7 7<password").exit_code, 2) << end;
    }
    folder.write(u8"password", std::string(4096, 'x') + "\rx");
    EXPECT_EQ(verify("--password-file password").exit_code, 2);
}

TEST_F(Password, HasTheSameLimitInTheEnvironment) {
    EXPECT_EQ(run({"p12", "verify", p12}, std::string(4096, 'x')).exit_code, 3);
    const run_result_t result = run({"p12", "verify", p12}, std::string(4097, 'x'));
    EXPECT_EQ(result.exit_code, 2);
    EXPECT_EQ(result.err, "pkider: " + p12 + ": PKIDER_PASSWORD: password of more than 4096 bytes\n");
}

// One line, and nothing about which part of it was wrong.
TEST_F(Password, IsSaidToBeWrongAndNothingElse) {
    for (const std::string command : {"verify", "list", "extract"}) {
        const run_result_t result = run({"p12", command, p12}, "wrong");
        EXPECT_EQ(result.exit_code, 3) << command;
        EXPECT_EQ(result.err, "pkider: " + p12 + ": wrong password or MAC\n");
        EXPECT_EQ(result.out, "") << command;
    }
    const std::string key = fixture("set_A.p8e");
    const run_result_t result = run({"key", "decrypt", "--reveal", key}, "wrong");
    EXPECT_EQ(result.exit_code, 3);
    EXPECT_EQ(result.err, "pkider: " + key + ": wrong password\n");
    EXPECT_EQ(result.out, "");
}

} // namespace
} // namespace pkider_test
