// The blocks of an input: PEM, DER, hex or base64, recognised from its bytes.
//
//     block_reader_t blocks(bytes, input_form_t::guess);
//     block_t block;
//     while (blocks.next(block)) { ... }                  // one decoded block at a time is in memory
#pragma once

#include "tools/pkider/formats/pem.h"

#include <string>
#include <string_view>

namespace tool {

/// DER when the second byte can only be a long form of length; PEM when a line begins a block; bytes that are no text
/// are DER; else hex when all digits are hex digits; else base64. A byte order mark before a text is not part of it.
input_form_t guess_form(std::string_view bytes);

/// What becomes of a text that is not PEM, hex or base64 when the form is guessed.
enum class other_text_t {
    fails, ///< It is a failure.
    passes ///< It is one block of DER.
};

/// Reads the blocks of an input in order: one, or as many as a PEM text holds.
class block_reader_t {
  public:
    /// The bytes live as long as the reader, and as long as a block of DER that is not detached.
    block_reader_t(std::string_view bytes, input_form_t form, other_text_t other_text = other_text_t::fails);

    /// The next block, a faulty one too; false at the end. Throws data_fault_t for an input without a block.
    bool next(block_t& out);

  private:
    void read_whole(block_t& out) const;

    std::string_view m_bytes;
    std::string_view m_text; // without a byte order mark
    input_form_t m_form;
    bool m_guessed;
    other_text_t m_other_text;
    pem_reader_t m_pem;
    bool m_found = false; // a block
};

/// How a block is called in messages: the input's name, for PEM with the line where the block begins.
std::string block_name(const std::string& input, const block_t& block);

} // namespace tool
