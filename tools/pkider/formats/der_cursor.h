// Walks DER through the library's header reader, and knows the offset of every element in the whole.
#pragma once

#include <pkider/der.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tool {

using bytes_t = std::span<const std::uint8_t>;

inline bytes_t as_bytes(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}
inline std::string_view as_text(bytes_t bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

struct der_element_t {
    std::uint8_t identifier = 0;
    std::uint64_t offset = 0; // of its identifier octet in the whole input
    bytes_t whole;            // header and contents
    bytes_t contents;

    std::uint64_t contents_offset() const { return offset + (whole.size() - contents.size()); }
    bool holds(bytes_t octets) const {
        return std::equal(contents.begin(), contents.end(), octets.begin(), octets.end());
    }
};

class der_cursor_t {
  public:
    explicit der_cursor_t(bytes_t der, std::uint64_t offset = 0) : m_rest(der), m_offset(offset) {}
    explicit der_cursor_t(const der_element_t& parent) : der_cursor_t(parent.contents, parent.contents_offset()) {}

    bool at_end() const { return m_rest.empty(); }
    std::uint64_t position() const { return m_offset; }
    bytes_t remaining() const { return m_rest; }

    /// Whether an element with this identifier octet comes next.
    bool sees(std::uint8_t identifier) const { return !m_rest.empty() && m_rest.front() == identifier; }

    /// The next element if it has this identifier octet (ANY: any octet) and fits; otherwise the cursor is unchanged.
    std::optional<der_element_t> take(asn_tag_t::Type tag = asn_tag_t::ANY);

    /// The next element. Throws der_fault_t, which says that `what` was expected here, and its type: what "the issuer"
    /// is reads "the issuer (a SEQUENCE)".
    der_element_t next(asn_tag_t::Type tag, const std::string& what);

    /// Always throws der_fault_t for this place.
    [[noreturn]] void fail(const std::string& what) const;

  private:
    bytes_t m_rest;
    std::uint64_t m_offset;
};

} // namespace tool
