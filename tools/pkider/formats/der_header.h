// Header octets for the few elements that the program builds itself (X.690 8.1.2, 8.1.3; the length is minimal).
#pragma once

#include <cstdint>
#include <string>

namespace tool {

inline std::string der_header(uint8_t identifier, std::size_t size) {
    std::string backwards;
    for (std::size_t left = size; left != 0; left >>= 8) backwards.push_back(static_cast<char>(left));
    if (size == 0) backwards.push_back('\0');
    if (size >= 0x80) backwards.push_back(static_cast<char>(0x80 | backwards.size()));
    backwards.push_back(static_cast<char>(identifier));
    return {backwards.rbegin(), backwards.rend()};
}

} // namespace tool
