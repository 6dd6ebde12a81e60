// What can be wrong with a distinguished name: the codes of asn_dn_result_t. docs/dn_syntax.md tells each of them to
// the people who wrote the line.
#pragma once

#include <pkider/dn.h>

#include <cstddef>
#include <cstdint>

namespace pkider {

enum dn_fault_t : uint16_t {
    // Text: the position counts characters of the line.
    DN_FAULT_TYPE_SYNTAX = 1,
    DN_FAULT_TYPE_UNKNOWN = 2,
    DN_FAULT_UNBALANCED_QUOTE = 3,
    DN_FAULT_HEX_COUNT = 4,
    DN_FAULT_HEX_DIGIT = 5,
    DN_FAULT_HEX_ELEMENT = 6,
    DN_FAULT_BACKSLASH_AT_END = 7,
    DN_FAULT_ESCAPE_SECOND_DIGIT = 8,
    DN_FAULT_ESCAPE = 9,
    DN_FAULT_UNESCAPED_SPECIAL = 10,
    // DER: the position counts bytes of the input.
    DN_FAULT_NOT_A_NAME = 11,
    DN_FAULT_NOT_A_SET = 12,
    DN_FAULT_NOT_A_SEQUENCE = 13,
    DN_FAULT_NOT_AN_OID = 14,
    DN_FAULT_OID_UNPRINTABLE = 15,
    DN_FAULT_VALUE_HEADER = 16,
    DN_FAULT_TELETEX = 17,
    DN_FAULT_WIDE_STRING = 18,
    DN_FAULT_NUMERIC_STRING = 19,
};

/// Positions are 16 bits wide and wrap in longer input.
constexpr asn_dn_result_t dn_fault(dn_fault_t code, std::ptrdiff_t position) {
    return {code, static_cast<uint16_t>(position)};
}

} // namespace pkider
