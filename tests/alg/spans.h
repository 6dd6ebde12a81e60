// Spans in assertions: what a record says of its input, as offset and hex, and the value that no reader writes.
#pragma once

#include "tests/support/hex.h"

#include <cstdint>
#include <ostream>

namespace pkider_test {

constexpr uint32_t unwritten_len = 77;
inline const uint8_t unwritten_byte = 0;

/// A span of a record.
struct span_t {
    uint32_t len = unwritten_len;
    const uint8_t* data = &unwritten_byte;

    bool operator==(const span_t&) const = default;
};

inline const span_t unwritten;
inline const span_t none{0, nullptr};

inline void PrintTo(const span_t& span, std::ostream* os) {
    *os << span.len << " bytes at " << static_cast<const void*>(span.data);
    if (span == unwritten) *os << " (unwritten)";
}

} // namespace pkider_test
