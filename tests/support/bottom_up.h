// A second way to write what the counting writers write: each element is an asn_writer_t, filled with its finished
// children. Slow and plain; the counting writers must agree with it to the byte, odd lengths included.
#pragma once

#include "der/asn_writer.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>

namespace pkider_test {

/// The encoding of one element around finished pieces.
inline std::string bottom_up(uint8_t tag, std::initializer_list<std::string> pieces) {
    pkider::asn_writer_t<32> writer(tag);
    for (const std::string& piece : pieces) {
        writer.append(reinterpret_cast<const uint8_t*>(piece.data()), piece.size());
    }
    writer.finish();
    return {reinterpret_cast<const char*>(writer.data()), static_cast<std::size_t>(writer.size())};
}

/// The encoding of one element around a span of a record; a null span counts as zeros.
inline std::string bottom_up(uint8_t tag, const uint8_t* bytes, uint64_t size) {
    pkider::asn_writer_t<32> writer(tag);
    writer.append(bytes, size);
    return {reinterpret_cast<const char*>(writer.data()), static_cast<std::size_t>(writer.size())};
}

inline std::string bottom_up_count(uint32_t value) {
    std::string content;
    pkider::asn_add_uint32_content(value, content);
    return bottom_up(0x02, {content});
}

} // namespace pkider_test
