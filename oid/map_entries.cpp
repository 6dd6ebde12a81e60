#include "oid/map_entries.h"

#include "der/checked_size.h"
#include "der/oid_contents.h"
#include "platform/ascii.h"

#include <algorithm>
#include <new>

namespace pkider {
namespace {

char* put_text(std::string_view text, char* at) {
    at = std::copy(text.begin(), text.end(), at);
    *at = '\0';
    return at + 1;
}

} // namespace

oid_map_entries_t::oid_map_entries_t(std::string_view text) {
    read_lines(text);
    m_by_contents.build(m_entries);
    m_by_dotted_text.build(m_entries);
    m_by_short_name.build(m_entries);
}

// A length that no memory has is never cut to that of a key.

const OIDdescr_t* oid_map_entries_t::find_asn(const uint8_t* asn, uint64_t length) const {
    if (!fits_memory(length)) return nullptr;
    return m_by_contents.find({reinterpret_cast<const char*>(asn), static_cast<std::size_t>(length)});
}

const OIDdescr_t* oid_map_entries_t::find_str(const char* str, uint64_t length) const {
    if (!fits_memory(length)) return nullptr;
    return m_by_dotted_text.find({str, static_cast<std::size_t>(length)});
}

const OIDdescr_t* oid_map_entries_t::find_sn(const char* sn, uint64_t length) const {
    if (!fits_memory(length)) return nullptr;
    return m_by_short_name.find({sn, static_cast<std::size_t>(length)});
}

void oid_map_entries_t::read_lines(std::string_view text) {
    oid_map_line_t line;
    uint8_t contents[oid_buffer_size];
    while (next_oid_map_line(text, line)) {
        const uint64_t contents_len = encode_oid(line.oid.data(), line.oid.data() + line.oid.size(), contents);
        if (contents_len == 0) continue;
        const OIDdescr_t* const entry = make_entry(line, {contents, static_cast<std::size_t>(contents_len)});
        m_entries.push_back(entry);
        m_by_contents.add(*entry);
        m_by_dotted_text.add(*entry);
        m_by_short_name.add(*entry);
    }
}

// The record, then contents, dotted text, NUL, short name, NUL, long name, NUL.
const OIDdescr_t* oid_map_entries_t::make_entry(const oid_map_line_t& line, std::span<const uint8_t> contents) {
    const std::size_t strings_size =
        contents.size() + line.oid.size() + line.short_name.size() + line.long_name.size() + 3;
    void* const block = m_memory.allocate(sizeof(OIDdescr_t) + strings_size);

    auto* const asn = static_cast<uint8_t*>(block) + sizeof(OIDdescr_t);
    char* const str = reinterpret_cast<char*>(std::copy(contents.begin(), contents.end(), asn));
    char* const sn = put_text(line.oid, str);
    char* const ln = put_text(line.short_name, sn);
    put_text(line.long_name, ln);
    std::transform(sn, ln, sn, ascii_upper);

    return new (block)
        OIDdescr_t{asn, contents.size(), str, line.oid.size(), sn, line.short_name.size(), ln, line.long_name.size()};
}

} // namespace pkider
