// PEM text (RFC 7468): blocks of base64 between BEGIN and END lines, anything else between the blocks.
#pragma once

#include "tools/pkider/formats/block.h"

#include <cstddef>
#include <string_view>

namespace tool {

/// Whether a line of the text begins a block.
bool looks_like_pem(std::string_view text);

/// Lines of a text, one after another, without their ends.
class pem_lines_t {
  public:
    explicit pem_lines_t(std::string_view text) : m_rest(text) {}

    bool next(std::string_view& line);

    /// The line that was given last comes again.
    void back();

    std::size_t number = 0; ///< Of the line that was given last.

  private:
    std::string_view m_rest;
    std::string_view m_before;
};

/// Reads the blocks of a text in order.
class pem_reader_t {
  public:
    explicit pem_reader_t(std::string_view text) : m_lines(text) {}

    /// The next block, a faulty one too; false at the end.
    bool next(block_t& out);

  private:
    void read_rest(block_t& out);

    pem_lines_t m_lines;
};

} // namespace tool
