#include "tools/pkider/io/file_output.h"

#include "tests/support/temp_dir.h"
#include "tools/pkider/base/failure.h"
#include "tools/pkider/io/temporary_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace {

using tool::file_mode_t;
using tool::output_file_t;
using tool::temporary_place_t;

/// All that is said of one place holds for both.
class FileOutput : public testing::TestWithParam<temporary_place_t> {
  protected:
    static void write_file(const output_file_t& file, std::string_view bytes, const tool::read_back_t& read_back) {
        tool::write_file(file, bytes, read_back, GetParam());
    }

    std::string path(const std::string& name) const { return dir.path() / name; }

    static std::string contents(const std::string& file) {
        std::ifstream stream(file, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
    }

    static mode_t mode(const std::string& file) {
        struct stat status = {};
        EXPECT_EQ(stat(file.c_str(), &status), 0);
        return status.st_mode & 07777;
    }

    /// Everything in the folder: no temporary file may remain.
    std::vector<std::string> names() const {
        std::vector<std::string> out;
        for (const auto& entry : std::filesystem::directory_iterator(dir.path()))
            out.push_back(entry.path().filename().string());
        std::ranges::sort(out);
        return out;
    }

    static void accept(std::span<const uint8_t>) {}

    pkider_test::temp_dir_t dir;
};

TEST_P(FileOutput, WritesTheWholeFile) {
    const std::string bytes = std::string(100'000, 'x') + '\0' + "end";
    write_file({path("new"), file_mode_t::ordinary, false}, bytes, accept);
    EXPECT_EQ(contents(path("new")), bytes);
    EXPECT_THAT(names(), testing::ElementsAre("new"));
}

TEST_P(FileOutput, WritesAnEmptyFile) {
    write_file({path("new"), file_mode_t::ordinary, false}, "", accept);
    EXPECT_EQ(contents(path("new")), "");
}

TEST_P(FileOutput, KeepsSecretsToTheOwner) {
    const mode_t old = umask(0);
    write_file({path("secret"), file_mode_t::secret, false}, "x", accept);
    write_file({path("ordinary"), file_mode_t::ordinary, false}, "x", accept);
    umask(027);
    write_file({path("group"), file_mode_t::ordinary, false}, "x", accept);
    umask(old);
    EXPECT_EQ(mode(path("secret")), 0600U);
    EXPECT_EQ(mode(path("ordinary")), 0666U);
    EXPECT_EQ(mode(path("group")), 0640U);
}

// The mode of the file that is replaced does not come back.
TEST_P(FileOutput, KeepsSecretsToTheOwnerWhenItReplaces) {
    dir.write(u8"key", "old");
    ASSERT_EQ(chmod(path("key").c_str(), 0644), 0);
    write_file({path("key"), file_mode_t::secret, true}, "new", accept);
    EXPECT_EQ(mode(path("key")), 0600U);
    EXPECT_EQ(contents(path("key")), "new");
}

TEST_P(FileOutput, IsSecretBeforeItHasItsName) {
    write_file({path("key"), file_mode_t::secret, false}, "x", [&](std::span<const uint8_t>) {
        if (GetParam() == temporary_place_t::nameless) {
            EXPECT_THAT(names(), testing::IsEmpty());
            return;
        }
        ASSERT_EQ(names().size(), 1U);
        const std::string folder = names()[0];
        EXPECT_THAT(folder, testing::MatchesRegex("\\.pkider-[0-9A-F]{16}"));
        EXPECT_EQ(mode(path(folder)), 0700U);
        EXPECT_EQ(mode(path(folder + "/file")), 0600U);
    });
}

TEST_P(FileOutput, ReplacesOnlyWhenItIsForced) {
    dir.write(u8"file", "old");
    EXPECT_THROW(write_file({path("file"), file_mode_t::ordinary, false}, "new", accept), tool::file_trouble_t);
    EXPECT_EQ(contents(path("file")), "old");
    write_file({path("file"), file_mode_t::ordinary, true}, "new", accept);
    EXPECT_EQ(contents(path("file")), "new");
    EXPECT_THAT(names(), testing::ElementsAre("file"));
}

// Somebody else makes the file while ours is checked.
TEST_P(FileOutput, DoesNotReplaceAFileThatCameMeanwhile) {
    EXPECT_THROW(write_file({path("file"), file_mode_t::ordinary, false}, "new",
                            [&](std::span<const uint8_t>) { dir.write(u8"file", "theirs"); }),
                 tool::file_trouble_t);
    EXPECT_EQ(contents(path("file")), "theirs");
    EXPECT_THAT(names(), testing::ElementsAre("file"));
}

TEST_P(FileOutput, ShowsWhatIsOnTheDiskAndKeepsTheOldFileWhenItIsRefused) {
    dir.write(u8"file", "old");
    const auto refuse = [](std::span<const uint8_t> on_disk) {
        EXPECT_EQ(std::string(on_disk.begin(), on_disk.end()), "new");
        throw tool::data_fault_t("does not read back");
    };
    EXPECT_THROW(write_file({path("file"), file_mode_t::ordinary, true}, "new", refuse), tool::data_fault_t);
    EXPECT_EQ(contents(path("file")), "old");
    EXPECT_THROW(write_file({path("other"), file_mode_t::ordinary, false}, "new", refuse), tool::data_fault_t);
    EXPECT_THAT(names(), testing::ElementsAre("file"));
}

TEST_P(FileOutput, DoesNotReplaceWhatIsNoFile) {
    dir.write(u8"folder/inside", "x");
    dir.write(u8"target", "old");
    std::filesystem::create_symlink("target", path("link"));
    for (const char* const name : {"folder", "link"}) {
        EXPECT_THROW(write_file({path(name), file_mode_t::ordinary, true}, "new", accept), tool::file_trouble_t);
        EXPECT_THROW(tool::check_output_file(path(name), true), tool::file_trouble_t);
    }
    EXPECT_THROW(tool::check_output_file("/dev/null", true), tool::file_trouble_t);
    EXPECT_TRUE(std::filesystem::is_symlink(path("link")));
    EXPECT_EQ(contents(path("target")), "old");
}

TEST_P(FileOutput, NamesTheFileAndTheReason) {
    try {
        write_file({path("none/file"), file_mode_t::ordinary, false}, "new", accept);
        FAIL() << "wrote into a folder that is not there";
    } catch (const tool::file_trouble_t& trouble) {
        EXPECT_EQ(trouble.what(), path("none/file") + ": No such file or directory");
    }
}

TEST_P(FileOutput, IsCheckedBeforeTheWork) {
    dir.write(u8"file", "old");
    tool::check_output_file(path("new"), false);
    tool::check_output_file(path("file"), true);
    EXPECT_THROW(tool::check_output_file(path("file"), false), tool::file_trouble_t);
    EXPECT_THAT(names(), testing::ElementsAre("file"));
}

TEST_P(FileOutput, WritesIntoTheFolderItRunsIn) {
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(dir.path());
    write_file({"plain", file_mode_t::ordinary, false}, "x", accept);
    std::filesystem::current_path(before);
    EXPECT_THAT(names(), testing::ElementsAre("plain"));
}

INSTANTIATE_TEST_SUITE_P(Places, FileOutput, testing::Values(temporary_place_t::nameless, temporary_place_t::folder),
                         [](const auto& row) {
                             return row.param == temporary_place_t::nameless ? "Nameless" : "Folder";
                         });

} // namespace
