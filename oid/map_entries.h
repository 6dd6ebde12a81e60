// The entries that a text gives a map, with their three indexes. Built once, then only read.
#pragma once

#include "oid/map_index.h"
#include "oid/map_keys.h"
#include "oid/map_memory.h"
#include "oid/map_text.h"

#include <pkider/oid.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace pkider {

class oid_map_entries_t {
  public:
    /// Reads all lines; lines that are not entries are ignored.
    ///
    /// @throws std::bad_alloc, std::length_error.
    explicit oid_map_entries_t(std::string_view text);
    oid_map_entries_t(const oid_map_entries_t&) = delete;
    oid_map_entries_t& operator=(const oid_map_entries_t&) = delete;

    // Not inline: a map that finds a built-in row is to pay for nothing else.
    const OIDdescr_t* find_asn(const uint8_t* asn, uint64_t length) const;
    const OIDdescr_t* find_str(const char* str, uint64_t length) const;
    const OIDdescr_t* find_sn(const char* sn, uint64_t length) const;

  private:
    void read_lines(std::string_view text);
    const OIDdescr_t* make_entry(const oid_map_line_t& line, std::span<const uint8_t> contents);

    oid_map_memory_t m_memory;                // of the entries; without a block for each. Bench: oid/parse_map
    std::vector<const OIDdescr_t*> m_entries; // in the order of the text, repeated keys included
    oid_map_index_t<by_contents_t> m_by_contents;
    oid_map_index_t<by_dotted_text_t> m_by_dotted_text;
    oid_map_index_t<by_short_name_t> m_by_short_name;
};

} // namespace pkider
