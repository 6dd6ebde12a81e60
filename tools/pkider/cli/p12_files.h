// Several PKCS#12 files in one command: one password for all, and a limit of work for each.
#pragma once

#include "tools/pkider/cli/input.h"
#include "tools/pkider/cli/pbe_options.h"

#include <optional>
#include <string>

namespace tool {

/// A password that is asked for when it is first needed, and then serves all files of the command.
class password_once_t {
  public:
    explicit password_once_t(const password_options_t& options) : m_options(options) {}

    secret_t get(const std::string& name) {
        if (!m_password) m_password = read_password(m_options, "Password of " + name);
        return secret_t(m_password->view());
    }

  private:
    const password_options_t& m_options;
    std::optional<secret_t> m_password;
};

/// The limit of --max-iterations for each file, however many containers it has: a PEM file may have many.
class file_budget_t {
  public:
    explicit file_budget_t(const password_options_t& options) : m_max_iterations(options.max_iterations) {}

    /// What is left for the file of this container. The containers come in the order of the files and their lines.
    iteration_budget_t& of(const input_t& container) {
        const bool same_file = m_budget && container.file == m_file && container.line > m_line;
        if (!same_file) m_budget.emplace(m_max_iterations);
        m_file = container.file;
        m_line = container.line;
        return *m_budget;
    }

  private:
    uint64_t m_max_iterations;
    std::optional<iteration_budget_t> m_budget;
    std::string m_file;
    std::size_t m_line = 0;
};

} // namespace tool
