#include "platform/kodex.h"

#include "platform/utf8.h"

namespace pkider {
namespace {

template <int UnitSize>
uint32_t read_unit(const uint8_t* at) {
    uint32_t value = 0;
    for (int i = 0; i < UnitSize; ++i) value = value << 8 | at[i];
    return value;
}

constexpr bool is_scalar_value(uint32_t code) {
    return code < 0xD800 || (code > 0xDFFF && code <= 0x10FFFF);
}

template <int UnitSize>
uint64_t outsize(const uint8_t* in, uint64_t size) {
    if (size % UnitSize != 0) return 0;
    uint64_t total = 0;
    for (uint64_t i = 0; i < size; i += UnitSize) {
        const uint32_t code = read_unit<UnitSize>(in + i);
        if (!is_scalar_value(code)) return 0;
        total += utf8_size(code);
    }
    return total;
}

template <int UnitSize>
uint64_t convert(const uint8_t* in, uint64_t size, char* out, uint64_t out_size) {
    if (size % UnitSize != 0) return 0;
    char* at = out;
    char* const end = out + out_size;
    for (uint64_t i = 0; i < size; i += UnitSize) {
        const uint32_t code = read_unit<UnitSize>(in + i);
        if (!is_scalar_value(code) || static_cast<uint64_t>(end - at) < utf8_size(code)) return 0;
        at = put_utf8(code, at);
    }
    return static_cast<uint64_t>(at - out);
}

} // namespace

uint64_t kodex_converter_t::get_outsize(const uint8_t* in, uint64_t size) const {
    if (m_target != kodex_codepage_t::UTF8) return 0;
    if (m_source == kodex_codepage_t::BMP) return outsize<2>(in, size);
    if (m_source == kodex_codepage_t::UNIVERSAL) return outsize<4>(in, size);
    return 0;
}

uint64_t kodex_converter_t::convert_safe(const uint8_t* in, uint64_t size, char* out, uint64_t out_size) const {
    if (m_target != kodex_codepage_t::UTF8) return 0;
    if (m_source == kodex_codepage_t::BMP) return convert<2>(in, size, out, out_size);
    if (m_source == kodex_codepage_t::UNIVERSAL) return convert<4>(in, size, out, out_size);
    return 0;
}

} // namespace pkider
