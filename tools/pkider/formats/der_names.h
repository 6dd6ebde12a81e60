// Names of tags as X.680 writes them.
#pragma once

#include <cstdint>
#include <string>

namespace tool {

struct der_header_t;

/// `SEQUENCE`, `[0]`, `[APPLICATION 3]`; an unknown universal type is `[UNIVERSAL 15]`. A string type in its
/// constructed form, which DER does not have, says so.
std::string tag_name(const der_header_t& header);

/// What an element with this identifier octet is called in a sentence: `a SEQUENCE`, `an INTEGER`, `[0]`.
std::string type_of(std::uint8_t identifier);

} // namespace tool
