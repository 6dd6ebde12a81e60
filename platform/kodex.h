// Conversion between code pages, as far as the library needs it: the two wide string types of ASN.1 to UTF-8.
//
//     const kodex_converter_t converter(kodex_codepage_t::BMP, kodex_codepage_t::UTF8);
//     const uint64_t size = converter.get_outsize(bytes, num_bytes);                // 0: not convertible
//     std::string text(size, '\0');
//     if (size == 0 || converter.convert_safe(bytes, num_bytes, text.data(), size) == 0) ...
#pragma once

#include <cstdint>

namespace pkider {

enum class kodex_codepage_t : uint32_t {
    BMP = 2,       ///< Two octets a character, big-endian (X.690 8.23.7); no surrogate pairs.
    UNIVERSAL = 4, ///< Four octets a character, big-endian (X.690 8.23.6).
    UTF8 = 65001,
};

/// Converts BMP or UNIVERSAL to UTF8; every other pair of code pages is accepted and converts nothing.
///
/// Not convertible: a size that is not a whole number of characters, the surrogates U+D800 to U+DFFF, a value above
/// U+10FFFF. U+0000 and the noncharacters are convertible.
class kodex_converter_t {
  public:
    constexpr kodex_converter_t(kodex_codepage_t source, kodex_codepage_t target)
        : m_source(source), m_target(target) {}

    /// Size of the converted text in bytes, 0 when `in` is not convertible. So it is 0 for an empty `in` as well, and
    /// an empty string in a Name is a fault.
    /// Required: DnDecoderFault.IsReported/RequiredEmptyWideStringIsNotConvertible.
    uint64_t get_outsize(const uint8_t* in, uint64_t size) const;

    /// Converts into `out`, of which no more than `out_size` bytes are written.
    ///
    /// @return  Number of bytes written; 0 when `in` is not convertible or does not fit, and `out` may then hold a
    /// part.
    uint64_t convert_safe(const uint8_t* in, uint64_t size, char* out, uint64_t out_size) const;

  private:
    kodex_codepage_t m_source;
    kodex_codepage_t m_target;
};

} // namespace pkider
