// What the p12 commands have in common.
#pragma once

#include "tools/pkider/cli/command.h"
#include "tools/pkider/cli/pbe_options.h"
#include "tools/pkider/facts/p12_reading.h"

#include <optional>

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

void register_p12_list(CLI::App& p12, chosen_command_t& chosen);
void register_p12_verify(CLI::App& p12, chosen_command_t& chosen);
void register_p12_extract(CLI::App& p12, chosen_command_t& chosen);
void register_p12_create(CLI::App& p12, chosen_command_t& chosen);

} // namespace tool
