#include "tools/pkider/formats/der_walker.h"

#include "tools/pkider/base/count_text.h"
#include "tools/pkider/formats/der_names.h"

#include <pkider/der.h>

namespace tool {
namespace {

constexpr std::uint8_t indefinite_length = 0x80;
constexpr std::uint64_t max_tag_octets = 9; // 63 bits of tag number
constexpr std::uint64_t max_levels = 1024;  // more than anything but an attack nests

/// Takes the tag number; gives the number of identifier octets, 0 when they are cut off or too many.
std::size_t read_identifier(bytes_t bytes, der_header_t& out) {
    if (bytes.empty()) return 0;
    out.identifier = bytes[0];
    out.tag_number = bytes[0] & tag_number_bits;
    if (out.tag_number != tag_number_bits) return 1;

    out.tag_number = 0;
    for (std::size_t i = 1; i < bytes.size() && i <= max_tag_octets; ++i) {
        out.tag_number = out.tag_number << 7 | (bytes[i] & 0x7F);
        if (bytes[i] < 0x80) return i + 1;
    }
    return 0;
}

/// What a value of this universal type cannot be without (X.690 8.2 to 8.19); other classes may hold anything.
bool has_plausible_contents(const der_header_t& header) {
    const std::uint64_t size = header.contents.size();
    switch (header.identifier) {
    case boolean_tag:
        return size == 1;
    case integer_tag:
    case oid_tag:
    case enumerated_tag:
        return size >= 1;
    case bit_string_tag:
        return size >= 1 && header.contents[0] < 8;
    case null_tag:
        return size == 0;
    default:
        break;
    }
    const bool universal = header.identifier < 0x40;
    if (!universal) return true;
    const bool is_sequence_or_set = header.tag_number == sequence_tag || header.tag_number == set_tag;
    return header.constructed() == is_sequence_or_set && header.tag_number != 0 && header.tag_number <= bmp_string_tag;
}

/// What `bytes` begin with when it is no header; empty when it is one, and then `needed` is the size of the element.
std::string explain_header(bytes_t bytes, std::uint64_t& needed) {
    der_header_t header;
    const std::size_t identifier_len = read_identifier(bytes, header);
    if (identifier_len == 0) {
        return bytes.size() > max_tag_octets ? "a tag number of more than 63 bits" : "a tag number that is cut off";
    }
    if (identifier_len == bytes.size()) return "no length octet";

    const std::uint8_t first = bytes[identifier_len];
    if (first == indefinite_length) return "a length of the indefinite form, which DER does not have";
    const std::size_t num_octets = first < 0x80 ? 0 : first & 0x7F;
    if (num_octets > 4) return "a length of " + std::to_string(num_octets) + " octets, more than 4";
    if (bytes.size() - identifier_len - 1 < num_octets) return "a length that is cut off";

    std::uint64_t length = first;
    if (num_octets != 0) length = 0;
    for (std::size_t i = 0; i < num_octets; ++i) length = length << 8 | bytes[identifier_len + 1 + i];
    needed = length + identifier_len + 1 + num_octets;
    return {};
}

} // namespace

bool read_der_header(bytes_t bytes, der_header_t& out) {
    const std::size_t identifier_len = read_identifier(bytes, out);
    if (identifier_len == 0) return false;

    // The library knows one identifier octet and, not asked for a tag, does not look at it: the last one will do.
    std::uint64_t length = 0;
    const std::uint64_t skipped = identifier_len - 1;
    const std::uint8_t* const contents =
        asn1_read_tag_(asn_tag_t::ANY, bytes.data() + skipped, bytes.size() - skipped, &length);
    if (contents == nullptr) return false;
    out.header_len = static_cast<std::uint64_t>(contents - bytes.data());
    out.contents = {contents, contents + length};
    return true;
}

bool holds_der(bytes_t bytes) {
    if (bytes.empty()) return false;
    // Everything is visited in the order of the bytes; only the ends of the elements around are kept.
    std::vector<const std::uint8_t*> ends;
    const std::uint8_t* at = bytes.data();
    const std::uint8_t* end = at + bytes.size();
    for (;;) {
        while (at == end) {
            if (ends.empty()) return true;
            end = ends.back();
            ends.pop_back();
        }
        der_header_t header;
        if (!read_der_header({at, end}, header) || !has_plausible_contents(header)) return false;
        at += header.header_len;
        if (header.constructed()) {
            if (ends.size() == max_levels) return false;
            ends.push_back(end);
            end = at + header.contents.size();
        } else {
            at += header.contents.size();
        }
    }
}

bytes_t der_in_string(const der_header_t& string) {
    bytes_t inner = string.contents;
    if (string.is(asn_tag_t::BIT_STRING)) {
        if (inner.empty() || inner[0] != 0) return {};
        inner = inner.subspan(1);
    } else if (!string.is(asn_tag_t::OCTET_STRING)) {
        return {};
    }
    return holds_der(inner) ? inner : bytes_t{};
}

der_walker_t::der_walker_t(bytes_t bytes, const der_walk_options_t& options)
    : m_bytes(bytes), m_options(options), m_at(options.offset) {
    if (m_at > bytes.size()) {
        m_fault = {m_at, "the end of the data at offset " + std::to_string(bytes.size())};
    }
}

const der_node_t* der_walker_t::next() {
    if (m_fault) return nullptr;
    while (!m_parents.empty() && m_at == m_parents.back().end) m_parents.pop_back();
    const std::uint64_t end = m_parents.empty() ? m_bytes.size() : m_parents.back().end;
    if (m_at == end) return nullptr;

    m_node = {};
    if (!read_der_header({m_bytes.data() + m_at, m_bytes.data() + end}, m_node)) {
        m_fault = {m_at, explain_fault(end)};
        return nullptr;
    }
    m_node.offset = m_at;
    m_node.depth = static_cast<std::uint32_t>(m_parents.size());
    step_into_or_over();
    return &m_node;
}

void der_walker_t::step_into_or_over() {
    const std::uint64_t end = m_at + m_node.header_len + m_node.contents.size();
    const bool may_enter = m_node.depth + 1 < m_options.max_depth;
    bytes_t inner;
    if (m_node.constructed()) {
        inner = m_node.contents;
        m_node.too_deep = !may_enter && !inner.empty();
    } else if (m_options.open_strings && may_enter) {
        inner = der_in_string(m_node);
        m_node.opened = !inner.empty();
    }
    if (inner.empty() || !may_enter) {
        m_at = end;
        return;
    }
    m_parents.push_back({end, m_node});
    m_at = end - inner.size();
}

std::string der_walker_t::explain_fault(std::uint64_t end) const {
    std::uint64_t needed = 0;
    const bytes_t left(m_bytes.data() + m_at, m_bytes.data() + end);
    std::string found = explain_header(left, needed);
    if (!found.empty()) return found;

    std::string where = "the data";
    if (!m_parents.empty()) {
        const der_node_t& parent = m_parents.back().node;
        where = "the " + tag_name(parent) + " at offset " + std::to_string(parent.offset);
    }
    return "an element of " + count_text(needed, "byte") + " where " + std::to_string(left.size()) + " are left in " +
           where;
}

} // namespace tool
