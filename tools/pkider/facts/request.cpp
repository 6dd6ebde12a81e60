#include "tools/pkider/facts/request.h"

namespace tool {

// CertificationRequest ::= SEQUENCE { certificationRequestInfo, signatureAlgorithm, signature BIT STRING }
//
// CertificationRequestInfo ::= SEQUENCE {
//     version INTEGER, subject Name, subjectPKInfo SubjectPublicKeyInfo, attributes [0] }
request_t read_request(der_cursor_t& bytes) {
    der_cursor_t outer(bytes.next(asn_tag_t::SEQUENCE, "a certificate request"));
    der_cursor_t info(outer.next(asn_tag_t::SEQUENCE, "certificationRequestInfo"));
    info.next(asn_tag_t::INTEGER, "the version");
    request_t out;
    out.subject = info.next(asn_tag_t::SEQUENCE, "the subject");
    out.public_key = info.next(asn_tag_t::SEQUENCE, "the public key");
    return out;
}

} // namespace tool
