// The rows of the built-in map as the text of a map. Parsed, it finds the same names by the general indexes.
#pragma once

#include "oid/builtin_rows.h"

#include <string>

namespace pkider_test {

inline std::string builtin_map_text() {
    std::string text;
    for (const OIDdescr_t& row : pkider::builtin_rows) {
        text.append(row.str).append(" = ").append(row.sn).append(", ").append(row.ln).append("\n");
    }
    return text;
}

} // namespace pkider_test
