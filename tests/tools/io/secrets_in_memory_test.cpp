// While the program works with a password: no core dump, no debugger, and the password in locked memory.
#include "tests/tools/keys.h"
#include "tools/pkider/base/secret.h"
#include "tools/pkider/io/core_dumps.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace pkider_test {
namespace {

using testing::HasSubstr;
using tool::secret_t;

std::string read_text(const std::string& path) {
    std::ifstream file(path);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

/// The number after `name` in a text of lines "name:  number kB".
std::size_t number_after(const std::string& text, const std::string& name) {
    const std::size_t at = text.find(name);
    return at == std::string::npos ? 0 : std::stoul(text.substr(at + name.size()));
}

std::size_t locked_here() {
    return number_after(read_text("/proc/self/status"), "VmLck:");
}

/// Sanitizers lock nothing, and a container may forbid it.
bool can_lock() {
    static std::array<char, 1> byte;
    const std::size_t before = locked_here();
    mlock(byte.data(), byte.size());
    const bool locks = locked_here() > before;
    munlock(byte.data(), byte.size());
    return locks;
}

/// `p12 create` in a child, with many iterations, where core dumps are allowed.
class SecretsInMemory : public KeysTest {
  protected:
    void start() {
        child = fork();
        ASSERT_GE(child, 0);
        if (child != 0) return;
        const rlimit unlimited = {RLIM_INFINITY, RLIM_INFINITY};
        setrlimit(RLIMIT_CORE, &unlimited);
        if (chdir(folder.path().c_str()) != 0) _exit(126);
        setenv("PKIDER_PASSWORD", "secret", 1);
        const std::string cert = fixture("first_cert.der");
        execl(PKIDER_PROGRAM, "pkider", "p12", "create", "-o", "out.p12", "--cert", cert.c_str(), "--iterations",
              "123456789", "--max-iterations", "999999999", nullptr);
        _exit(127);
    }

    std::string of_child(const std::string& name) const { return "/proc/" + std::to_string(child) + "/" + name; }

    /// Until it derives a key: libgcrypt is set up by then, and the password was read.
    void wait_for_derivation() const {
        for (int turn = 0; turn < 2000; ++turn) {
            std::istringstream stat(read_text(of_child("stat")));
            const std::vector<std::string> fields{std::istream_iterator<std::string>(stat), {}};
            constexpr std::size_t user_time = 13, enough = 20; // clock ticks, more than all the rest takes
            if (fields.size() > user_time && std::stoul(fields[user_time]) >= enough) return;
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        FAIL() << "the program does not work";
    }

    int end_with(int signal) {
        kill(child, signal);
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        child = -1;
        return status;
    }

    void TearDown() override {
        if (child > 0) end_with(SIGKILL);
    }

    pid_t child = -1;
};

TEST_F(SecretsInMemory, AreLockedAndNotDumped) {
    start();
    wait_for_derivation();
    if (can_lock()) {
        EXPECT_GT(number_after(read_text(of_child("status")), "VmLck:"), 0U);
    }
    std::istringstream limits(read_text(of_child("limits")));
    std::string limit;
    while (std::getline(limits, limit) && !limit.starts_with("Max core file size")) {
    }
    EXPECT_THAT(limit, testing::MatchesRegex("Max core file size +0 +0 +bytes *"));

    const int status = end_with(SIGQUIT);
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_FALSE(WCOREDUMP(status));
    EXPECT_EQ(num_files(), 0U);
}

TEST(CoreDumps, AreForbidden) {
    const auto forbid = [] {
        tool::forbid_core_dumps();
        rlimit limit = {};
        getrlimit(RLIMIT_CORE, &limit);
        _exit(prctl(PR_GET_DUMPABLE) == 0 && limit.rlim_cur == 0 && limit.rlim_max == 0 ? 0 : 1);
    };
    EXPECT_EXIT(forbid(), testing::ExitedWithCode(0), "");
}

// ---- The memory --------------------------------------------------------------------------------------------------

TEST(SecretMemory, IsLocked) {
    const secret_t secret(std::string_view("secret"));
    if (!can_lock()) GTEST_SKIP() << "no memory can be locked here";
    EXPECT_GT(locked_here(), 0U);
}

TEST(SecretMemory, IsWipedWhenItIsGivenBack) {
    if (!can_lock()) GTEST_SKIP() << "memory of the heap cannot be looked at when it is given back";
    constexpr std::size_t size = 500;
    void* const memory = tool::allocate_secret(size);
    std::fill_n(static_cast<uint8_t*>(memory), size, 's');
    tool::release_secret(memory, size);
    const auto* const place = static_cast<const volatile uint8_t*>(memory); // the pool keeps its memory
    EXPECT_TRUE(std::all_of(place, place + size, [](uint8_t byte) { return byte == 0; }));
}

TEST(SecretMemory, HasRoomForMoreThanCanBeLocked) {
    std::vector<secret_t> secrets;
    secrets.emplace_back(std::string_view("\0", 1)); // the first one makes the pool
    const std::size_t locked = locked_here();
    for (std::size_t size = 1; size < 4'000'000; size = size * 3 + 1) {
        for (int i = 0; i < 20; ++i) secrets.emplace_back(std::string_view(std::string(size, static_cast<char>(i))));
    }
    for (std::size_t index = 0; index < secrets.size(); ++index) {
        const secret_t& secret = secrets[index];
        const auto expected = static_cast<uint8_t>(index == 0 ? 0 : (index - 1) % 20);
        EXPECT_TRUE(std::ranges::all_of(secret.view(), [&](uint8_t byte) { return byte == expected; }));
    }
    EXPECT_EQ(locked_here(), locked);
}

TEST(SecretMemory, KeepsWhatItHasWhenItGrowsAndShrinks) {
    secret_t secret(std::string_view("secret"));
    for (const std::size_t size : {7u, 1000u, 300'000u, 20u}) {
        secret.resize(size);
        EXPECT_EQ(secret.text().substr(0, 6), "secret");
        EXPECT_TRUE(std::ranges::all_of(secret.view().subspan(6), [](uint8_t byte) { return byte == 0; }));
    }
    secret.resize(3);
    secret.resize(6);
    EXPECT_EQ(secret.text(), std::string_view("sec\0\0\0", 6));
}

// Where nothing may be locked, the program works as it does elsewhere.
TEST_F(SecretsInMemory, NeedNoPermissionToBeLocked) {
    const std::string create = "$PKIDER p12 create -o out.p12 --iterations 1 --cert " + fixture("first_cert.der");
    const std::string limits = getuid() == 0 ? "setpriv --bounding-set -ipc_lock --inh-caps -ipc_lock " : "";
    const run_result_t result = run_shell("ulimit -l 0; PKIDER_PASSWORD=secret " + limits + create +
                                          " && PKIDER_PASSWORD=secret " + limits + "$PKIDER p12 verify out.p12");
    EXPECT_EQ(result.exit_code, 0) << result;
    EXPECT_EQ(result.err, "");
    EXPECT_THAT(result.out, HasSubstr("the MAC is right"));
}

} // namespace
} // namespace pkider_test
