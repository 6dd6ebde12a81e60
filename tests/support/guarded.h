// Inputs of which not one byte too many can be read unseen: in a heap block of exactly their size (AddressSanitizer
// sees the overrun) and up against a page without access (everyone sees it).
#pragma once

#include "tests/support/hex.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string_view>

namespace pkider_test {

using bytes_visitor_t = std::function<void(const uint8_t* data, std::size_t size)>;

/// Calls `visit` with a copy of `bytes` in an exact heap block, then with one that ends at an inaccessible page, then
/// with one that begins directly after an inaccessible page.
void for_guarded(std::span<const uint8_t> bytes, const bytes_visitor_t& visit);

/// for_guarded for a text that ends with a NUL, the last byte that can be read. `visit` may change the copy.
void for_guarded_line(std::string_view line, const std::function<void(char* line)>& visit);

/// for_guarded for every prefix of `bytes` that is shorter than all of it, the empty one included.
void for_every_prefix(std::span<const uint8_t> bytes, const bytes_visitor_t& visit);

/// Calls `visit` (guarded) with copies of the DER in `bytes` in which `junk` is at the end of the contents of one
/// constructed element, once for each of them, all lengths around it corrected.
void for_junk_in_each_constructed(std::span<const uint8_t> bytes, std::span<const uint8_t> junk,
                                  const bytes_visitor_t& visit);

} // namespace pkider_test
