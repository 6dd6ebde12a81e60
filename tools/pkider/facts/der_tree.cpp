#include "tools/pkider/facts/der_tree.h"

#include "tools/pkider/base/count_text.h"
#include "tools/pkider/formats/der_names.h"
#include "tools/pkider/formats/encodings.h"
#include "tools/pkider/text/padded_text.h"
#include "tools/pkider/text/terminal_text.h"

#include <algorithm>

namespace tool {
namespace {

constexpr std::size_t bytes_a_line = 16;
constexpr std::size_t bytes_beside_tag = 8; // so few are shown on the line of the tag

/// "04 00 00 00 00 01 15 4B  5A C3 94 FF FE 00 41 42  |.......KZ.....AB|", the left part as wide as `num_columns`
/// bytes.
std::string hex_line(bytes_t bytes, std::size_t num_columns) {
    std::string line;
    std::string ascii;
    for (std::size_t i = 0; i < num_columns; ++i) {
        if (i != 0) line += i == bytes_a_line / 2 ? "  " : " ";
        line += i < bytes.size() ? to_hex(as_text(bytes.subspan(i, 1))) : "  ";
        if (i < bytes.size()) ascii += bytes[i] >= 0x20 && bytes[i] < 0x7F ? static_cast<char>(bytes[i]) : '.';
    }
    return line + "  |" + ascii + "|";
}

std::string hidden_text(std::uint64_t num_hidden) {
    return "... " + count_text(num_hidden, "more byte");
}

/// The bytes in lines after `indent` blanks, and how many more there are.
std::string dump_lines(bytes_t bytes, std::uint64_t num_hidden, std::size_t indent) {
    const std::string margin(indent, ' ');
    std::string out;
    for (std::size_t at = 0; at < bytes.size(); at += bytes_a_line) {
        out += margin + hex_line(bytes.subspan(at, std::min(bytes_a_line, bytes.size() - at)), bytes_a_line) + "\n";
    }
    if (num_hidden != 0) out += margin + hidden_text(num_hidden) + "\n";
    return out;
}

/// Two blanks a level. From the depth on that is shown on request only, the depth is a number: the output grows with
/// the input, not with the square of its nesting.
std::string nesting(std::uint32_t depth) {
    return depth < der_walk_options_t().max_depth ? std::string(2 * std::size_t{depth}, ' ')
                                                  : "depth " + std::to_string(depth) + ": ";
}

} // namespace

der_tree_t::der_tree_t(std::uint64_t size) : m_width(std::max<std::size_t>(4, std::to_string(size).size())) {}

/// The two columns before the tree: the offset to the right, the sizes to the left.
std::string der_tree_t::margin(std::uint64_t offset, const std::string& sizes) const {
    const std::string number = std::to_string(offset);
    return std::string(m_width - std::min(m_width, number.size()), ' ') + number + "  " + padded(sizes, m_width + 2) +
           "  ";
}

std::string der_tree_t::lines(const der_node_t& node, const der_value_t& value) const {
    const std::string indent = nesting(node.depth);
    const std::string sizes = std::to_string(node.header_len) + "+" + std::to_string(node.contents.size());
    std::string out = margin(node.offset, sizes) + indent + tag_name(node);
    if (node.opened) out += ", holds DER";
    if (node.too_deep) out += " ... below the depth limit, not shown";
    if (value.is_string) {
        out += " \"" + printable(value.text) + "\"";
    } else if (!value.text.empty()) {
        out += " " + printable(value.text);
    }
    const bool is_short = value.bytes.size() <= bytes_beside_tag;
    if (is_short && !value.bytes.empty()) out += " " + hex_line(value.bytes, value.bytes.size());
    if (is_short && value.num_hidden != 0) out += " " + hidden_text(value.num_hidden);
    out += "\n";
    return is_short ? out : out + dump_lines(value.bytes, value.num_hidden, 2 * m_width + 6 + indent.size() + 2);
}

std::string der_tree_t::fault_lines(const walk_fault_t& fault, bytes_t whole) const {
    std::string out = margin(fault.offset, "") + "FAULT: " + fault.found + "\n";
    if (fault.offset >= whole.size()) return out;
    const bytes_t rest = whole.subspan(fault.offset);
    const bytes_t shown = rest.first(std::min(bytes_a_line, rest.size()));
    return out + dump_lines(shown, rest.size() - shown.size(), 2 * m_width + 8);
}

json_t der_json(const der_node_t& node, const der_value_t& value) {
    json_t json = {
        {"offset", node.offset},
        {"depth", node.depth},
        {"header_length", node.header_len},
        {"content_length", node.contents.size()},
        {"identifier", node.identifier},
        {"constructed", node.constructed()},
        {"tag_number", node.tag_number},
        {"tag", tag_name(node)},
    };
    if (value.oid) {
        json.update(oid_json(*value.oid));
    } else if (value.is_string) {
        json["text"] = json_text(value.text);
    } else if (!value.text.empty()) {
        json["value"] = value.text;
    }
    if (!value.bytes.empty()) json["hex"] = to_hex(as_text(value.bytes));
    if (value.num_hidden != 0) json["hidden_bytes"] = value.num_hidden;
    if (node.opened) json["opened"] = true;
    if (node.too_deep) json["too_deep"] = true;
    return json;
}

} // namespace tool
