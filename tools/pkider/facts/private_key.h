// What a private key is (PrivateKeyInfo, RFC 5208 5): algorithm, size, parameter sets, and the form of its octets.
#pragma once

#include "tools/pkider/facts/facts.h"
#include "tools/pkider/facts/oid_names.h"
#include "tools/pkider/formats/der_cursor.h"

#include <pkider/pkcs8.h>

#include <optional>
#include <string>

namespace tool {

struct private_key_t {
    oid_text_t algorithm;
    std::optional<pkcs8_pki_gost_t> gost; ///< What the library reads: GOST keys with their inner OCTET STRING.
    bool is_gost = false;                 ///< By the algorithm, for any form of the key.
    bytes_t parameters;                   ///< Of the algorithm, the whole element; empty when there are none.
    bytes_t octets;                       ///< Contents of the privateKey OCTET STRING.
    bytes_t version;                      ///< The whole element.
    bytes_t algorithm_identifier;         ///< The whole element.
    bytes_t attributes;                   ///< What follows the privateKey.
};

/// Reads a PrivateKeyInfo that is a whole input; the views point into it. @throws der_fault_t
private_key_t read_private_key(bytes_t info);

/// "GOST R 34.10-2001, 32 bytes"
std::string private_key_line(const private_key_t& key);

/// Parameter sets, by name, and what is odd about the form. No byte of the key.
facts_t private_key_details(const private_key_t& key);

} // namespace tool
