// A Name around one value: the library converts strings only as values of a Name that it prints.
#pragma once

#include "tools/pkider/formats/der_header.h"

#include <pkider/der.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace tool {

/// The DER of a Name of one attribute, of the type 1.2, with this value (a whole element).
inline std::string name_around_value(std::string_view value) {
    std::string name = der_header(asn_tag_t::OBJECT_IDENTIFIER, 1) + '\x2A';
    name.append(value);
    // AttributeTypeAndValue, RelativeDistinguishedName, Name
    constexpr std::uint8_t around[] = {asn_tag_t::SEQUENCE, asn_tag_t::SET, asn_tag_t::SEQUENCE};
    for (const std::uint8_t outer : around) name.insert(0, der_header(outer, name.size()));
    return name;
}

} // namespace tool
