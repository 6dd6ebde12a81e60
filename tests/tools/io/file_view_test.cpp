// A file that is cut short while it is looked at: nothing crashes, what was printed before is kept, and the reason is
// reported.
#include "tools/pkider/io/file_view.h"

#include "tests/tools/keys.h"
#include "tools/pkider/base/failure.h"
#include "tools/pkider/io/output.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>

namespace pkider_test {
namespace {

using tool::check_file_views;
using tool::file_view_t;
using tool::view_check_t;

constexpr std::size_t small_size = tool::largest_read_file;
constexpr std::size_t large_size = 4 * tool::largest_read_file;

class FileView : public KeysTest {
  protected:
    std::string make(std::size_t size) const {
        folder.write(u8"file", std::string(size, 'x'));
        return path("file");
    }

    void cut_to(std::size_t size) const { std::filesystem::resize_file(path("file"), size); }

    void expect_trouble(view_check_t check) const {
        try {
            check_file_views(check);
            FAIL() << "the file was not found to be shorter";
        } catch (const tool::file_trouble_t& trouble) {
            EXPECT_THAT(trouble.what(), testing::StartsWith(path("file") + ": became shorter while it was read"));
        }
    }
};

TEST_F(FileView, HasAllBytes) {
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, small_size, small_size + 1, large_size}) {
        const file_view_t view(make(size));
        ASSERT_EQ(view.bytes().size(), size);
        EXPECT_TRUE(std::ranges::all_of(view.bytes(), [](uint8_t byte) { return byte == 'x'; }));
        check_file_views(view_check_t::thorough);
    }
}

TEST_F(FileView, OfASmallFileDoesNotChangeWithIt) {
    const file_view_t view(make(small_size));
    cut_to(0);
    EXPECT_TRUE(std::ranges::all_of(view.bytes(), [](uint8_t byte) { return byte == 'x'; }));
    check_file_views(view_check_t::thorough);
}

TEST_F(FileView, OfALargeFileHasZerosAfterItsNewEndAndIsReported) {
    {
        const file_view_t view(make(large_size));
        cut_to(10);
        EXPECT_EQ(view.bytes()[0], 'x');
        check_file_views(view_check_t::quick); // no page was missing yet
        EXPECT_EQ(std::ranges::count(view.bytes().subspan(10), 0), static_cast<std::ptrdiff_t>(large_size - 10));
        expect_trouble(view_check_t::quick);
        check_file_views(view_check_t::thorough); // once
    }
    check_file_views(view_check_t::thorough);
}

TEST_F(FileView, IsReportedAfterItsEnd) {
    std::optional<file_view_t> view(make(large_size));
    cut_to(10);
    view.reset();
    expect_trouble(view_check_t::quick);
    check_file_views(view_check_t::thorough);
}

TEST_F(FileView, IsReportedWhenNoPageIsMissing) {
    const file_view_t view(make(large_size));
    cut_to(large_size - 10);
    EXPECT_EQ(view.bytes().back(), 0);
    check_file_views(view_check_t::quick);
    EXPECT_THROW(tool::flush_output(), tool::file_trouble_t);
}

TEST_F(FileView, LeavesOtherViewsAsTheyAre) {
    folder.write(u8"other", std::string(large_size, 'y'));
    const file_view_t first(path("other"));
    const file_view_t view(make(large_size));
    const file_view_t last(path("other"));
    cut_to(0);
    EXPECT_EQ(view.bytes()[large_size - 1], 0);
    EXPECT_EQ(view.bytes()[0], 0);
    EXPECT_EQ(first.bytes()[large_size - 1], 'y');
    EXPECT_EQ(last.bytes()[0], 'y');
    expect_trouble(view_check_t::thorough);
}

/// By the signal, or by the handler of a sanitizer, which was there first, reports the signal and exits with 1.
bool is_ended_by_sigbus(int status) {
    return (WIFSIGNALED(status) && WTERMSIG(status) == SIGBUS) || (WIFEXITED(status) && WEXITSTATUS(status) == 1);
}

TEST_F(FileView, LeavesOtherFaultsOfThatKindToEndTheProgram) {
    const file_view_t view(make(large_size));
    EXPECT_EXIT(raise(SIGBUS), is_ended_by_sigbus, "");
}

// Its reader waits until the file is shorter, and the program until its reader takes what it printed. The new end is
// that of a page: what follows it in the last page is zeros without a signal, which only the check at the end finds.
class CutShort : public KeysTest {
  protected:
    run_result_t run_cut(const std::string& command) const {
        return run_shell("( " + command + "; echo $? > code ) 2> errors | { head -c 1; truncate -s 131072 big; cat; }");
    }
};

TEST_F(CutShort, EndsWithTheReasonAndKeepsTheOutputBefore) {
    std::string nulls; // NULL elements of two bytes
    for (std::size_t i = 0; i < large_size; i += 2) nulls.append("\x05\0", 2);
    for (const std::string command : {"$PKIDER der big", "$PKIDER der --json big"}) {
        folder.write(u8"big", nulls);
        const run_result_t result = run_cut(command);
        EXPECT_EQ(contents("code"), "74\n") << command;
        EXPECT_THAT(contents("errors"), testing::StartsWith("pkider: big: became shorter while it was read"))
            << command;
        EXPECT_GT(std::ranges::count(result.out, '\n'), 40'000) << command;
        EXPECT_THAT(result.out.substr(0, 200), testing::HasSubstr("NULL"));
        EXPECT_THAT(result.out, testing::Not(testing::HasSubstr("UNIVERSAL 0"))); // how zeros would look
    }
}

} // namespace
} // namespace pkider_test
