// Why a line is no name: the library's code and position, the character that is really meant, words and advice.
#pragma once

#include "tools/pkider/base/failure.h"

#include <pkider/dn.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace tool {

struct line_fault_t {
    std::uint16_t code = 0; // the library's, a fault of a line
    unsigned position = 0;  // the library's, 16 bits; in quoted and hex values often one less than the truth
    std::size_t offset = 0; // of the faulty character, in bytes of the line; the line's size when it is its end
    std::string words;
    std::string advice;
};

/// Explains a fault that the library found in the line: a result of printable_dn_normalize_r that is a fault
/// of a line, for the same line and map.
line_fault_t explain_line_fault(const std::string& line, asn_dn_result_t result, oid_map_handle_t map);

/// Thrown for a line that cannot be read.
struct bad_line_t : data_fault_t {
    bad_line_t(const std::string& the_line, const line_fault_t& its_fault)
        : data_fault_t(its_fault.words), line(the_line), fault(its_fault) {}
    std::string line;
    line_fault_t fault;
};

} // namespace tool
