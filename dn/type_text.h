// Attribute types of X.520 (2.5.4.n) as a map prints them that begins with the built-in rows: `CN=`, ready to be
// copied in one go.
#pragma once

#include "oid/builtin_rows.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace pkider {

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

} // namespace pkider
