#include "tools/pkider/formats/der_integer.h"

#include "tools/pkider/formats/encodings.h"

#include <bit>

namespace tool {

bytes_t without_leading_zeros(bytes_t number) {
    while (number.size() > 1 && number[0] == 0) number = number.subspan(1);
    return number;
}

std::uint64_t bit_length(bytes_t number) {
    number = without_leading_zeros(number);
    if (number.empty()) return 0;
    return 8 * (number.size() - 1) + static_cast<std::uint64_t>(std::bit_width(number[0]));
}

std::string number_text(bytes_t number) {
    number = without_leading_zeros(number);
    if (number.size() > 8) return "0x" + to_hex(as_text(number));
    std::uint64_t value = 0;
    for (const std::uint8_t byte : number) value = value << 8 | byte;
    return std::to_string(value);
}

} // namespace tool
