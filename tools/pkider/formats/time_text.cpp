#include "tools/pkider/formats/time_text.h"

#include "tools/pkider/formats/tags.h"

#include <chrono>
#include <string_view>

namespace tool {
namespace {

unsigned number(std::string_view digits, std::size_t at, std::size_t size) {
    unsigned value = 0;
    for (const char digit : digits.substr(at, size)) value = value * 10 + static_cast<unsigned>(digit - '0');
    return value;
}

} // namespace

std::optional<std::string> time_text(std::uint8_t tag, bytes_t contents) {
    std::string digits(contents.begin(), contents.end());
    if (digits.empty() || digits.back() != 'Z') return std::nullopt;
    digits.pop_back();
    if (digits.find_first_not_of("0123456789") != std::string::npos) return std::nullopt;
    if (tag == utc_time_tag && digits.size() == 12) {
        digits.insert(0, number(digits, 0, 2) < 50 ? "20" : "19"); // RFC 5280 4.1.2.5.1
    }
    if (digits.size() != 14) return std::nullopt;

    const std::chrono::year year(static_cast<int>(number(digits, 0, 4)));
    const std::chrono::month month(number(digits, 4, 2));
    const std::chrono::day day(number(digits, 6, 2));
    if (!(year / month / day).ok()) return std::nullopt;
    if (number(digits, 8, 2) > 23 || number(digits, 10, 2) > 59 || number(digits, 12, 2) > 59) return std::nullopt;

    for (const std::size_t at : {4U, 7U}) digits.insert(at, "-");
    digits.insert(10, "T");
    for (const std::size_t at : {13U, 16U}) digits.insert(at, ":");
    return digits + "Z";
}

} // namespace tool
