// The character sets of the printable form of a distinguished name, one table look-up a character. Fixed and ASCII:
// neither the locale nor the sign of `char` has a say.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace pkider {

enum char_class_t : uint8_t {
    CHAR_SPECIAL = 0x01,       ///< One of the nine that must be escaped in an unquoted value.
    CHAR_NOT_PRINTABLE = 0x02, ///< Outside the alphabet of PrintableString (X.680 41.4).
    CHAR_NOT_ASCII = 0x04,     ///< A byte of a UTF-8 sequence.
    CHAR_ENDS_TYPE = 0x08,     ///< Blank, tab, "=" or NUL.
    CHAR_STOPS_VALUE = 0x10,   ///< Of meaning while a value is scanned: quote, backslash, "+", "," or NUL.
    CHAR_BLANK = 0x20,         ///< Blank or tab.
};

inline constexpr std::string_view special_chars = "\"#+,;<=>\\";
inline constexpr std::string_view printable_chars = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"
                                                    " '()+,-./:=?";

inline constexpr std::array<uint8_t, 256> char_classes = [] {
    using namespace std::string_view_literals;
    std::array<uint8_t, 256> table{};
    for (std::size_t c = 0; c < 256; ++c) table[c] = c < 0x80 ? CHAR_NOT_PRINTABLE : CHAR_NOT_ASCII;
    for (const char c : printable_chars) table[static_cast<uint8_t>(c)] = 0;
    const auto add = [&table](std::string_view set, char_class_t char_class) {
        for (const char c : set) table[static_cast<uint8_t>(c)] |= char_class;
    };
    add(special_chars, CHAR_SPECIAL);
    add(" \t=\0"sv, CHAR_ENDS_TYPE);
    add("\"\\+,\0"sv, CHAR_STOPS_VALUE);
    add(" \t"sv, CHAR_BLANK);
    return table;
}();

constexpr uint8_t char_class(char c) {
    return char_classes[static_cast<uint8_t>(c)];
}

inline constexpr uint8_t not_a_hex_digit = 0xFF;

inline constexpr std::array<uint8_t, 256> hex_digit_values = [] {
    std::array<uint8_t, 256> table{};
    table.fill(not_a_hex_digit);
    for (uint8_t value = 0; value < 16; ++value) {
        table[static_cast<uint8_t>("0123456789ABCDEF"[value])] = value;
        table[static_cast<uint8_t>("0123456789abcdef"[value])] = value;
    }
    return table;
}();

constexpr uint8_t hex_digit_value(char c) {
    return hex_digit_values[static_cast<uint8_t>(c)];
}

} // namespace pkider
