#include "der/uint32_content.h"

namespace pkider {

uint8_t* asn_put_uint32_content(uint8_t* at, uint32_t value) {
    if (value == 0) {
        *at++ = 0;
        return at;
    }
    bool first = true;
    for (int shift = 24; shift >= 0; shift -= 8) {
        const auto byte = static_cast<uint8_t>(value >> shift);
        if (byte == 0) continue;
        if (first && byte >= 0x80) *at++ = 0; // keeps the number positive, X.690 8.3.3
        *at++ = byte;
        first = false;
    }
    return at;
}

void asn_add_uint32_content(uint32_t value, std::string& out) {
    uint8_t content[asn_max_uint32_content_size];
    const uint8_t* const end = asn_put_uint32_content(content, value);
    out.append(reinterpret_cast<const char*>(content), static_cast<std::size_t>(end - content));
}

} // namespace pkider
