#include "tests/support/run_program.h"

#include <fcntl.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>

namespace pkider_test {
namespace {

struct file_closer_t {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using file_t = std::unique_ptr<std::FILE, file_closer_t>;

// Files instead of pipes: nobody waits for anybody.
file_t temporary_file(const std::string& contents = {}) {
    file_t file(std::tmpfile());
    if (!file) throw std::runtime_error("no temporary file");
    if (std::fwrite(contents.data(), 1, contents.size(), file.get()) != contents.size())
        throw std::runtime_error("disk");
    std::rewind(file.get());
    return file;
}

std::string read_all(int descriptor) {
    std::string text;
    char chunk[1 << 16];
    for (ssize_t size; (size = read(descriptor, chunk, sizeof chunk)) > 0;)
        text.append(chunk, static_cast<std::size_t>(size));
    return text;
}

std::string read_all(const file_t& file) {
    lseek(fileno(file.get()), 0, SEEK_SET);
    return read_all(fileno(file.get()));
}

constexpr int could_not_start = 127;

[[noreturn]] void become(const std::vector<std::string>& arguments, const run_options_t& options) {
    unsetenv("NO_COLOR");
    unsetenv("TERM");
    for (const auto& [name, value] : options.environment) setenv(name.c_str(), value.c_str(), 1);
    if (!options.directory.empty() && chdir(options.directory.c_str()) != 0) _exit(could_not_start);

    std::vector<char*> argv;
    for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    execv(argv[0], argv.data());
    _exit(could_not_start);
}

int wait_for(pid_t child) {
    int status = 0;
    if (waitpid(child, &status, 0) != child) throw std::runtime_error("no child to wait for");
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

} // namespace

std::ostream& operator<<(std::ostream& stream, const run_result_t& result) {
    return stream << "exit " << result.exit_code << "\n-- out\n" << result.out << "\n-- err\n" << result.err << "\n";
}

run_result_t run_program(const std::vector<std::string>& arguments, const run_options_t& options) {
    const file_t in = temporary_file(options.input);
    const file_t out = temporary_file();
    const file_t err = temporary_file();

    const pid_t child = fork();
    if (child < 0) throw std::runtime_error("cannot fork");
    if (child == 0) {
        dup2(fileno(in.get()), STDIN_FILENO);
        dup2(options.output_file.empty() ? fileno(out.get()) : open(options.output_file.c_str(), O_WRONLY),
             STDOUT_FILENO);
        dup2(fileno(err.get()), STDERR_FILENO);
        become(arguments, options);
    }
    const int exit_code = wait_for(child);
    return {exit_code, read_all(out), read_all(err)};
}

run_result_t run_on_terminal(const std::vector<std::string>& arguments, const run_options_t& options) {
    const file_t in = temporary_file(options.input);
    int terminal = -1;
    const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child < 0) throw std::runtime_error("cannot fork");
    if (child == 0) {
        dup2(fileno(in.get()), STDIN_FILENO);
        become(arguments, options);
    }
    const std::string out = read_all(terminal); // ends with an error when the child's side is closed
    close(terminal);
    return {wait_for(child), out, {}};
}

} // namespace pkider_test
