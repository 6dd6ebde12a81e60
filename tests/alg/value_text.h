// An algorithm in assertions: eight hexadecimal digits, in which its three fields can be seen.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

namespace pkider_test {

inline std::string value_text(uint32_t alg) {
    char text[sizeof "0x00000000"];
    std::snprintf(text, sizeof text, "0x%08X", static_cast<unsigned>(alg));
    return text;
}

} // namespace pkider_test
