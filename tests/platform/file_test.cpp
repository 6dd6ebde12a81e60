#include "platform/file.h"

#include "tests/support/alloc_failure.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

#include <filesystem>

#ifdef _WIN32
#include <io.h>
#include <windows.h>
#endif
#ifdef __linux__
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

using namespace pkider;
using namespace pkider_test;

namespace {

struct units_row_t {
    const char* name;
    const char* text;
    std::size_t units;
};

class Utf16Units : public testing::TestWithParam<units_row_t> {};

TEST_P(Utf16Units, CountsOneOrTwoACharacter) {
    EXPECT_EQ(utf16_units(GetParam().text), GetParam().units);
}

const units_row_t texts_rows[] = {
    {"Empty", "", 0},
    {"Ascii", "abc", 3},
    {"TwoBytes", "\xC2\x80\xDF\xBF", 2},
    {"ThreeBytes", "\xE0\xA0\x80\xEF\xBF\xBF", 2},
    {"AroundTheSurrogates", "\xED\x9F\xBF\xEE\x80\x80", 2},
    {"FourBytesAreAPair", "\xF0\x90\x80\x80", 2},
    {"LastFourBytesAreAPair", "\xF4\x8F\xBF\xBF", 2},
    {"MiddleFourBytesAreAPair", "\xF1\x80\x80\x80", 2},
};
INSTANTIATE_TEST_SUITE_P(Texts, Utf16Units, testing::ValuesIn(texts_rows),
                         [](const auto& row) { return row.param.name; });

// One unit for a byte that belongs to no character.
const units_row_t invalid_bytes_rows[] = {
    {"LoneTail", "\x80", 1},
    {"LeadWithoutTail", "\xC3", 1},
    {"LeadBeforeAscii", "\xC3z", 2},
    {"OverlongTwo", "\xC1\xBF", 2},
    {"OverlongThree", "\xE0\x9F\xBF", 3},
    {"Surrogate", "\xED\xA0\x80", 3},
    {"OverlongFour", "\xF0\x8F\xBF\xBF", 4},
    {"AboveTheLastPlane", "\xF4\x90\x80\x80", 4},
    {"LeadF5", "\xF5\x80\x80\x80", 4},
    {"ByteFF", "\xFF", 1},
    {"ThreeBytesCutToTwo", "\xE2\x82", 2},
    {"FourBytesCutToThree", "\xF0\x9F\x98", 3},
    {"FourBytesCutToTwo", "\xF0\x9F", 2},
};
INSTANTIATE_TEST_SUITE_P(InvalidBytes, Utf16Units, testing::ValuesIn(invalid_bytes_rows),
                         [](const auto& row) { return row.param.name; });

std::string contents_of(const std::string& path) {
    const file_bytes_t file = read_whole_file(path.c_str());
    EXPECT_EQ(file.bytes == nullptr, file.size == 0);
    return {file.bytes.get(), file.bytes.get() + file.size};
}

TEST(ReadWholeFile, GivesEveryByte) {
    const temp_dir_t dir;
    std::string all_bytes;
    for (int i = 0; i < 5000; ++i) all_bytes.push_back(static_cast<char>(i));
    dir.write(u8"all", all_bytes);
    dir.write(u8"lines", "a\r\nb\n\x1A c");
    EXPECT_EQ(contents_of(dir.utf8(u8"all")), all_bytes);
    EXPECT_EQ(contents_of(dir.utf8(u8"lines")), "a\r\nb\n\x1A c"); // binary on every platform
}

TEST(ReadWholeFile, OpensAPathBeyondAsciiByItsUnicodeName) {
    const temp_dir_t dir;
    dir.write(u8"Привет €/файл 😀", "text");
    EXPECT_EQ(contents_of(dir.utf8(u8"Привет €/файл 😀")), "text");
}

TEST(ReadWholeFile, GivesNothingForAMissingFile) {
    const temp_dir_t dir;
    EXPECT_EQ(contents_of(dir.utf8(u8"missing")), "");
}

TEST(ReadWholeFile, GivesNothingForAnEmptyFile) {
    const temp_dir_t dir;
    dir.write(u8"empty", "");
    EXPECT_EQ(contents_of(dir.utf8(u8"empty")), "");
}

TEST(ReadWholeFile, GivesTheByteOfAFileOfOneByte) {
    const temp_dir_t dir;
    dir.write(u8"one", "x");
    EXPECT_EQ(contents_of(dir.utf8(u8"one")), "x");
}

TEST(ReadWholeFile, GivesNothingForADirectory) {
    const temp_dir_t dir;
    EXPECT_EQ(contents_of(dir.utf8(u8"")), "");
    EXPECT_EQ(contents_of(dir.utf8(u8".")), "");
}

TEST(ReadWholeFile, GivesNothingForAFileOf2GiBAndMore) {
    const temp_dir_t dir;
    dir.write(u8"large", "x");
    const std::string path = dir.utf8(u8"large");
    for (const uint64_t size : {uint64_t{0x80000000}, uint64_t{0x10000000A}}) { // the low 32 bits of the latter are 10
        std::error_code error;
        std::filesystem::resize_file(dir.path() / "large", size, error); // sparse
        if (error) GTEST_SKIP() << "no room for a sparse file: " << error.message();
        const std::size_t peak = peak_allocated_bytes([&] { EXPECT_EQ(read_whole_file(path.c_str()).size, 0u); });
        EXPECT_LT(peak, 100'000u);
    }
}

#ifdef __linux__
// The kernel gives these files a page of size and fewer bytes.
TEST(ReadWholeFile, GivesNothingWhenTheFileEndsBeforeItsSize) {
    constexpr char shorter_than_its_size[] = "/sys/devices/system/cpu/online";
    if (!std::filesystem::exists(shorter_than_its_size)) GTEST_SKIP() << "no sysfs";
    ASSERT_GT(std::filesystem::file_size(shorter_than_its_size), 0u);
    EXPECT_EQ(contents_of(shorter_than_its_size), "");
}

TEST(ReadWholeFile, GivesNothingForAPipe) {
    const temp_dir_t dir;
    const std::string path = dir.utf8(u8"pipe");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    const int both_ends = open(path.c_str(), O_RDWR);
    ASSERT_GE(both_ends, 0);
    EXPECT_EQ(contents_of(path), "");
    close(both_ends);
}

TEST(ReadWholeFile, DoesNotWaitForTheWriterOfAPipe) {
    const temp_dir_t dir;
    const std::string path = dir.utf8(u8"pipe");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    alarm(20);
    EXPECT_EQ(contents_of(path), "");
    alarm(0);
}

TEST(ReadWholeFile, GivesNothingForADevice) {
    const temp_dir_t dir;
    for (const char* const device : {"/dev/zero", "/dev/null", "/dev/full"}) {
        const std::string path = dir.utf8(u8"device");
        std::filesystem::create_symlink(device, path);
        EXPECT_EQ(contents_of(path), "") << device;
        std::filesystem::remove(path);
    }
}

TEST(ReadWholeFile, FollowsASymbolicLinkToAFile) {
    const temp_dir_t dir;
    dir.write(u8"file", "text");
    std::filesystem::create_symlink("file", dir.path() / "link");
    EXPECT_EQ(contents_of(dir.utf8(u8"link")), "text");
}

// Another thread may start a program while the file is open: here, when the memory for its contents is taken.
TEST(ReadWholeFile, ChildrenDoNotInheritTheFile) {
    const temp_dir_t dir;
    dir.write(u8"file", "text");
    const std::string path = dir.utf8(u8"file");
    int num_seen = 0;
    at_each_allocation([&] { EXPECT_EQ(read_whole_file(path.c_str()).size, 4u); },
                       [&] {
                           for (int fd = 3; fd < 100; ++fd) {
                               std::error_code not_open;
                               const std::string link = "/proc/self/fd/" + std::to_string(fd);
                               if (std::filesystem::read_symlink(link, not_open) != path) continue;
                               EXPECT_EQ(fcntl(fd, F_GETFD), FD_CLOEXEC);
                               ++num_seen;
                           }
                       });
    EXPECT_GT(num_seen, 0);
}

// The path itself, terminator counted, may have 4,096 units; Linux happens to have the same limit in bytes.
TEST(ReadWholeFile, OpensAPathOf4095UnitsAndNoLongerOne) {
    const temp_dir_t dir;
    dir.write(u8"f", "text");
    std::string path = dir.utf8(u8"");
    while (path.size() + 2 < 4095) path += "./";
    while (path.size() + 1 < 4095) path += "/";
    path += "f";
    EXPECT_EQ(path.size(), 4095u);
    EXPECT_EQ(contents_of(path), "text");
    path.insert(path.size() - 1, "/");
    EXPECT_EQ(contents_of(path), "");
}
#endif

#ifdef _WIN32
TEST(ReadWholeFile, ChildrenDoNotInheritTheHandle) {
    const temp_dir_t dir;
    dir.write(u8"file", "text");
    const std::string path = dir.utf8(u8"file");
    int num_seen = 0;
    at_each_allocation([&] { EXPECT_EQ(read_whole_file(path.c_str()).size, 4u); },
                       [&] {
                           for (int fd = 3; fd < 100; ++fd) {
                               DWORD flags = 0;
                               const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(fd));
                               if (handle == INVALID_HANDLE_VALUE || GetHandleInformation(handle, &flags) == 0)
                                   continue;
                               EXPECT_EQ(flags & HANDLE_FLAG_INHERIT, 0U);
                               ++num_seen;
                           }
                       });
    EXPECT_GT(num_seen, 0);
}
#endif

TEST(ReadWholeFile, AFailedAllocationLeaksNothing) {
    const temp_dir_t dir;
    dir.write(u8"f", "text");
    const std::string path = dir.utf8(u8"f");
    const std::size_t failures =
        for_each_failing_allocation([&] { EXPECT_EQ(read_whole_file(path.c_str()).size, 4u); }, [] {});
    EXPECT_EQ(failures, 1u);
}

} // namespace
