// A row of the catalogue: an algorithm and the bytes that stand for it, written as hexadecimal text and turned into
// bytes by the compiler.
//
//     constexpr alg_row_t rows[] = {{PKI_ALG_SHA1, oid<"2B 0E 03 02 1A">}};   // 1.3.14.3.2.26
#pragma once

#include <pkider/alg.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace pkider {

struct alg_row_t {
    pki_alg_t alg;
    PKI_OID oid;
};

/// What every lookup of a record answers when it finds none.
inline constexpr PKI_OID empty_oid{};

/// Hexadecimal text as a template argument: two digits a byte, one blank between bytes.
template <std::size_t Size>
struct hex_text_t {
    char text[Size]{};

    consteval hex_text_t(const char (&literal)[Size]) {
        for (std::size_t i = 0; i < Size; ++i) text[i] = literal[i];
    }
};

constexpr int hex_digit_value(char digit) {
    if (digit >= '0' && digit <= '9') return digit - '0';
    if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
    throw "not an upper-case hexadecimal digit";
}

template <std::size_t Size>
constexpr auto to_byte_array(const hex_text_t<Size>& hex) {
    static_assert(Size % 3 == 0, "two digits a byte and one blank between bytes");
    std::array<uint8_t, Size / 3> bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const char* const at = hex.text + 3 * i;
        if (at[2] != ' ' && at[2] != '\0') throw "one blank between bytes";
        bytes[i] = static_cast<uint8_t>(hex_digit_value(at[0]) << 4 | hex_digit_value(at[1]));
    }
    return bytes;
}

template <hex_text_t Hex>
inline constexpr auto hex_bytes = to_byte_array(Hex);

template <hex_text_t Hex>
inline constexpr PKI_OID oid{hex_bytes<Hex>.data(), static_cast<uint32_t>(hex_bytes<Hex>.size())};

} // namespace pkider
