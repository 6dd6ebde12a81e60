// Files that are read. Any of them may hold a private key, so what was read is wiped in the end.
#pragma once

#include "tools/pkider/base/secret.h"
#include "tools/pkider/io/descriptor.h"

#include <string>
#include <vector>

namespace tool {

/// A file that is open for reading, closed on every path.
class open_file_t {
  public:
    /// @throws file_trouble_t
    explicit open_file_t(const std::string& path);

    int descriptor() const { return m_descriptor.number(); }

  private:
    descriptor_t m_descriptor;
};

/// All that is left to be read from the descriptor; failures call it `name`. @throws file_trouble_t
secret_t read_all(int descriptor, const std::string& name);

/// The whole file; `-` is standard input. @throws file_trouble_t
secret_t read_file(const std::string& path);

/// The files or lines to work on: standard input, `-`, when there is none.
std::vector<std::string> or_standard_input(const std::vector<std::string>& arguments);

/// How a file is called in messages.
std::string input_name(const std::string& path);

} // namespace tool
