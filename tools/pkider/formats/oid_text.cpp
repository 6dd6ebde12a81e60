#include "tools/pkider/formats/oid_text.h"

#include "tools/pkider/formats/der_cursor.h"

#include <pkider/oid.h>

#include <algorithm>
#include <cstdint>
#include <vector>

namespace tool {
namespace {

constexpr std::size_t max_subidentifier_size = 64;

constexpr bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

std::string_view take_arc(std::string_view& dotted) {
    const std::size_t size = dotted.find('.');
    const std::string_view arc = dotted.substr(0, size);
    dotted.remove_prefix(size == std::string_view::npos ? dotted.size() : size + 1);
    return arc;
}

std::string_view without_leading_zeros(std::string_view arc) {
    arc.remove_prefix(std::min(arc.find_first_not_of('0'), arc.size()));
    return arc;
}

bool fits_into_32_bits(std::string_view arc) {
    constexpr std::string_view largest = "4294967295";
    arc = without_leading_zeros(arc);
    return arc.size() < largest.size() || (arc.size() == largest.size() && arc <= largest);
}

// A number of any size, as decimal digits with the lowest first.
class decimal_t {
  public:
    void multiply_and_add(unsigned factor, unsigned summand) {
        unsigned carry = summand;
        for (std::uint8_t& digit : m_digits) {
            const unsigned sum = digit * factor + carry;
            digit = static_cast<std::uint8_t>(sum % 10);
            carry = sum / 10;
        }
        for (; carry != 0; carry /= 10) m_digits.push_back(static_cast<std::uint8_t>(carry % 10));
    }

    // The number must be at least as large.
    void subtract(unsigned small) {
        for (std::size_t i = 0; small != 0; ++i) {
            const unsigned low = small % 10;
            small /= 10;
            if (m_digits[i] < low) {
                m_digits[i] = static_cast<std::uint8_t>(m_digits[i] + 10);
                ++small;
            }
            m_digits[i] = static_cast<std::uint8_t>(m_digits[i] - low);
        }
        while (!m_digits.empty() && m_digits.back() == 0) m_digits.pop_back();
    }

    bool below(unsigned limit) const {
        unsigned value = 0;
        for (auto digit = m_digits.rbegin(); digit != m_digits.rend(); ++digit) {
            value = value * 10 + *digit;
            if (value >= limit) return false;
        }
        return true;
    }

    std::string text() const {
        if (m_digits.empty()) return "0";
        std::string out;
        for (auto digit = m_digits.rbegin(); digit != m_digits.rend(); ++digit) out += static_cast<char>('0' + *digit);
        return out;
    }

  private:
    std::vector<std::uint8_t> m_digits;
};

// The first subidentifier is 40 times the first arc plus the second, and only the first arc 2 has seconds above 39.
std::string first_two_arcs(decimal_t number) {
    const unsigned first = number.below(40) ? 0 : number.below(80) ? 1 : 2;
    number.subtract(40 * first);
    return std::to_string(first) + "." + number.text();
}

} // namespace

std::optional<std::string> oid_contents(std::string_view dotted) {
    std::uint8_t contents[512];
    const std::uint64_t size = oid_str_to_asn_(dotted.data(), dotted.data() + dotted.size(), contents);
    if (size == 0) return std::nullopt;
    return std::string(as_text({contents, static_cast<std::size_t>(size)}));
}

std::string why_no_oid(std::string_view dotted) {
    if (dotted.empty()) return "there is no OID";
    if (!std::ranges::all_of(dotted, [](char c) { return is_digit(c) || c == '.'; })) {
        return "an OID is digits and dots only";
    }
    std::string_view rest = dotted;
    const std::string_view first = take_arc(rest);
    if (first.empty()) return "the first arc is missing";
    const std::string_view value = without_leading_zeros(first);
    if (value.size() > 1 || value > "2") return "the first arc is above 2";
    if (first.size() == dotted.size()) return "a single arc is no OID";
    if (dotted.back() == '.') return "an arc is missing after the last dot";
    while (!rest.empty()) {
        const std::string_view arc = take_arc(rest);
        if (arc.empty()) return "an arc is missing between two dots";
        if (!fits_into_32_bits(arc)) return "the arc " + std::string(arc) + " is above 4294967295";
    }
    return "it takes more than 506 bytes";
}

std::optional<std::string> oid_dotted(std::string_view contents) {
    const bytes_t bytes = as_bytes(contents);
    std::string dotted;
    if (!oid_asn_to_str_(bytes.data(), bytes.data() + bytes.size(), dotted)) return std::nullopt;
    return dotted;
}

std::optional<std::string> exact_oid_dotted(std::string_view contents) {
    std::string dotted;
    decimal_t number;
    std::size_t size = 0; // octets of the subidentifier so far
    for (const std::uint8_t byte : as_bytes(contents)) {
        if (++size > max_subidentifier_size) return std::nullopt;
        number.multiply_and_add(128, byte & 0x7Fu);
        if ((byte & 0x80u) != 0) continue;
        dotted += dotted.empty() ? first_two_arcs(number) : "." + number.text();
        number = {};
        size = 0;
    }
    if (dotted.empty() || size != 0) return std::nullopt;
    return dotted;
}

bool has_leading_zeros(std::string_view dotted) {
    while (!dotted.empty()) {
        const std::string_view arc = take_arc(dotted);
        if (arc.size() > 1 && arc.front() == '0') return true;
    }
    return false;
}

} // namespace tool
