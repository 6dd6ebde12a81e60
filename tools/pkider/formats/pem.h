// PEM text (RFC 7468): blocks of base64 between BEGIN and END lines, anything else between the blocks.
#pragma once

#include "tools/pkider/base/secret.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

/// One block of DER out of an input.
struct block_t {
    std::string label;    // `CERTIFICATE`; empty when the input was not PEM
    std::size_t line = 0; // of its BEGIN line, counted from 1; 0 when the input was not PEM
    secret_t der;         // empty when there is a fault
    std::string fault;    // why the block cannot be read, else empty
};

/// Whether a line of the text begins a block.
bool looks_like_pem(std::string_view text);

/// Every block in order, the faulty ones too.
std::vector<block_t> read_pem(std::string_view text);

} // namespace tool
