#include "tools/pkider/explain/dn_fault.h"

#include "tools/pkider/formats/oid_text.h"
#include "tools/pkider/formats/utf8.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace tool {
namespace {

constexpr std::string_view special_characters = "\"#+,;<=>\\";
constexpr std::string_view blanks = " \t";
constexpr const char* how_to_write = "write an attribute as TYPE=value, for example CN=Server";

constexpr bool is_hex_digit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}

std::string in_quotes(std::string_view text) {
    return "'" + std::string(text) + "'";
}

std::string_view character_at(std::string_view text, std::size_t offset) {
    return text.substr(offset, next_utf8(text.substr(offset)).size);
}

// The records before the fault, or all of them. They point into the line.
std::vector<RDNdescr_t> split(const std::string& line) {
    std::vector<RDNdescr_t> records;
    printable_dn_parse(line.c_str(), records);
    return records;
}

// Codes 1 and 3 end the splitting of the line; the fault is after the last whole record.
class split_fault_t {
  public:
    explicit split_fault_t(const std::string& line) : m_line(line) {
        const std::vector<RDNdescr_t> records = split(m_line);
        m_first = records.empty();
        if (!m_first) m_separator = static_cast<std::size_t>(records.back().value_end - m_line.c_str());
        const std::size_t start = m_first ? 0 : m_separator + 1;
        m_type_begin = std::min(m_line.find_first_not_of(blanks, start), m_line.size());
    }

    void explain_type(line_fault_t& out) const {
        if (m_type_begin == m_line.size()) {
            out.offset = m_separator + 1;
            out.words = "nothing follows the " + separator_text();
            out.advice = "remove it, or write '\\" + m_line.substr(m_separator, 1) + "' if it belongs to the value";
            return;
        }
        if (m_line[m_type_begin] == '=') {
            out.offset = m_type_begin;
            out.words = "no attribute type before the '='";
            out.advice = how_to_write;
            return;
        }
        const std::size_t type_end = std::min(m_line.find_first_of(" \t=", m_type_begin), m_line.size());
        const std::string type = in_quotes(std::string_view(m_line).substr(m_type_begin, type_end - m_type_begin));
        out.offset = std::min(m_line.find_first_not_of(blanks, type_end), m_line.size());
        out.words = "expected '=' after the attribute type " + type;
        out.advice = m_first ? how_to_write
                             : "if the " + separator_text() + " before it belongs to the value, write '\\" +
                                   m_line.substr(m_separator, 1) + "' or put the value in double quotes";
    }

    void explain_quotes(line_fault_t& out) const {
        out.offset = std::min(m_line.find('=', m_type_begin), m_line.size() - 1) + 1;
        out.words = "a double quote of this value is not closed";
        out.advice = "close it, or write '\\\"' for a double quote that belongs to the value";
    }

  private:
    std::string separator_text() const { return in_quotes(std::string_view(m_line).substr(m_separator, 1)); }

    const std::string& m_line;
    bool m_first = true;
    std::size_t m_separator = 0;
    std::size_t m_type_begin = 0;
};

// Escapes and special characters of an unquoted value (DN_FAULT_BACKSLASH_AT_END and later), found as the library finds
// them.
void explain_plain_value(std::string_view value, line_fault_t& out) {
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (special_characters.find(value[i]) == std::string_view::npos) continue;
        if (value[i] != '\\') {
            out.offset += i;
            out.words = in_quotes(value.substr(i, 1)) + " is not escaped in an unquoted value";
            out.advice = value[i] == '"'
                             ? "write '\\\"', or let the quotes enclose the whole value, blanks included"
                             : "write '\\" + std::string(value.substr(i, 1)) + "' or put the value in double quotes";
            return;
        }
        const std::size_t escaped = i + 1;
        if (escaped == value.size()) {
            out.offset += i;
            out.words = "a backslash ends the value";
            out.advice = "write '\\\\' for a backslash";
            return;
        }
        if (is_hex_digit(value[escaped])) {
            const std::size_t second = escaped + 1;
            if (second == value.size() || !is_hex_digit(value[second])) {
                out.offset += second;
                out.words = "a second hex digit is missing after " + in_quotes(value.substr(i, 2));
                out.advice = "write two hex digits for a byte, or '\\\\' for a backslash";
                return;
            }
            ++i;
        } else if (special_characters.find(value[escaped]) == std::string_view::npos) {
            out.offset += escaped;
            out.words = in_quotes("\\" + std::string(character_at(value, escaped))) + " is not an escape";
            out.advice = "write '\\\\' for a backslash; two hex digits or one of \" # + , ; < = > \\ may follow '\\'";
            return;
        }
        ++i;
    }
}

