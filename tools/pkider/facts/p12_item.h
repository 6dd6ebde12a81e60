// One key or certificate of a PKCS#12 file in words.
#pragma once

#include "tools/pkider/formats/der_cursor.h"

#include <pkider/oid.h>
#include <pkider/pkcs12.h>

#include <string>

namespace tool {

struct p12_item_text_t {
    bool is_key = false;
    std::string what;          ///< Of a certificate the subject, of a key the algorithm; says so when it is neither.
    std::string friendly_name; ///< UTF-8, empty when there is none.
    std::string local_key_id;  ///< Hex digits, empty when there is none.
};

/// Subject of a certificate. @throws data_fault_t  The bytes are no certificate, or not one alone.
std::string certificate_subject(bytes_t certificate, oid_map_handle_t map);

p12_item_text_t describe_item(const pkcs12_item_t& item, oid_map_handle_t map);

inline bytes_t item_data(const pkcs12_item_t& item) {
    return {item.data, item.data_len};
}

} // namespace tool
