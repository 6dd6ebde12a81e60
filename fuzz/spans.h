// Spans of a record against the input they were read from.
#pragma once

#include <cstdint>

/// Whether all `len` bytes at `data` belong to the `size` bytes at `begin`; addresses are compared as numbers.
inline bool lies_inside(uint64_t len, const uint8_t* data, const uint8_t* begin, uint64_t size) {
    const auto offset = reinterpret_cast<uintptr_t>(data) - reinterpret_cast<uintptr_t>(begin);
    return data != nullptr && offset <= size && len <= size - offset;
}

inline bool is_none(uint32_t len, const uint8_t* data) {
    return len == 0 && data == nullptr;
}
