// The reference for all writers: one DER element under construction, whose contents grow at the end and whose header is
// encoded again after every operation. Elements nest bottom-up: a child is filled and then appended, whole, to its
// parent.
//
// No source of the library writes with it. The writers of keys, files and Names count their sizes first and fill one
// block (der/asn_block.h), without a copy for each level; the tests and fuzz targets write the same once more with
// asn_writer_t, and both must agree to the byte.
//
//     asn_writer_t<32> algorithm(0x30);
//     algorithm.append(oid);                       // another writer
//     out.assign(algorithm.data(), algorithm.data() + algorithm.size());
#pragma once

#include "der/asn_header.h"
#include "der/checked_size.h"
#include "der/uint32_content.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <stdexcept>

namespace pkider {

/// A local value of one writer function: neither copied, moved, shared nor returned.
///
/// @tparam InlineSize  Capacity before the heap is used, header area included.
template <std::size_t InlineSize>
struct asn_writer_t {
    uint8_t tag;           ///< The identifier octet, fixed at construction.
    uint64_t encoded_size; ///< Size of the whole encoding.
    uint8_t* buffer;       ///< `inline_storage`, or a heap block that the writer owns.
    uint64_t capacity;     ///< Size of the storage at `buffer`, as far as growth is concerned.
    uint64_t content_size; ///< Number of contents bytes.
    /// Never shorter than the header area, so that the header can be written with any capacity.
    uint8_t inline_storage[std::max<std::size_t>(InlineSize, asn_max_header_size)];

    explicit asn_writer_t(uint8_t identifier)
        : tag(identifier), encoded_size(0), buffer(inline_storage), capacity(InlineSize), content_size(0) {
        encode_header();
    }
    asn_writer_t(const asn_writer_t&) = delete;
    asn_writer_t& operator=(const asn_writer_t&) = delete;
    ~asn_writer_t() {
        if (buffer != inline_storage) delete[] buffer;
    }

    /// Appends `count` bytes to the contents. A null `bytes` appends that many zeros.
    ///
    /// @throws std::length_error when the contents would exceed 0xFFFFFFFF bytes, std::bad_alloc. The writer is then as
    ///         it was.
    void append(const uint8_t* bytes, uint64_t count) {
        if (count > asn_max_content_size - content_size) throw std::length_error("pkider: DER element too long");
        reserve(count);
        uint8_t* const end = buffer + header_area + content_size;
        if (bytes != nullptr && count != 0) std::memcpy(end, bytes, static_cast<std::size_t>(count));
        if (bytes == nullptr && count != 0) std::memset(end, 0, static_cast<std::size_t>(count));
        content_size += count;
        encode_header();
    }

    /// Appends the whole encoding of `child`.
    template <std::size_t ChildSize>
    void append(const asn_writer_t<ChildSize>& child) {
        append(child.data(), child.size());
    }

    /// Completes an element without contents, such as NULL.
    void finish() {
        reserve(0);
        encode_header();
    }

    /// First byte of the encoding; size() bytes of it are valid until the next append.
    const uint8_t* data() const { return buffer + header_area + content_size - encoded_size; }
    uint64_t size() const { return encoded_size; }

  private:
    static constexpr uint64_t header_area = asn_max_header_size;
    static constexpr uint64_t growth_slack = 16;

    void reserve(uint64_t count) {
        const uint64_t needed = content_size + count + header_area;
        if (capacity >= needed) return;

        const uint64_t new_capacity = needed + growth_slack;
        uint8_t* const grown = new uint8_t[checked_size(new_capacity)];
        std::memcpy(grown, buffer, static_cast<std::size_t>(content_size + header_area));
        if (buffer != inline_storage) delete[] buffer;
        buffer = grown;
        capacity = new_capacity;
    }

    void encode_header() {
        asn_put_header_before(buffer + header_area, tag, content_size);
        encoded_size = asn_element_size(content_size);
    }
};

} // namespace pkider
