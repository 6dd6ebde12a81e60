// The program run on keys: a folder of its own for each test, the fixtures, and the password they have.
#pragma once

#include "tests/support/temp_dir.h"
#include "tests/tools/program.h"

#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace pkider_test {

inline std::string fixture(const std::string& name) {
    return PKIDER_FIXTURES "/" + name;
}

inline std::string file_contents(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << path;
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

/// Runs the program in a folder of its own, with "secret" in PKIDER_PASSWORD.
class KeysTest : public testing::Test {
  protected:
    run_result_t run(const std::vector<std::string>& arguments, const std::string& password = "secret") const {
        run_options_t options;
        options.environment = {{"PKIDER_PASSWORD", password}};
        options.directory = folder.path().string();
        return run_pkider(arguments, options);
    }

    /// A command line for the shell, in which $PKIDER is the program; no password and no terminal is about.
    run_result_t run_shell(const std::string& line) const {
        run_options_t options;
        options.environment = {{"PKIDER", PKIDER_PROGRAM}};
        options.directory = folder.path().string();
        return run_program({"/usr/bin/setsid", "--wait", "/bin/sh", "-c", "unset PKIDER_PASSWORD; " + line}, options);
    }

    std::string path(const std::string& name) const { return folder.path() / name; }
    std::string contents(const std::string& name) const { return file_contents(path(name)); }
    bool exists(const std::string& name) const { return std::filesystem::exists(path(name)); }
    mode_t mode(const std::string& name) const {
        struct stat status = {};
        EXPECT_EQ(stat(path(name).c_str(), &status), 0) << name;
        return status.st_mode & 07777;
    }
    std::size_t num_files() const {
        return static_cast<std::size_t>(
            std::distance(std::filesystem::directory_iterator(folder.path()), std::filesystem::directory_iterator()));
    }

    temp_dir_t folder;
};

/// Few iterations: what is tested is not how slow they are.
inline const std::vector<std::string> quick = {"--iterations", "1000"};

inline std::vector<std::string> operator+(std::vector<std::string> left, const std::vector<std::string>& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

} // namespace pkider_test
