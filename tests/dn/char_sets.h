// The character sets of the printable form, spelled a second time.
#pragma once

#include <string_view>

namespace pkider_test {

/// What must be escaped in a value: as in RFC 4514 2.4, the number sign in every place, and the equals sign.
inline bool is_special_char(int c) {
    return std::string_view("\"#+,;<=>\\").find(static_cast<char>(c)) != std::string_view::npos;
}

/// The alphabet of PrintableString (X.680 41.4).
inline bool is_printable_string_char(int c) {
    if ((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) return true;
    return std::string_view(" '()+,-./:=?").find(static_cast<char>(c)) != std::string_view::npos;
}

} // namespace pkider_test
