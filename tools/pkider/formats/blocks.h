// The DER in an input: PEM, DER, hex or base64, told apart by its bytes.
#pragma once

#include "tools/pkider/formats/pem.h"

#include <string>
#include <string_view>
#include <vector>

namespace tool {

enum class input_form_t { guess, pem, der, hex, base64 };

/// PEM when a line begins a block; bytes that are no text are DER; else hex when all digits are hex digits; else
/// base64. A byte order mark in front of a text is none of it.
input_form_t guess_form(std::string_view bytes);

/// The blocks of an input: one, or as many as a PEM text holds. Throws data_fault_t when there is none.
std::vector<block_t> read_blocks(std::string_view bytes, input_form_t form);

/// The block of an input that holds no other. Throws data_fault_t when there are more, or it is faulty.
block_t read_only_block(std::string_view bytes, input_form_t form);

/// How a block is called in messages: the input's name, for PEM with the line where the block begins.
std::string block_name(const std::string& input, const block_t& block);

} // namespace tool
