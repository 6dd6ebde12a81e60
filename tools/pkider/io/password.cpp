#include "tools/pkider/io/password.h"

#include "tools/pkider/base/failure.h"
#include "tools/pkider/io/environment.h"
#include "tools/pkider/io/file_input.h"
#include "tools/pkider/io/terminal_prompt.h"

#include <cerrno>
#include <system_error>

namespace tool {
namespace {

constexpr std::size_t max_password_size = 4096;
constexpr const char* variable = "PKIDER_PASSWORD";

/// The same limit for every source; the end of the line does not count.
secret_t checked(secret_t password, const std::string& source) {
    if (password.size() <= max_password_size) return password;
    throw data_fault_t(source + ": password of more than " + std::to_string(max_password_size) + " bytes");
}

/// The first line. Read byte by byte, so that what follows it in a pipe is left for others.
secret_t read_line(int fd, const std::string& source) {
    secret_t line(max_password_size + 2); // a carriage return, and a byte that shows that the password is too long
    std::size_t size = 0;
    while (size < line.size()) {
        uint8_t byte = 0;
        const std::ptrdiff_t got = read_some(fd, &byte, 1);
        if (got < 0) throw file_trouble_t(source, std::generic_category().message(errno));
        if (got == 0 || byte == '\n') break;
        line.data()[size++] = byte;
    }
    if (size > 0 && line.data()[size - 1] == '\r') --size;
    return checked(secret_t(line.view().first(size)), source);
}

secret_t ask(const std::string& prompt, password_use_t use) {
    std::optional<secret_t> answer = prompt_hidden(prompt + ": ", max_password_size);
    if (!answer) {
        throw usage_fault_t("no password: there is no terminal to ask on; use --password-file, --password-fd or the "
                            "environment variable PKIDER_PASSWORD");
    }
    secret_t password = checked(std::move(*answer), "terminal");
    if (use == password_use_t::make_new) {
        const std::optional<secret_t> again = prompt_hidden(prompt + " again: ", max_password_size);
        if (!again || again->text() != password.text()) throw usage_fault_t("the two passwords differ");
    }
    return password;
}

} // namespace

secret_t read_password(const password_source_t& source, const std::string& prompt, password_use_t use) {
    if (!source.file.empty()) return read_line(open_file_t(source.file).descriptor(), source.file);
    if (source.fd >= 0) return read_line(source.fd, "descriptor " + std::to_string(source.fd));
    if (std::optional<secret_t> value = secret_variable(variable)) return checked(std::move(*value), variable);
    return ask(prompt, use);
}

} // namespace tool
