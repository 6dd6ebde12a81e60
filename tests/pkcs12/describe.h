// Items as readable lines, to compare whole records at once.
#pragma once

#include <pkider/pkcs12.h>

#include "tests/support/hex.h"

#include <algorithm>
#include <list>
#include <string>
#include <vector>

namespace pkider_test {

using lines_t = std::vector<std::string>;

inline std::string span_hex(const uint8_t* data, uint64_t len) {
    return to_hex(std::string(data, data + len));
}

/// "cert 30 00, name 00 6E, id 01": attributes of length 0 are left out.
inline std::string describe(const pkcs12_item_t& item) {
    std::string out = item.type == PKCS12_ITEM_KEY ? "key " : item.type == PKCS12_ITEM_CERT ? "cert " : "other ";
    out += span_hex(item.data, item.data_len);
    if (item.friendly_name_len != 0) out += ", name " + span_hex(item.friendly_name, item.friendly_name_len);
    if (item.local_key_id_len != 0) out += ", id " + span_hex(item.local_key_id, item.local_key_id_len);
    return out;
}

inline lines_t describe(const std::list<pkcs12_item_t>& items) {
    lines_t out;
    for (const pkcs12_item_t& item : items) out.push_back(describe(item));
    return out;
}

inline lines_t describe(const std::list<std::string>& buffers) {
    lines_t out;
    for (const std::string& buffer : buffers) out.push_back(to_hex(buffer));
    return out;
}

/// Same items in the same order; for lists too long to be read.
inline bool same_items(const std::list<pkcs12_item_t>& left, const std::list<pkcs12_item_t>& right) {
    const auto same_span = [](const uint8_t* a, uint64_t a_len, const uint8_t* b, uint64_t b_len) {
        return std::equal(a, a + a_len, b, b + b_len);
    };
    return std::equal(
        left.begin(), left.end(), right.begin(), right.end(), [&](const pkcs12_item_t& a, const pkcs12_item_t& b) {
            return a.type == b.type && same_span(a.data, a.data_len, b.data, b.data_len) &&
                   same_span(a.friendly_name, a.friendly_name_len, b.friendly_name, b.friendly_name_len) &&
                   same_span(a.local_key_id, a.local_key_id_len, b.local_key_id, b.local_key_id_len);
        });
}

} // namespace pkider_test
