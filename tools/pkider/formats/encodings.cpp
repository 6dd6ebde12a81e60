#include "tools/pkider/formats/encodings.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

namespace tool {
namespace {

constexpr std::string_view hex_digits = "0123456789ABCDEF";
constexpr std::string_view base64_digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr std::int8_t no_digit = -1;

constexpr std::array<std::int8_t, 256> digit_values(std::string_view digits) {
    std::array<std::int8_t, 256> values{};
    values.fill(no_digit);
    for (std::size_t i = 0; i < digits.size(); ++i) {
        values[static_cast<unsigned char>(digits[i])] = static_cast<std::int8_t>(i);
    }
    return values;
}

constexpr std::array<std::int8_t, 256> base64_values = digit_values(base64_digits);

constexpr int hex_value(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return no_digit;
}

constexpr bool is_space(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

} // namespace

void append_hex(std::string& out, std::string_view bytes) {
    for (const char c : bytes) {
        const unsigned char byte = static_cast<unsigned char>(c);
        out += hex_digits[byte >> 4];
        out += hex_digits[byte & 0x0F];
    }
}

std::string to_hex(std::string_view bytes) {
    std::string out;
    out.reserve(2 * bytes.size());
    append_hex(out, bytes);
    return out;
}

std::string to_base64(std::string_view bytes, std::size_t width) {
    const std::size_t num_digits = (bytes.size() + 2) / 3 * 4;
    std::string out;
    out.reserve(num_digits + (width == 0 ? 0 : num_digits / width)); // once: an outgrown buffer would not be wiped
    std::size_t in_line = 0;
    const auto put = [&](char digit) {
        if (width != 0 && in_line == width) {
            out += '\n';
            in_line = 0;
        }
        out += digit;
        ++in_line;
    };
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::size_t present = std::min<std::size_t>(3, bytes.size() - i);
        std::uint32_t group = 0;
        for (std::size_t k = 0; k < 3; ++k) {
            group = group << 8 | (k < present ? static_cast<unsigned char>(bytes[i + k]) : 0u);
        }
        for (std::size_t k = 0; k < 4; ++k) put(k <= present ? base64_digits[group >> (18 - 6 * k) & 0x3F] : '=');
    }
    return out;
}

std::optional<secret_t> from_hex(std::string_view text) {
    secret_t out(text.size() / 2);
    std::size_t size = 0;
    for (std::size_t i = 0; i < text.size();) {
        if (is_space(text[i]) || text[i] == ':') {
            ++i;
            continue;
        }
        const int high = hex_value(text[i]);
        const int low = i + 1 < text.size() ? hex_value(text[i + 1]) : no_digit;
        if (high < 0 || low < 0) return std::nullopt;
        out.data()[size++] = static_cast<std::uint8_t>(high << 4 | low);
        i += 2;
    }
    out.resize(size);
    return out;
}

std::optional<secret_t> from_base64(std::string_view text) {
    secret_t out(text.size() / 4 * 3);
    std::size_t size = 0;
    const auto put = [&](std::uint32_t byte) { out.data()[size++] = static_cast<std::uint8_t>(byte); };
    std::uint32_t bits = 0;
    std::size_t digits = 0; // of the group of four
    std::size_t padding = 0;
    for (const char c : text) {
        if (is_space(c)) continue;
        if (c == '=') {
            ++padding;
            continue;
        }
        const std::int8_t value = base64_values[static_cast<unsigned char>(c)];
        if (value < 0 || padding != 0) return std::nullopt;
        bits = bits << 6 | static_cast<std::uint32_t>(value);
        if (++digits < 4) continue;
        for (const int shift : {16, 8, 0}) put(bits >> shift);
        bits = 0;
        digits = 0;
    }
    const std::size_t wanted_padding = digits == 0 ? 0 : 4 - digits;
    if (digits == 1 || padding != wanted_padding) return std::nullopt;
    if (digits == 2) {
        if ((bits & 0x0F) != 0) return std::nullopt;
        put(bits >> 4);
    } else if (digits == 3) {
        if ((bits & 0x03) != 0) return std::nullopt;
        for (const int shift : {10, 2}) put(bits >> shift);
    }
    out.resize(size);
    return out;
}

} // namespace tool
