// What is different on Windows: arguments, paths, line ends, access to files, and the console.
#include "tests/support/hex.h"
#include "tests/support/temp_dir.h"
#include "tests/tools/program.h"
#include "tools/pkider/base/failure.h"
#include "tools/pkider/io/file_output.h"
#include "tools/pkider/io/file_view.h"
#include "tools/pkider/io/path_kind.h"

#include <windows.h>

#include <aclapi.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace pkider_test {
namespace {

using testing::HasSubstr;
using testing::Not;
using tool::file_mode_t;
using tool::write_file;

// CN=Клю
constexpr const char* name_in_hex = "3011310F300D06035504030C06D09AD0BBD18E";

std::string contents(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

/// More characters than MAX_PATH has.
std::u8string long_name() {
    std::u8string name;
    for (int i = 0; i < 4; ++i) name += std::u8string(80, u8'a') + u8'/';
    return name + u8"Ключ.pem";
}

// ---- The program -------------------------------------------------------------------------------------------------

TEST(WindowsProgram, TakesArgumentsAndPathsWithAnyCharacter) {
    const temp_dir_t dir;
    dir.write(u8"Ключ 鍵.txt", name_in_hex);
    const run_result_t result = run_pkider({"dn", "decode", dir.utf8(u8"Ключ 鍵.txt")});
    EXPECT_EQ(result.exit_code, 0) << result;
    EXPECT_EQ(result.out, "CN=Клю\n");
    EXPECT_EQ(run_pkider({"dn", "normalize", "cn=Ключ 鍵"}).out, "CN=Ключ 鍵\n");

    const run_result_t missing = run_pkider({"cert", dir.utf8(u8"нет")});
    EXPECT_EQ(missing.exit_code, 74) << missing;
    EXPECT_EQ(missing.err, "pkider: " + dir.utf8(u8"нет") + ": No such file or directory\n");
}

TEST(WindowsProgram, WritesBytesAsTheyAre) {
    const run_result_t result = run_pkider({"dn", "encode", "--der", "CN=aaaaaaaaaa"});
    EXPECT_EQ(result.exit_code, 0) << result;
    EXPECT_EQ(result.out, "30 15 31 13 30 11 06 03 55 04 03 13 0A 61 61 61 61 61 61 61 61 61 61"_hex.str());
}

TEST(WindowsProgram, ReadsLinesOfWindows) {
    const run_result_t result = run_pkider({"dn", "normalize"}, {.input = "cn=a\r\ncn=b\x1A\r\ncn=c\r\n"});
    EXPECT_THAT(result.out, testing::StartsWith("CN=a\nCN=b"));
    EXPECT_THAT(result.out, testing::EndsWith("\nCN=c\n")); // Ctrl-Z ends no file
    EXPECT_EQ(run_pkider({"dn", "decode"}, {.input = std::string(name_in_hex) + "\r\n"}).out, "CN=Клю\n");
}

TEST(WindowsProgram, WritesAKeyAndAsksForItsPassword) {
    const temp_dir_t dir;
    const std::string key = dir.utf8(u8"Ключ.pem"), encrypted = dir.utf8(u8"2.pem"), again = dir.utf8(u8"3.pem");
    const run_options_t options{.input = std::string(63, '0') + "1\r\n",
                                .environment = {{"PKIDER_PASSWORD", "пароль"}}};
    const run_result_t wrapped =
        run_pkider({"key", "wrap", "--kind", "2012-256", "--in", "hex", "-", "-o", key}, options);
    ASSERT_EQ(wrapped.exit_code, 0) << wrapped;
    const run_result_t done = run_pkider({"key", "encrypt", "--iterations", "1000", key, "-o", encrypted}, options);
    ASSERT_EQ(done.exit_code, 0) << done;
    ASSERT_EQ(run_pkider({"key", "decrypt", encrypted, "-o", again}, options).exit_code, 0);
    EXPECT_EQ(contents(dir.path() / L"3.pem"), contents(dir.path() / L"Ключ.pem"));
    EXPECT_THAT(contents(dir.path() / L"3.pem"), HasSubstr("BEGIN PRIVATE KEY"));

    const run_result_t nowhere = run_pkider({"key", "decrypt", "--reveal", encrypted});
    EXPECT_EQ(nowhere.exit_code, 64) << nowhere;
    EXPECT_THAT(nowhere.err, HasSubstr("no password: there is no terminal to ask on"));

    const run_result_t asked =
        run_pkider_on_terminal({"key", "decrypt", encrypted, "-o", again, "--force"}, {.input = "пароль\r"});
    EXPECT_EQ(asked.exit_code, 0) << asked;
    EXPECT_THAT(asked.out, HasSubstr("assword"));
    EXPECT_THAT(asked.out, Not(HasSubstr("пароль")));
}

// ---- Files -------------------------------------------------------------------------------------------------------

class WindowsFiles : public testing::Test {
  protected:
    static void accept(std::span<const uint8_t>) {}

    /// Entries of the list of who may do what with the file.
    static DWORD num_entries(const std::filesystem::path& path) {
        PACL list = nullptr;
        PSECURITY_DESCRIPTOR descriptor = nullptr;
        GetNamedSecurityInfoW(path.c_str(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, &list, nullptr,
                              &descriptor);
        const DWORD count = list == nullptr ? 0 : list->AceCount;
        LocalFree(descriptor);
        return count;
    }

    std::vector<std::string> names() const {
        std::vector<std::string> out;
        for (const auto& entry : std::filesystem::directory_iterator(dir.path()))
            out.push_back(entry.path().filename().string());
        std::ranges::sort(out);
        return out;
    }

    temp_dir_t dir;
    std::string file = dir.utf8(u8"file");
};

TEST_F(WindowsFiles, AreReplacedOnlyWhenItIsForced) {
    dir.write(u8"file", "old");
    EXPECT_THROW(write_file({file, file_mode_t::ordinary, false}, "new", accept), tool::file_trouble_t);
    EXPECT_EQ(contents(dir.path() / L"file"), "old");
    write_file({file, file_mode_t::ordinary, true}, "new", accept);
    EXPECT_EQ(contents(dir.path() / L"file"), "new");
    EXPECT_THAT(names(), testing::ElementsAre("file"));
}

TEST_F(WindowsFiles, AreNotReplacedWhenTheyComeMeanwhile) {
    EXPECT_THROW(write_file({file, file_mode_t::secret, false}, "new",
                            [&](std::span<const uint8_t>) { dir.write(u8"file", "theirs"); }),
                 tool::file_trouble_t);
    EXPECT_EQ(contents(dir.path() / L"file"), "theirs");
    EXPECT_THAT(names(), testing::ElementsAre("file"));
}

TEST_F(WindowsFiles, AreGoneWhenTheyAreRefused) {
    const auto refuse = [](std::span<const uint8_t> on_disk) {
        EXPECT_EQ(std::string(on_disk.begin(), on_disk.end()), "a\r\nb\n");
        throw tool::data_fault_t("does not read back");
    };
    EXPECT_THROW(write_file({file, file_mode_t::secret, false}, "a\r\nb\n", refuse), tool::data_fault_t);
    EXPECT_THAT(names(), testing::IsEmpty());
}

TEST_F(WindowsFiles, WithASecretAreForTheirOwnerAlone) {
    write_file({file, file_mode_t::secret, false}, "secret", accept);
    dir.write(u8"other", "everybody's");
    EXPECT_LT(num_entries(dir.path() / L"file"), num_entries(dir.path() / L"other")); // Wine makes up one for the group
    EXPECT_EQ(contents(dir.path() / L"file"), "secret");
}

TEST_F(WindowsFiles, MayHaveLongPaths) {
    const std::wstring verbatim = LR"(\\?\)" + dir.path().wstring();
    std::filesystem::path folder = verbatim;
    for (int i = 0; i < 4; ++i) CreateDirectoryW((folder /= std::wstring(80, L'a')).c_str(), nullptr);
    const std::string path = dir.utf8(long_name());
    ASSERT_GT(path.size(), 260U);
    write_file({path, file_mode_t::ordinary, false}, "long", accept);
    EXPECT_TRUE(tool::file_exists(path));
    EXPECT_EQ(tool::read_file(path).text(), "long");
    EXPECT_THROW(tool::check_output_file(path, false), tool::file_trouble_t);
    DeleteFileW((folder / L"Ключ.pem").c_str());
    for (int i = 0; i < 4; ++i, folder = folder.parent_path()) RemoveDirectoryW(folder.c_str());
}

TEST_F(WindowsFiles, ThatAreNoneAreNotReplaced) {
    for (const std::string& path : {dir.path().string(), std::string("NUL"), std::string("con")})
        EXPECT_EQ(tool::path_kind(path), tool::path_kind_t::other) << path;
    EXPECT_EQ(tool::path_kind(file), tool::path_kind_t::nothing);
    EXPECT_EQ(tool::path_kind(file + "/none"), tool::path_kind_t::nothing);
}

TEST_F(WindowsFiles, AreMappedWhenTheyAreLarge) {
    const std::string bytes(tool::largest_read_file + 10'000, '\n');
    dir.write(u8"file", bytes);
    const tool::file_view_t view(file);
    EXPECT_EQ(view.bytes().size(), bytes.size());
    EXPECT_TRUE(std::ranges::all_of(view.bytes(), [](uint8_t byte) { return byte == '\n'; }));
}

} // namespace
} // namespace pkider_test
