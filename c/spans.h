// Spans of the C++ records, a length and a pointer, and those of the C records.
#pragma once

#include <pkider/c/pkider.h>

#include <cstdint>

namespace pkider::c {

inline pkider_bytes_t span_of(uint64_t size, const uint8_t* data) {
    return {data, size};
}

inline pkider_bytes_t span_of(uint64_t size, const char* text) {
    return {reinterpret_cast<const uint8_t*>(text), size};
}

/// Stores a span in a record of the library.
inline void store(const pkider_bytes_t& span, uint64_t& out_len, const uint8_t*& out) {
    out_len = span.size;
    out = span.data;
}

/// The same for a record whose lengths have 32 bits; the size was checked.
inline void store(const pkider_bytes_t& span, uint32_t& out_len, const uint8_t*& out) {
    out_len = static_cast<uint32_t>(span.size);
    out = span.data;
}

} // namespace pkider::c
