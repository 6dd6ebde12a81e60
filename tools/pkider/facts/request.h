// The fields of a certificate request (PKCS#10, RFC 2986 4), as elements of the DER they were read from.
#pragma once

#include "tools/pkider/formats/der_cursor.h"

namespace tool {

/// Every element points into the caller's bytes, and knows its offset in them.
struct request_t {
    der_element_t subject;    // Name
    der_element_t public_key; // SubjectPublicKeyInfo
};

/// Takes one request off the front of the bytes; attributes and signature are not looked at. Throws der_fault_t.
request_t read_request(der_cursor_t& bytes);

} // namespace tool
