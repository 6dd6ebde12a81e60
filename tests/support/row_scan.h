// The lookups as their rule has it: a walk over the rows, the first that matches.
#pragma once

#include "alg/alg_row.h"
#include "alg/display_names.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <string_view>

namespace pkider_test {

using rows_t = std::span<const pkider::alg_row_t>;

inline pki_alg_t scan(rows_t rows, std::span<const uint8_t> oid) {
    for (const pkider::alg_row_t& row : rows)
        if (std::equal(row.oid.data, row.oid.data + row.oid.len, oid.begin(), oid.end())) return row.alg;
    return PKI_ALG_NONE;
}

inline PKI_OID scan(rows_t rows, pki_alg_t alg) {
    for (const pkider::alg_row_t& row : rows)
        if (row.alg == alg) return row.oid;
    return {};
}

inline std::string_view scan_names(pki_alg_t alg) {
    for (const pkider::display_name_t& row : pkider::display_names)
        if (row.alg == alg) return row.name;
    return "unknown";
}

} // namespace pkider_test
