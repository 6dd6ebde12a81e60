#include "tools/pkider/time_text.h"

#include <string_view>

namespace tool {
namespace {

constexpr int days_in_month[] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

int two_digits(std::string_view digits, std::size_t at) {
    return (digits[at] - '0') * 10 + (digits[at + 1] - '0');
}

} // namespace

std::optional<std::string> time_text(std::uint8_t tag, bytes_t contents) {
    std::string digits(contents.begin(), contents.end());
    if (digits.empty() || digits.back() != 'Z') return std::nullopt;
    digits.pop_back();
    if (digits.find_first_not_of("0123456789") != std::string::npos) return std::nullopt;
    if (tag == utc_time_tag && digits.size() == 12) {
        digits.insert(0, two_digits(digits, 0) < 50 ? "20" : "19"); // RFC 5280 4.1.2.5.1
    }
    if (digits.size() != 14) return std::nullopt;

    const int month = two_digits(digits, 4);
    if (month < 1 || month > 12) return std::nullopt;
    const int day = two_digits(digits, 6);
    if (day < 1 || day > days_in_month[month - 1]) return std::nullopt;
    if (two_digits(digits, 8) > 23 || two_digits(digits, 10) > 59 || two_digits(digits, 12) > 59) return std::nullopt;

    for (const std::size_t at : {4U, 7U}) digits.insert(at, "-");
    digits.insert(10, "T");
    for (const std::size_t at : {13U, 16U}) digits.insert(at, ":");
    return digits + "Z";
}

} // namespace tool
