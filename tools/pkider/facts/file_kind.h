// Recognising what a DER encoding is, by its shape: the structures of the PKI that the program distinguishes.
#pragma once

#include "tools/pkider/formats/der_walker.h"

namespace tool {

enum class file_kind_t {
    certificate,           // RFC 5280 4.1
    certificate_list,      // RFC 5280 5.1
    request,               // RFC 2986 4
    pkcs12,                // RFC 7292 4
    pkcs12_without_mac,    // the library refuses it
    private_key,           // RFC 5958 2, PrivateKeyInfo
    rsa_private_key,       // RFC 8017 A.1.2
    ec_private_key,        // RFC 5915 3
    encrypted_private_key, // RFC 5958 3
    public_key,            // RFC 5280 4.1, SubjectPublicKeyInfo
    rsa_public_key,        // RFC 8017 A.1.1
    digest_info,           // RFC 8017 9.2
    signature_value,       // RFC 3279 2.2.2, 2.2.3: DSA and ECDSA
    content_info,          // RFC 5652 3
    algorithm_identifier,  // RFC 5280 4.1.1.2
    name,                  // RFC 5280 4.1.2.4
    object_identifier,     // X.690 8.19
    plain_der,
    none,
};

/// What `bytes` begin with. `plain_der` is any element whose parts are well formed; what follows the first element is
/// not looked at.
file_kind_t recognise(bytes_t bytes);

/// "certificate", "private key (PKCS#8)"
const char* kind_name(file_kind_t kind);

/// One word for programs to compare: "private_key".
const char* kind_id(file_kind_t kind);

/// The command that shows more, without the file's name: "pkider cert"; null for none.
const char* kind_command(file_kind_t kind);

} // namespace tool
