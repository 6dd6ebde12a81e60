// Writers that count their sizes first and then fill one block from front to back, without a copy for each level of
// nesting. Sizes and headers follow der/asn_header.h. The reference for the bytes is der/asn_writer.h.
//
//     const uint64_t inner = asn_checked_element_size(key.key_len);
//     asn_replace_by_block(out, asn_checked_element_size(inner), {key.key}, [&](uint8_t* at) {
//         at = asn_put_header(at, asn_tag_t::SEQUENCE, inner);
//         at = asn_put_header(at, asn_tag_t::OCTET_STRING, key.key_len);
//         asn_put_bytes(at, key.key, key.key_len);
//     });
#pragma once

#include "der/asn_header.h"
#include "der/checked_size.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>
#include <utility>

namespace pkider {

/// @throws std::length_error, always.
[[noreturn]] void asn_refuse_length();

/// asn_element_size for contents of any size.
///
/// @throws std::length_error when no header can precede them. A sum of a few results cannot wrap.
inline uint64_t asn_checked_element_size(uint64_t content_size) {
    if (content_size > asn_max_content_size) asn_refuse_length();
    return asn_element_size(content_size);
}

/// Copies `count` bytes to `at`; a null `bytes` means zeros. Returns the place after them.
inline uint8_t* asn_put_bytes(uint8_t* at, const uint8_t* bytes, uint64_t count) {
    if (bytes == nullptr) {
        std::memset(at, 0, static_cast<std::size_t>(count));
    } else {
        std::memcpy(at, bytes, static_cast<std::size_t>(count));
    }
    return at + count;
}

/// Copies a constant to `at` and returns the place after it.
template <std::size_t Size>
uint8_t* asn_put_constant(uint8_t* at, const std::array<uint8_t, Size>& bytes) {
    std::memcpy(at, bytes.data(), Size);
    return at + Size;
}

/// Lengthens `out` by `size` bytes, which the caller fills, and returns the first of them.
///
/// For a string whose room was reserved: what is between large spans is put there, the spans are appended. The zeros
/// written first cost less than pieces gathered elsewhere and copied. Bench: pkcs12/write.
inline uint8_t* asn_append_room(std::string& out, uint64_t size) {
    out.append(checked_size(size), '\0');
    return reinterpret_cast<uint8_t*>(out.data()) + out.size() - size;
}

/// Appends `count` bytes; a null `bytes` means zeros.
inline void asn_append_bytes(std::string& out, const uint8_t* bytes, uint64_t count) {
    if (bytes == nullptr) {
        out.append(checked_size(count), '\0');
    } else {
        out.append(reinterpret_cast<const char*>(bytes), checked_size(count));
    }
}

/// True when `bytes` point into the storage of `out`, as those of a record that was read from it.
inline bool asn_points_into(const uint8_t* bytes, const std::string& out) {
    return reinterpret_cast<uintptr_t>(bytes) - reinterpret_cast<uintptr_t>(out.data()) < out.capacity();
}

/// Whether one of these addresses is in `out`.
inline bool asn_any_points_into(std::initializer_list<const uint8_t*> inputs, const std::string& out) {
    for (const uint8_t* const input : inputs)
        if (asn_points_into(input, out)) return true;
    return false;
}

/// Replaces `out` by `size` bytes that `fill(first)` writes, all of them.
///
/// An `out` with room enough is filled in place, without an allocation and a second copy.
/// Bench: pkcs8/write, pkcs8/encrypted_write.
///
/// @param inputs  The spans that `fill` reads. Each of them may be in `out`, which is then kept until all is written.
/// @throws        std::bad_alloc, std::length_error; `out` is then unchanged.
template <typename Fill>
void asn_replace_by_block(std::string& out, uint64_t size, std::initializer_list<const uint8_t*> inputs, Fill fill) {
    if (size <= out.capacity() && !asn_any_points_into(inputs, out)) {
        if (out.size() != size) out.resize(static_cast<std::size_t>(size));
        fill(reinterpret_cast<uint8_t*>(out.data()));
        return;
    }
    std::string block(checked_size(size), '\0');
    fill(reinterpret_cast<uint8_t*>(block.data()));
    out = std::move(block);
}

} // namespace pkider
