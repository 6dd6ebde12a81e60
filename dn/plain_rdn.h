// The RDN that nearly every Name is made of: one attribute of a built-in type of X.520 (2.5.4.n), with text that is
// printed unchanged and no length that needs more than one octet.
//
//     31 len  30 len  06 03 55 04 n  tag len  text
//
// Its headers follow from the length of the text, so they are compared and not read, and no map is asked for the name
// of its type. Bench: dn/print_rdns.
#pragma once

#include "der/element_reader.h"
#include "dn/plain_copy.h"
#include "dn/string_tags.h"
#include "oid/builtin_rows.h"
#include "platform/short_bytes.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

namespace pkider {

/// An attribute type of X.520 as a map prints it that begins with the built-in rows: `CN=`.
struct type_text_t {
    char text[max_builtin_short_name + 1]; // and "="
    uint8_t size;                          // 0: not in the table
};

/// By n.
inline constexpr std::array<type_text_t, 256> x520_type_texts = [] {
    std::array<type_text_t, 256> texts{};
    for (const OIDdescr_t& row : builtin_rows) {
        if (row.asn_len != 3 || row.asn[0] != 0x55 || row.asn[1] != 0x04) continue;
        type_text_t& out = texts[row.asn[2]];
        if (out.size != 0) continue; // the first row of an OID stays
        std::copy_n(row.sn, row.sn_len, out.text);
        out.text[row.sn_len] = '=';
        out.size = static_cast<uint8_t>(row.sn_len + 1);
    }
    return texts;
}();

struct plain_rdn_t {
    const type_text_t* type;
    const uint8_t* text;
    uint8_t text_size;

    std::size_t printed_size() const { return std::size_t{type->size} + text_size + 1; }
};

/// Reads the RDN that comes next in `name`, which stays as it is.
///
/// @return  False when it has any other shape, or does not fit.
inline bool read_plain_rdn(const asn_element_t& name, plain_rdn_t& out) {
    constexpr uint8_t type_header[] = {0x06, 0x03, 0x55, 0x04};
    constexpr uint64_t headers_size = 11;

    const uint8_t* const at = name.content;
    if (name.length < headers_size || at[0] != asn_tag_t::SET || at[2] != asn_tag_t::SEQUENCE) return false;
    if (std::memcmp(at + 4, type_header, sizeof type_header) != 0 || !is_verbatim_tag(at[9])) return false;
    const uint8_t text_size = at[10];
    if (at[1] >= 0x80 || at[1] != text_size + 9 || at[3] != text_size + 7) return false;
    if (name.length - headers_size < text_size) return false;
    out = {&x520_type_texts[at[8]], at + headers_size, text_size};
    return out.type->size != 0;
}

/// Writes `CN=text,` to printed_size() bytes at `out`.
///
/// @return  False when the text needs an escape; the bytes at `out` then have no meaning.
inline bool print_plain_rdn(const plain_rdn_t& rdn, char* out) {
    copy_short(out, rdn.type->text, rdn.type->size);
    out += rdn.type->size;
    if (!copy_if_plain(out, rdn.text, rdn.text_size)) return false;
    out[rdn.text_size] = ',';
    return true;
}

} // namespace pkider
