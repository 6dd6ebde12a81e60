// Tags, each written once: numbers of the universal class (X.680 8.4, table 1), and identifier octets.
#pragma once

#include <pkider/der.h>

#include <cstdint>

namespace tool {

/// The number of a type that is primitive in DER is also its identifier octet (X.690 8.1.2.2).
enum universal_tag_t : std::uint8_t {
    boolean_tag = 1,
    integer_tag = 2,
    bit_string_tag = 3,
    octet_string_tag = 4,
    null_tag = 5,
    oid_tag = 6,
    object_descriptor_tag = 7,
    external_tag = 8,
    real_tag = 9,
    enumerated_tag = 10,
    embedded_pdv_tag = 11,
    utf8_string_tag = 12,
    relative_oid_tag = 13,
    time_tag = 14,
    sequence_tag = 16,
    set_tag = 17,
    numeric_string_tag = 18,
    printable_string_tag = 19,
    teletex_string_tag = 20,
    videotex_string_tag = 21,
    ia5_string_tag = 22,
    utc_time_tag = 23,
    generalized_time_tag = 24,
    graphic_string_tag = 25,
    visible_string_tag = 26,
    general_string_tag = 27,
    universal_string_tag = 28,
    character_string_tag = 29,
    bmp_string_tag = 30,
};

/// The tag number in an identifier octet; this value says that the number follows (X.690 8.1.2.4).
inline constexpr std::uint8_t tag_number_bits = 0x1F;

inline constexpr std::uint8_t constructed_bit = 0x20;

/// The identifier octet of a primitive universal type, for the library's reader.
constexpr asn_tag_t::Type identifier_of(universal_tag_t tag) {
    return static_cast<asn_tag_t::Type>(tag);
}

/// The identifier octet of [n], with elements inside.
constexpr asn_tag_t::Type context_tag(std::uint8_t number) {
    return static_cast<asn_tag_t::Type>(asn_tag_t::CONTEXT_0 + number);
}

/// The identifier octet of IMPLICIT [n] of a primitive type.
constexpr asn_tag_t::Type primitive_context_tag(std::uint8_t number) {
    return static_cast<asn_tag_t::Type>(0x80u + number);
}

} // namespace tool
