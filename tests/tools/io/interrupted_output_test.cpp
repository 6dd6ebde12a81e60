// Whatever signal ends the program while it writes a file, at whatever moment: the folder has the old file or the whole
// new one, and nothing else with a private key in it.
#include "tests/support/temp_dir.h"
#include "tests/tools/keys.h"
#include "tools/pkider/io/file_output.h"
#include "tools/pkider/io/temporary_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/inotify.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace pkider_test {
namespace {

using tool::file_mode_t;
using tool::temporary_place_t;

const std::string old_bytes = "old";
const std::string new_bytes(50'000, 'n');

struct interrupt_row_t {
    const char* name;
    temporary_place_t place;
    bool replaces;
    int signal;
};

class InterruptedOutput : public testing::TestWithParam<interrupt_row_t> {
  protected:
    std::string target() const { return dir.path() / "key"; }

    /// Writes the file over and over, until it is ended.
    [[noreturn]] void write_for_ever() const {
        for (;;) {
            if (!GetParam().replaces) unlink(target().c_str());
            try {
                write_file(
                    {target(), file_mode_t::secret, GetParam().replaces}, new_bytes, [](std::span<const uint8_t>) {},
                    GetParam().place);
            } catch (const std::exception&) {
                _exit(1);
            }
        }
    }

    /// How the child ended.
    int interrupt_after(std::chrono::microseconds wait) const {
        const pid_t child = fork();
        if (child == 0) write_for_ever();
        std::this_thread::sleep_for(wait);
        kill(child, GetParam().signal);
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        return status;
    }

    void expect_nothing_but_the_file() const {
        for (const auto& entry : std::filesystem::directory_iterator(dir.path())) {
            EXPECT_EQ(entry.path(), target()) << "was left";
            std::ifstream stream(entry.path(), std::ios::binary);
            const std::string bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
            EXPECT_TRUE(bytes == new_bytes || bytes == old_bytes) << bytes.size() << " bytes";
        }
    }

    temp_dir_t dir;
};

TEST_P(InterruptedOutput, LeavesNothing) {
    dir.write(u8"key", old_bytes);
    std::mt19937 random(20'240'101);
    std::uniform_int_distribution<int> moment(0, 20'000);
    for (int turn = 0; turn < 40 && !HasFailure(); ++turn) {
        const int status = interrupt_after(std::chrono::microseconds(moment(random)));
        EXPECT_TRUE(WIFSIGNALED(status)) << status;
        EXPECT_EQ(WTERMSIG(status), GetParam().signal);
        expect_nothing_but_the_file();
    }
}

// SIGKILL cannot be held. It leaves nothing where the file has no name before it has the right one.
INSTANTIATE_TEST_SUITE_P(
    Signals, InterruptedOutput,
    testing::Values(interrupt_row_t{"NamelessNewInt", temporary_place_t::nameless, false, SIGINT},
                    interrupt_row_t{"NamelessNewTerm", temporary_place_t::nameless, false, SIGTERM},
                    interrupt_row_t{"NamelessNewKill", temporary_place_t::nameless, false, SIGKILL},
                    interrupt_row_t{"NamelessReplacedInt", temporary_place_t::nameless, true, SIGINT},
                    interrupt_row_t{"NamelessReplacedTerm", temporary_place_t::nameless, true, SIGTERM},
                    interrupt_row_t{"FolderNewInt", temporary_place_t::folder, false, SIGINT},
                    interrupt_row_t{"FolderNewHangUp", temporary_place_t::folder, false, SIGHUP},
                    interrupt_row_t{"FolderReplacedTerm", temporary_place_t::folder, true, SIGTERM},
                    interrupt_row_t{"FolderReplacedQuit", temporary_place_t::folder, true, SIGQUIT}),
    [](const auto& row) { return row.param.name; });

// The command itself, ended as soon as anything happens in the folder.
class InterruptedExtract : public KeysTest {
  protected:
    int run_until_something_happens(int signal) {
        const int watcher = inotify_init1(IN_CLOEXEC);
        inotify_add_watch(watcher, folder.path().c_str(), IN_CREATE | IN_MODIFY | IN_MOVED_TO | IN_ATTRIB);
        const pid_t child = fork();
        if (child == 0) {
            setenv("PKIDER_PASSWORD", "secret", 1);
            execl(PKIDER_PROGRAM, "pkider", "p12", "extract", p12.c_str(), "-o", target.c_str(), nullptr);
            _exit(127);
        }
        char events[4096];
        EXPECT_GT(read(watcher, events, sizeof events), 0);
        kill(child, signal);
        close(watcher);
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        return status;
    }

    void SetUp() override {
        ASSERT_EQ(run({"p12", "create", "--key", fixture("key.der"), "--cert", fixture("first_cert.der"), "-o", p12,
                       "--iterations", "1"})
                      .exit_code,
                  0);
    }

    temp_dir_t source;
    std::string p12 = source.path() / "key.p12";
    std::string target = folder.path() / "out.pem";
};

TEST_F(InterruptedExtract, LeavesTheWholeFileOrNothing) {
    for (const int signal : {SIGKILL, SIGTERM, SIGINT}) {
        for (int turn = 0; turn < 5; ++turn) {
            run_until_something_happens(signal);
            for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
                EXPECT_EQ(entry.path().string(), target) << "was left";
                std::ifstream stream(entry.path());
                const std::string text{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
                EXPECT_THAT(text, testing::AllOf(testing::HasSubstr("BEGIN PRIVATE KEY"),
                                                 testing::EndsWith("END CERTIFICATE-----\n")));
            }
            std::filesystem::remove(target);
        }
    }
}

} // namespace
} // namespace pkider_test