void explain_hex_value(std::string_view digits, line_fault_t& out) {
    out.advice = "a whole DER element in hex digits must follow '#'; write '\\#' for a value that begins with '#'";
    switch (out.code) {
    case DN_FAULT_HEX_COUNT:
        out.words =
            digits.size() < 4 ? "fewer than four hex digits after '#'" : "an odd number of hex digits after '#'";
        return;
    case DN_FAULT_HEX_DIGIT: {
        const auto bad = std::ranges::find_if_not(digits, is_hex_digit);
        const std::size_t index = static_cast<std::size_t>(bad - digits.begin());
        out.words = in_quotes(character_at(digits, index)) + " is no hex digit";
        out.offset += 1 + index;
        return;
    }
    default:
        out.words = "the bytes after '#' are not a whole DER element";
        return;
    }
}

void explain_value(std::string_view value, line_fault_t& out) {
    if (value.size() >= 2 && value.front() == '"' && value.back() == '"') {
        out.offset += value.size() - 2; // DN_FAULT_BACKSLASH_AT_END, the only one between quotes
        out.words = "a backslash ends the value";
        out.advice = "the closing double quote needs an even number of backslashes before it";
    } else if (value.size() >= 2 && value.front() == '#') {
        explain_hex_value(value.substr(1), out);
    } else {
        explain_plain_value(value, out);
    }
}

void explain_unknown_type(std::string_view type, line_fault_t& out) {
    out.words = in_quotes(type) + " is neither a known short name nor an OID in dotted form";
    if (!type.empty() && (type.front() == ',' || type.front() == '+')) {
        out.advice = "there is a separator too many before it";
    } else if (!type.empty() && type.find_first_not_of("0123456789.") == std::string_view::npos) {
        out.advice = why_no_oid(type);
    } else {
        out.advice = "'pkider map list' shows the known names; others are written as OID, or added with --config-dir";
    }
}

// Faults of one record, not of the line as a whole. Positions have 16 bits, so the faulty record is found by reading
// each one on its own, for a line of any length.
void explain_record(const std::string& line, oid_map_handle_t map, line_fault_t& out) {
    for (const RDNdescr_t& record : split(line)) {
        std::string ignored;
        const asn_dn_result_t result =
            printable_dn_normalize_r(std::string(record.type_begin, record.value_end), ignored, nullptr, map);
        if (!asn_dn_fault_is_of_line(result.code)) continue;
        const bool is_type = out.code == DN_FAULT_TYPE_UNKNOWN;
        const char* const start = is_type ? record.type_begin : record.value_begin;
        out.offset = static_cast<std::size_t>(start - line.c_str());
        if (is_type) return explain_unknown_type({record.type_begin, record.type_end}, out);
        return explain_value({record.value_begin, record.value_end}, out);
    }
}

} // namespace

line_fault_t explain_line_fault(const std::string& line, asn_dn_result_t result, oid_map_handle_t map) {
    line_fault_t out{result.code, result.position, 0, {}, {}};
    if (out.code == DN_FAULT_TYPE_SYNTAX) {
        split_fault_t(line).explain_type(out);
    } else if (out.code == DN_FAULT_UNBALANCED_QUOTE) {
        split_fault_t(line).explain_quotes(out);
    } else {
        explain_record(line, map, out);
    }
    return out;
}

} // namespace tool
