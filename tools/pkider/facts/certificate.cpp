#include "tools/pkider/facts/certificate.h"

#include "tools/pkider/formats/tags.h"

#include <string>

namespace tool {
namespace {

constexpr asn_tag_t::Type extensions_tag = context_tag(3);

// The element inside an EXPLICIT tag, when that tag comes next.
std::optional<der_element_t> read_explicit(der_cursor_t& fields, asn_tag_t::Type outer, asn_tag_t::Type inner,
                                           const char* what) {
    if (!fields.sees(static_cast<std::uint8_t>(outer))) return std::nullopt;
    der_cursor_t inside(fields.next(outer, what));
    return inside.next(inner, what);
}

// Time ::= CHOICE { utcTime UTCTime, generalTime GeneralizedTime }
der_element_t read_time(der_cursor_t& validity, const char* what) {
    for (const universal_tag_t tag : {utc_time_tag, generalized_time_tag}) {
        if (validity.sees(tag)) return validity.next(identifier_of(tag), what);
    }
    validity.fail(std::string(what) + " (a UTCTime or GeneralizedTime)");
}

// Between the key and the extensions are the unique identifiers [1] and [2]; nobody uses them.
std::optional<der_element_t> read_extensions(der_cursor_t& fields) {
    while (!fields.at_end() && !fields.sees(static_cast<std::uint8_t>(extensions_tag))) {
        fields.next(asn_tag_t::ANY, "a unique identifier or extensions");
    }
    return read_explicit(fields, extensions_tag, asn_tag_t::SEQUENCE, "the extensions");
}

// tbsCertificate, and its fields up to the subject. The validity is not looked into.
struct front_t {
    der_cursor_t outer;
    der_cursor_t fields;
    der_element_t validity;
};

// Certificate ::= SEQUENCE { tbsCertificate, signatureAlgorithm AlgorithmIdentifier, signatureValue BIT STRING }
//
// TBSCertificate ::= SEQUENCE {
//     version [0] EXPLICIT INTEGER DEFAULT v1, serialNumber INTEGER, signature AlgorithmIdentifier, issuer Name,
//     validity SEQUENCE { notBefore Time, notAfter Time }, subject Name, subjectPublicKeyInfo SEQUENCE,
//     issuerUniqueID [1] OPTIONAL, subjectUniqueID [2] OPTIONAL, extensions [3] EXPLICIT SEQUENCE OPTIONAL }
front_t read_front(der_cursor_t& bytes, certificate_t& out) {
    out.whole = bytes.next(asn_tag_t::SEQUENCE, "a certificate");
    der_cursor_t outer(out.whole);
    out.tbs = outer.next(asn_tag_t::SEQUENCE, "tbsCertificate");

    der_cursor_t fields(out.tbs);
    out.version = read_explicit(fields, asn_tag_t::CONTEXT_0, asn_tag_t::INTEGER, "the version");
    out.serial = fields.next(asn_tag_t::INTEGER, "the serial number");
    out.tbs_signature_algorithm = fields.next(asn_tag_t::SEQUENCE, "the signature algorithm");
    out.issuer = fields.next(asn_tag_t::SEQUENCE, "the issuer");
    const der_element_t validity = fields.next(asn_tag_t::SEQUENCE, "the validity");
    out.subject = fields.next(asn_tag_t::SEQUENCE, "the subject");
    return {outer, fields, validity};
}

} // namespace

certificate_t read_certificate(der_cursor_t& bytes) {
    certificate_t out;
    front_t front = read_front(bytes, out);
    der_cursor_t validity(front.validity);
    out.not_before = read_time(validity, "notBefore");
    out.not_after = read_time(validity, "notAfter");
    out.public_key = front.fields.next(asn_tag_t::SEQUENCE, "the public key");
    out.extensions = read_extensions(front.fields);

    out.signature_algorithm = front.outer.next(asn_tag_t::SEQUENCE, "the signature algorithm");
    out.signature = front.outer.next(asn_tag_t::BIT_STRING, "the signature");
    return out;
}

der_element_t read_certificate_subject(der_cursor_t& bytes) {
    certificate_t out;
    read_front(bytes, out);
    return out.subject;
}

} // namespace tool
