// The picture of a DER encoding: one element a line, with offset, lengths, nesting and value.
//
//        0  4+1283  SEQUENCE
//        4  4+1003    SEQUENCE
//        8  2+3         [0]
//       10  2+1           INTEGER 2
//       13  2+16          INTEGER
//                           04 00 00 00 00 01 15 4B  5A C3 94 FF FE 00 41 42  |.......KZ.....AB|
//
// Elements at a depth of 64 and more have the number instead of the blanks: "depth 64: SEQUENCE".
#pragma once

#include "tools/pkider/facts/der_value.h"
#include "tools/pkider/formats/der_walker.h"
#include "tools/pkider/text/json.h"

#include <string>

namespace tool {

/// Prints elements as lines of text.
class der_tree_t {
  public:
    /// @param size  Size of the whole encoding in bytes: the columns are as wide as its offsets.
    explicit der_tree_t(std::uint64_t size);

    /// The lines of one element, line ends included. Safe for a terminal, for any bytes.
    std::string lines(const der_node_t& node, const der_value_t& value) const;

    /// The place where the walk ended, and the bytes there.
    std::string fault_lines(const walk_fault_t& fault, bytes_t whole) const;

  private:
    std::string margin(std::uint64_t offset, const std::string& sizes) const;

    std::size_t m_width;
};

/// One element as a JSON object; docs/der_json.md describes the fields.
json_t der_json(const der_node_t& node, const der_value_t& value);

} // namespace tool
