// Numbers of any size as an INTEGER holds them, highest byte first. The sign is ignored: moduli, exponents and
// signature values have none.
#pragma once

#include "tools/pkider/formats/der_cursor.h"

#include <cstdint>
#include <string>

namespace tool {

/// At least one byte is left of a number that has any.
bytes_t without_leading_zeros(bytes_t number);

/// 0 for the number 0 and for no bytes at all.
std::uint64_t bit_length(bytes_t number);

/// The number in decimal when it fits into 64 bits, else in hex with "0x".
std::string number_text(bytes_t number);

} // namespace tool
