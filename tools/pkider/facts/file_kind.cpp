#include "tools/pkider/facts/file_kind.h"

#include "tools/pkider/facts/alg_names.h"
#include "tools/pkider/formats/der_cursor.h"
#include "tools/pkider/formats/der_integer.h"
#include "tools/pkider/formats/tags.h"

#include <algorithm>
#include <initializer_list>

namespace tool {
namespace {

constexpr asn_tag_t::Type any = asn_tag_t::ANY;
constexpr asn_tag_t::Type integer = asn_tag_t::INTEGER;
constexpr asn_tag_t::Type bits = asn_tag_t::BIT_STRING;
constexpr asn_tag_t::Type octets = asn_tag_t::OCTET_STRING;
constexpr asn_tag_t::Type oid = asn_tag_t::OBJECT_IDENTIFIER;
constexpr asn_tag_t::Type sequence = asn_tag_t::SEQUENCE;
constexpr asn_tag_t::Type set = asn_tag_t::SET;
constexpr asn_tag_t::Type context_0 = asn_tag_t::CONTEXT_0;
constexpr asn_tag_t::Type context_1 = context_tag(1);

/// Takes elements with these identifiers; false at the first that is missing.
bool take_all(der_cursor_t& cursor, std::initializer_list<asn_tag_t::Type> identifiers) {
    for (const asn_tag_t::Type identifier : identifiers) {
        if (!cursor.take(identifier)) return false;
    }
    return true;
}

bool holds(bytes_t contents, std::initializer_list<asn_tag_t::Type> identifiers) {
    der_cursor_t cursor(contents);
    return take_all(cursor, identifiers);
}

bool holds_exactly(bytes_t contents, std::initializer_list<asn_tag_t::Type> identifiers) {
    der_cursor_t cursor(contents);
    return take_all(cursor, identifiers) && cursor.at_end();
}

/// The contents of the next element, a SEQUENCE; empty when it is not one.
bytes_t next_sequence(der_cursor_t& cursor) {
    const auto element = cursor.take(sequence);
    return element ? element->contents : bytes_t{};
}

bool starts_with_oid(bytes_t contents) {
    return holds(contents, {oid});
}

bool sees_time(const der_cursor_t& cursor) {
    return cursor.sees(utc_time_tag) || cursor.sees(generalized_time_tag);
}

// AlgorithmIdentifier ::= SEQUENCE { algorithm OBJECT IDENTIFIER, parameters ANY OPTIONAL }
bool is_algorithm_identifier(bytes_t contents) {
    return holds_exactly(contents, {oid}) || holds_exactly(contents, {oid, any});
}

// SIGNED { ToBeSigned } ::= SEQUENCE { toBeSigned, algorithm AlgorithmIdentifier, signature BIT STRING }
bytes_t to_be_signed(bytes_t contents) {
    if (!holds_exactly(contents, {sequence, sequence, bits})) return {};
    der_cursor_t cursor(contents);
    const bytes_t body = next_sequence(cursor);
    return is_algorithm_identifier(next_sequence(cursor)) ? body : bytes_t{};
}

bool is_certificate(bytes_t contents) {
    der_cursor_t body(to_be_signed(contents));
    body.take(context_0);
    // serialNumber, signature, issuer, validity, subject, subjectPublicKeyInfo
    if (!take_all(body, {integer, sequence, sequence})) return false;
    return sees_time(der_cursor_t(next_sequence(body))) && take_all(body, {sequence, sequence});
}

bool is_certificate_list(bytes_t contents) {
    der_cursor_t body(to_be_signed(contents));
    body.take(integer);
    return take_all(body, {sequence, sequence}) && sees_time(body);
}

bool is_public_key(bytes_t contents) {
    der_cursor_t cursor(contents);
    return starts_with_oid(next_sequence(cursor)) && cursor.take(bits) && cursor.at_end();
}

bool is_request(bytes_t contents) {
    der_cursor_t body(to_be_signed(contents));
    return take_all(body, {integer, sequence}) && is_public_key(next_sequence(body));
}

bool is_pkcs12(bytes_t contents) {
    der_cursor_t cursor(contents);
    return cursor.take(integer) && holds(next_sequence(cursor), {oid, context_0}) &&
           holds(next_sequence(cursor), {sequence, octets});
}

bool is_pkcs12_without_mac(bytes_t contents) {
    der_cursor_t cursor(contents);
    return cursor.take(integer) && holds(next_sequence(cursor), {oid, context_0}) && cursor.at_end();
}

bool is_private_key(bytes_t contents) {
    der_cursor_t cursor(contents);
    return cursor.take(integer) && starts_with_oid(next_sequence(cursor)) && cursor.take(octets).has_value();
}

bool is_rsa_private_key(bytes_t contents) {
    // version, n, e, d, p, q, d mod (p-1), d mod (q-1), q^-1 mod p
    return holds(contents, {integer, integer, integer, integer, integer, integer, integer, integer, integer});
}

bool is_ec_private_key(bytes_t contents) {
    der_cursor_t cursor(contents);
    if (!take_all(cursor, {integer, octets})) return false;
    return cursor.at_end() || cursor.take(context_0) || cursor.take(context_1);
}

/// SEQUENCE { AlgorithmIdentifier, OCTET STRING }: a digest or an encrypted key, by the algorithm.
bool is_wrapped(bytes_t contents, bool want_hash) {
    der_cursor_t cursor(contents);
    const bytes_t algorithm = next_sequence(cursor);
    if (!is_algorithm_identifier(algorithm) || !cursor.take(octets) || !cursor.at_end()) return false;
    const bytes_t found = der_cursor_t(algorithm).take(oid)->contents;
    return is_hash_oid(found) == want_hash;
}

bool is_digest_info(bytes_t contents) {
    return is_wrapped(contents, true);
}

bool is_encrypted_private_key(bytes_t contents) {
    return is_wrapped(contents, false);
}

/// Two INTEGERs are an RSA public key or a signature value: a modulus is long and odd, its exponent short and odd.
bool is_rsa_public_key(bytes_t contents) {
    if (!holds_exactly(contents, {integer, integer})) return false;
    der_cursor_t cursor(contents);
    const bytes_t modulus = cursor.take(integer)->contents;
    const bytes_t exponent = cursor.take(integer)->contents;
    if (modulus.empty() || exponent.empty()) return false;
    return bit_length(modulus) >= 512 && bit_length(exponent) <= 64 && modulus.back() % 2 == 1 &&
           exponent.back() % 2 == 1;
}

bool is_signature_value(bytes_t contents) {
    if (!holds_exactly(contents, {integer, integer})) return false;
    der_cursor_t cursor(contents);
    const std::uint64_t r = bit_length(cursor.take(integer)->contents);
    const std::uint64_t s = bit_length(cursor.take(integer)->contents);
    return r >= 64 && s >= 64; // no smaller group is in use: other pairs of numbers are just that
}

bool is_content_info(bytes_t contents) {
    return holds_exactly(contents, {oid, context_0});
}

bool is_name(bytes_t contents) {
    der_cursor_t names(contents);
    while (const auto relative = names.take(set)) {
        der_cursor_t members(relative->contents);
        while (const auto member = members.take(sequence)) {
            if (!holds_exactly(member->contents, {oid, any})) return false;
        }
        if (!members.at_end()) return false;
    }
    return !contents.empty() && names.at_end();
}

struct kind_row_t {
    file_kind_t kind;
    const char* id;
    bool (*matches)(bytes_t contents); // of a SEQUENCE; null for what is no SEQUENCE
    const char* name;
    const char* command;
};

// The first that matches is taken, so the narrower shapes are first.
constexpr kind_row_t kind_rows[] = {
#define KIND(kind) file_kind_t::kind, #kind
    {KIND(certificate), is_certificate, "certificate", "pkider cert"},
    {KIND(request), is_request, "certificate request (PKCS#10)", "pkider der"},
    {KIND(certificate_list), is_certificate_list, "certificate revocation list", "pkider der"},
    {KIND(pkcs12), is_pkcs12, "PKCS#12 container", "pkider p12 list"},
    {KIND(pkcs12_without_mac), is_pkcs12_without_mac, "PKCS#12 container without a MAC", "pkider der"},
    {KIND(private_key), is_private_key, "private key (PKCS#8)", "pkider key show"},
    {KIND(rsa_private_key), is_rsa_private_key, "RSA private key (PKCS#1)", "pkider der"},
    {KIND(ec_private_key), is_ec_private_key, "EC private key", "pkider der"},
    {KIND(public_key), is_public_key, "public key", "pkider key show"},
    {KIND(digest_info), is_digest_info, "digest info", "pkider digestinfo read"},
    {KIND(encrypted_private_key), is_encrypted_private_key, "encrypted private key (PKCS#8)", "pkider key show"},
    {KIND(rsa_public_key), is_rsa_public_key, "RSA public key (PKCS#1)", "pkider der"},
    {KIND(signature_value), is_signature_value, "signature value (DSA, ECDSA)", "pkider sig dsa"},
    {KIND(content_info), is_content_info, "CMS content (PKCS#7)", "pkider der"},
    {KIND(algorithm_identifier), is_algorithm_identifier, "algorithm identifier", "pkider sig ike"},
    {KIND(name), is_name, "name", "pkider dn decode"},
    {KIND(object_identifier), nullptr, "object identifier", "pkider der"},
    {KIND(plain_der), nullptr, "DER of no known kind", "pkider der"},
    {KIND(none), nullptr, "none of the known kinds", nullptr},
#undef KIND
};

const kind_row_t& find_row(file_kind_t kind) {
    return *std::ranges::find(kind_rows, kind, &kind_row_t::kind);
}

} // namespace

file_kind_t recognise(bytes_t bytes) {
    const auto element = der_cursor_t(bytes).take();
    if (!element) return file_kind_t::none;
    if (element->identifier == asn_tag_t::SEQUENCE) {
        for (const kind_row_t& row : kind_rows) {
            if (row.matches != nullptr && row.matches(element->contents)) return row.kind;
        }
    }
    if (!holds_der(element->whole)) return file_kind_t::none;
    return element->identifier == asn_tag_t::OBJECT_IDENTIFIER ? file_kind_t::object_identifier
                                                               : file_kind_t::plain_der;
}

const char* kind_name(file_kind_t kind) {
    return find_row(kind).name;
}

const char* kind_id(file_kind_t kind) {
    return find_row(kind).id;
}

const char* kind_command(file_kind_t kind) {
    return find_row(kind).command;
}

} // namespace tool
