// Whether a reader compares every identifier that it should: the one thing changed is an identifier octet, so that
// nothing else can be the reason of a refusal.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace pkider_test {

using reader_t = std::function<bool(const uint8_t* data, std::size_t size)>;

/// Offsets of the elements in `bytes` that `read` takes with another identifier as well: with one of another class, or
/// with a constructed one for a primitive one and the other way round. Constructed elements are entered; OCTET STRINGs
/// are not.
std::vector<std::size_t> identifiers_not_compared(std::span<const uint8_t> bytes, const reader_t& read);

} // namespace pkider_test
