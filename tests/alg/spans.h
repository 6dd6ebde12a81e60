// Spans in assertions: what a record says of its input, as offset and hex, and the value that no reader writes.
#pragma once

#include "tests/support/guarded.h"
#include "tests/support/hex.h"

#include <gtest/gtest.h>

#include <cstddef>
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

/// Where a span lies in an input.
struct place_t {
    uint32_t len;
    std::size_t at;

    span_t in(const uint8_t* input) const { return {len, input + at}; }
};

/// What a reader of two spans says.
struct two_spans_t {
    bool read;
    span_t first, second;
};

inline void PrintTo(const span_t& span, std::ostream* os) {
    *os << span.len << " bytes at " << static_cast<const void*>(span.data);
    if (span == unwritten) *os << " (unwritten)";
}

/// Expects that `read` takes its input, and gives both spans there.
inline bytes_visitor_t gives(two_spans_t (*read)(const uint8_t*, std::size_t), place_t first, place_t second) {
    return [=](const uint8_t* data, std::size_t size) {
        const two_spans_t out = read(data, size);
        EXPECT_TRUE(out.read);
        EXPECT_EQ(out.first, first.in(data));
        EXPECT_EQ(out.second, second.in(data));
    };
}

} // namespace pkider_test
