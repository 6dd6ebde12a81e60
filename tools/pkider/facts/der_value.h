// The value of one element in a form that people read: a word or a number, text, or bytes for a hex dump.
#pragma once

#include "tools/pkider/facts/oid_names.h"
#include "tools/pkider/formats/der_walker.h"

#include <pkider/oid.h>

#include <optional>
#include <string>

namespace tool {

struct der_value_t {
    std::string text;              ///< Shown after the tag; may contain any byte of the file.
    bool is_string = false;        ///< `text` is the file's own text and wants quotes.
    std::optional<oid_text_t> oid; ///< Of an OBJECT IDENTIFIER.
    bytes_t bytes;                 ///< Shown in hex.
    std::uint64_t num_hidden = 0;  ///< Contents bytes after those that are shown.
};

/// Describes the value of a primitive element.
///
/// @param max_bytes  Contents bytes that are read and shown, so that a long value costs no more.
der_value_t describe_value(const der_header_t& node, std::uint64_t max_bytes, oid_map_handle_t map);

} // namespace tool
