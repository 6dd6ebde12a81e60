// The fields of an X.509 certificate (RFC 5280 4.1), as elements of the DER they were read from.
#pragma once

#include "tools/pkider/formats/der_cursor.h"

#include <optional>

namespace tool {

/// Every element points into the caller's bytes, and knows its offset in them.
struct certificate_t {
    der_element_t whole;
    der_element_t tbs;                       // tbsCertificate, what the signature is made over
    std::optional<der_element_t> version;    // INTEGER out of [0]; absent in version 1
    der_element_t serial;                    // INTEGER
    der_element_t tbs_signature_algorithm;   // AlgorithmIdentifier inside tbsCertificate
    der_element_t issuer;                    // Name
    der_element_t not_before;                // UTCTime or GeneralizedTime
    der_element_t not_after;                 //
    der_element_t subject;                   // Name
    der_element_t public_key;                // SubjectPublicKeyInfo
    std::optional<der_element_t> extensions; // SEQUENCE out of [3]
    der_element_t signature_algorithm;       // AlgorithmIdentifier after tbsCertificate
    der_element_t signature;                 // BIT STRING, its first content octet counts unused bits
};

/// Takes one certificate off the front of the bytes. Throws der_fault_t: where it stops being one, and what was
/// expected.
certificate_t read_certificate(der_cursor_t& bytes);

/// The subject alone, of a certificate that may be damaged behind it.
der_element_t read_certificate_subject(der_cursor_t& bytes);

} // namespace tool
