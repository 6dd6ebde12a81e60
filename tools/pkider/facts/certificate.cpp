#include "tools/pkider/facts/certificate.h"

#include "tools/pkider/formats/time_text.h"

namespace tool {
namespace {

constexpr asn_tag_t::Type context_3{0xA3};

// The element inside an EXPLICIT tag, when that tag comes next.
std::optional<der_element_t> read_explicit(der_cursor_t& fields, asn_tag_t::Type outer, asn_tag_t::Type inner,
                                           const char* what) {
    if (!fields.sees(static_cast<std::uint8_t>(outer))) return std::nullopt;
    der_cursor_t inside(fields.next(outer, what));
    return inside.next(inner, what);
}

// Time ::= CHOICE { utcTime UTCTime, generalTime GeneralizedTime }
der_element_t read_time(der_cursor_t& validity, const char* what) {
    const std::uint8_t tag = validity.sees(generalized_time_tag) ? generalized_time_tag : utc_time_tag;
    return validity.next(asn_tag_t::Type{tag}, what);
}

// Between the key and the extensions stand the unique identifiers [1] and [2]; nobody uses them.
std::optional<der_element_t> read_extensions(der_cursor_t& fields) {
    while (!fields.at_end() && !fields.sees(static_cast<std::uint8_t>(context_3))) {
        fields.next(asn_tag_t::ANY, "a unique identifier or extensions");
    }
    return read_explicit(fields, context_3, asn_tag_t::SEQUENCE, "extensions (a SEQUENCE in [3])");
}

} // namespace

// Certificate ::= SEQUENCE { tbsCertificate, signatureAlgorithm AlgorithmIdentifier, signatureValue BIT STRING }
//
// TBSCertificate ::= SEQUENCE {
//     version [0] EXPLICIT INTEGER DEFAULT v1, serialNumber INTEGER, signature AlgorithmIdentifier, issuer Name,
//     validity SEQUENCE { notBefore Time, notAfter Time }, subject Name, subjectPublicKeyInfo SEQUENCE,
//     issuerUniqueID [1] OPTIONAL, subjectUniqueID [2] OPTIONAL, extensions [3] EXPLICIT SEQUENCE OPTIONAL }
certificate_t read_certificate(der_cursor_t& bytes) {
    certificate_t out;
    out.whole = bytes.next(asn_tag_t::SEQUENCE, "a certificate (a SEQUENCE)");
    der_cursor_t outer(out.whole);
    out.tbs = outer.next(asn_tag_t::SEQUENCE, "tbsCertificate (a SEQUENCE)");

    der_cursor_t fields(out.tbs);
    out.version = read_explicit(fields, asn_tag_t::CONTEXT_0, asn_tag_t::INTEGER, "the version (an INTEGER in [0])");
    out.serial = fields.next(asn_tag_t::INTEGER, "the serial number (an INTEGER)");
    out.tbs_signature_algorithm = fields.next(asn_tag_t::SEQUENCE, "the signature algorithm (a SEQUENCE)");
    out.issuer = fields.next(asn_tag_t::SEQUENCE, "the issuer (a SEQUENCE)");
    der_cursor_t validity(fields.next(asn_tag_t::SEQUENCE, "the validity (a SEQUENCE)"));
    out.not_before = read_time(validity, "notBefore (a UTCTime or GeneralizedTime)");
    out.not_after = read_time(validity, "notAfter (a UTCTime or GeneralizedTime)");
    out.subject = fields.next(asn_tag_t::SEQUENCE, "the subject (a SEQUENCE)");
    out.public_key = fields.next(asn_tag_t::SEQUENCE, "the public key (a SEQUENCE)");
    out.extensions = read_extensions(fields);

    out.signature_algorithm = outer.next(asn_tag_t::SEQUENCE, "the signature algorithm (a SEQUENCE)");
    out.signature = outer.next(asn_tag_t::BIT_STRING, "the signature (a BIT STRING)");
    return out;
}

} // namespace tool
