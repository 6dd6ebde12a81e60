// The file that a command on private keys works on, read and in the end wiped.
#pragma once

#include "tools/pkider/input.h"

#include <string>
#include <string_view>

namespace tool {

/// The one block of a file that these commands work on, wiped in the end.
class secret_block_t {
  public:
    /// `label`: of the PEM block to take when there are several, by its end. @throws failure_t  There is not just one.
    secret_block_t(const std::string& path, input_form_t form, std::string_view label);
    secret_block_t(const secret_block_t&) = delete;
    secret_block_t& operator=(const secret_block_t&) = delete;
    ~secret_block_t();

    const std::string& der() const { return block_.der; }
    const std::string& label() const { return block_.label; }
    bool is_pem() const { return block_.line != 0; }

  private:
    block_t block_;
};

} // namespace tool
