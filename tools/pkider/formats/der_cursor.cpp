#include "tools/pkider/formats/der_cursor.h"

#include "tools/pkider/base/failure.h"
#include "tools/pkider/formats/der_names.h"
#include "tools/pkider/formats/encodings.h"

#include <algorithm>

namespace tool {
namespace {

std::string describe(bytes_t bytes) {
    if (bytes.empty()) return "the end";
    constexpr std::size_t shown = 6;
    std::string text;
    for (const std::uint8_t byte : bytes.first(std::min(bytes.size(), shown))) {
        if (!text.empty()) text += ' ';
        append_hex(text, as_text({&byte, 1}));
    }
    if (bytes.size() > shown) text += " ...";
    return text;
}

bool has_identifier(bytes_t bytes, asn_tag_t::Type tag) {
    return !bytes.empty() && (tag == asn_tag_t::ANY || bytes.front() == static_cast<std::uint8_t>(tag));
}

} // namespace

std::optional<der_element_t> der_cursor_t::take(asn_tag_t::Type tag) {
    std::uint64_t length = 0;
    const std::uint8_t* const contents = asn1_read_tag_(tag, m_rest.data(), m_rest.size(), &length);
    if (contents == nullptr) return std::nullopt;

    const std::size_t size = static_cast<std::size_t>(contents - m_rest.data()) + static_cast<std::size_t>(length);
    const der_element_t element{
        m_rest.front(), m_offset, m_rest.first(size), {contents, static_cast<std::size_t>(length)}};
    m_rest = m_rest.subspan(size);
    m_offset += size;
    return element;
}

der_element_t der_cursor_t::next(asn_tag_t::Type tag, const std::string& what) {
    const std::optional<der_element_t> element = take(tag);
    if (element) return *element;
    const bool any = tag == asn_tag_t::ANY;
    const std::string expected = any ? what : what + " (" + type_of(static_cast<std::uint8_t>(tag)) + ")";
    throw der_fault_t(m_offset, expected,
                      describe(m_rest) + (has_identifier(m_rest, tag) ? ", whose length is bad" : ""));
}

void der_cursor_t::fail(const std::string& what) const {
    throw der_fault_t(m_offset, what, describe(m_rest));
}

} // namespace tool
