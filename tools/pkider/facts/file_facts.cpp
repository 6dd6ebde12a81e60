#include "tools/pkider/facts/file_facts.h"

#include "tools/pkider/base/count_text.h"
#include "tools/pkider/base/failure.h"
#include "tools/pkider/facts/alg_names.h"
#include "tools/pkider/facts/certificate_facts.h"
#include "tools/pkider/facts/fact_names.h"
#include "tools/pkider/facts/pbe_algorithm.h"
#include "tools/pkider/facts/request.h"
#include "tools/pkider/formats/der_cursor.h"
#include "tools/pkider/formats/der_integer.h"
#include "tools/pkider/formats/der_names.h"
#include "tools/pkider/formats/encodings.h"
#include "tools/pkider/formats/tags.h"
#include "tools/pkider/formats/time_text.h"

#include <pkider/dn.h>
#include <pkider/pkcs12.h>
#include <pkider/pkcs8.h>

namespace tool {
namespace {

constexpr std::uint64_t max_hex_bytes = 64;

std::string name_line(bytes_t name, oid_map_handle_t map) {
    std::string line;
    if (name.size() > UINT32_MAX) return "(too long)";
    const bool printed =
        asn_dn_to_printable(name.data(), static_cast<std::uint32_t>(name.size()), line, DN_ORDER_AS_ENCODED, map);
    return printed ? line : line + " (cannot be printed to its end)";
}

/// The name of an AlgorithmIdentifier's OID, from the contents of its SEQUENCE.
std::string algorithm_label(bytes_t identifier, oid_map_handle_t map) {
    const auto oid = der_cursor_t(identifier).take(asn_tag_t::OBJECT_IDENTIFIER);
    return oid ? oid_label(describe_oid(oid->contents, map)) : "not named";
}

facts_t describe_certificate(bytes_t whole, oid_map_handle_t map) {
    der_cursor_t bytes(whole);
    const certificate_t certificate = read_certificate(bytes);
    facts_t facts = {{fact::subject, name_line(certificate.subject.whole, map)},
                     {fact::issuer, name_line(certificate.issuer.whole, map)}};
    for (const auto& line : certificate_lines(read_certificate_facts(certificate, map))) facts.push_back(line);
    return facts;
}

facts_t describe_request(bytes_t whole, oid_map_handle_t map) {
    der_cursor_t bytes(whole);
    const request_t request = read_request(bytes);
    facts_t facts = {{fact::subject, name_line(request.subject.whole, map)}};
    if (const auto key = read_public_key(request.public_key.whole, map)) add_public_key_lines(*key, facts);
    return facts;
}

// TBSCertList ::= SEQUENCE { version, signature, issuer, thisUpdate, nextUpdate, revokedCertificates, ... }
facts_t describe_certificate_list(bytes_t contents, oid_map_handle_t map) {
    facts_t facts;
    der_cursor_t body(der_cursor_t(contents).take(asn_tag_t::SEQUENCE)->contents);
    body.take(asn_tag_t::INTEGER);
    body.take(asn_tag_t::SEQUENCE);
    facts.push_back({fact::issuer, name_line(body.take(asn_tag_t::SEQUENCE)->whole, map)});
    for (const fact_name_t& name : {fact::issued, fact::next_issue}) {
        if (!body.sees(utc_time_tag) && !body.sees(generalized_time_tag)) break;
        const auto time = body.take();
        if (!time) break;
        facts.push_back({name, time_text(time->identifier, time->contents).value_or("not a time")});
    }
    std::uint64_t num_revoked = 0;
    if (const auto revoked = body.take(asn_tag_t::SEQUENCE)) {
        der_cursor_t entries(revoked->contents);
        while (entries.take(asn_tag_t::SEQUENCE)) ++num_revoked;
    }
    facts.push_back({fact::revoked, count_text(num_revoked, "certificate")});
    return facts;
}

facts_t describe_private_key(bytes_t whole, oid_map_handle_t map) {
    facts_t facts;
    der_cursor_t inside(der_cursor_t(whole).take(asn_tag_t::SEQUENCE)->contents);
    inside.take(asn_tag_t::INTEGER);
    facts.push_back({fact::algorithm, algorithm_label(inside.take(asn_tag_t::SEQUENCE)->contents, map)});
    facts.push_back({fact::private_key,
                     count_text(inside.take(asn_tag_t::OCTET_STRING)->contents.size(), "byte") + ", not encrypted"});
    return facts;
}

facts_t describe_rsa_private_key(bytes_t contents) {
    der_cursor_t numbers(contents);
    numbers.take(asn_tag_t::INTEGER);
    const std::uint64_t bits = bit_length(numbers.take(asn_tag_t::INTEGER)->contents);
    const std::string exponent = number_text(numbers.take(asn_tag_t::INTEGER)->contents);
    return {{fact::key, "RSA, " + count_text(bits, "bit") + ", exponent " + exponent + ", not encrypted"}};
}

facts_t describe_ec_private_key(bytes_t contents, oid_map_handle_t map) {
    facts_t facts;
    der_cursor_t fields(contents);
    fields.take(asn_tag_t::INTEGER);
    facts.push_back({fact::private_key,
                     count_text(fields.take(asn_tag_t::OCTET_STRING)->contents.size(), "byte") + ", not encrypted"});
    if (const auto curve = fields.take(asn_tag_t::CONTEXT_0)) {
        facts.push_back({fact::curve, algorithm_label(curve->contents, map)});
    }
    return facts;
}

facts_t describe_encrypted_private_key(bytes_t contents, oid_map_handle_t map) {
    facts_t facts;
    der_cursor_t inside(contents);
    const auto algorithm = inside.take(asn_tag_t::SEQUENCE);
    facts.push_back({fact::encryption, algorithm_label(algorithm->contents, map)});
    const pbes2_t parts = read_pbes2(algorithm->contents);
    if (parts.derivation && parts.encryption) {
        facts.push_back({fact::derivation, algorithm_label(*parts.derivation, map)});
        facts.push_back({fact::cipher, algorithm_label(*parts.encryption, map)});
    }
    facts.push_back({fact::encrypted, count_text(inside.take(asn_tag_t::OCTET_STRING)->contents.size(), "byte")});
    return facts;
}

facts_t describe_rsa_public_key(bytes_t contents) {
    der_cursor_t numbers(contents);
    const std::uint64_t bits = bit_length(numbers.take(asn_tag_t::INTEGER)->contents);
    const std::string exponent = number_text(numbers.take(asn_tag_t::INTEGER)->contents);
    return {{fact::key, "RSA, " + count_text(bits, "bit") + ", exponent " + exponent}};
}

facts_t describe_digest_info(bytes_t contents, oid_map_handle_t map) {
    der_cursor_t inside(contents);
    const auto algorithm = inside.take(asn_tag_t::SEQUENCE);
    const bytes_t digest = inside.take(asn_tag_t::OCTET_STRING)->contents;
    const bool is_long = digest.size() > max_hex_bytes;
    return {{fact::hash, algorithm_label(algorithm->contents, map)},
            {fact::digest, is_long ? count_text(digest.size(), "byte") : to_hex(as_text(digest))}};
}

facts_t describe_signature_value(bytes_t contents) {
    der_cursor_t numbers(contents);
    facts_t facts;
    for (const fact_name_t& name : {fact::r, fact::s}) {
        facts.push_back({name, count_text(bit_length(numbers.take(asn_tag_t::INTEGER)->contents), "bit")});
    }
    return facts;
}

facts_t describe_algorithm(bytes_t whole, bytes_t contents, oid_map_handle_t map) {
    facts_t facts;
    facts.push_back({fact::algorithm, algorithm_label(contents, map)});
    const auto signature = read_signature_algorithm(whole, map);
    if (signature && signature->alg != PKI_ALG_NONE) add_signature_lines(*signature, facts);
    return facts;
}

facts_t describe_pkcs12(bytes_t contents, oid_map_handle_t map) {
    facts_t facts;
    der_cursor_t pfx(contents);
    facts.push_back({fact::version, number_text(pfx.take(asn_tag_t::INTEGER)->contents)});
    facts.push_back({fact::content, algorithm_label(pfx.take(asn_tag_t::SEQUENCE)->contents, map)});
    const auto mac_data = pfx.take(asn_tag_t::SEQUENCE);
    pkcs12_mac_t mac;
    if (!mac_data) {
        facts.push_back({fact::mac, "none"});
    } else if (asn_read_pkcs12_MacData(mac_data->contents.data(), mac_data->contents.size(), mac)) {
        facts.push_back({fact::mac, algorithm_label({mac.digest_alg, mac.digest_alg_len}, map) + ", " +
                                        count_text(mac.iterations, "iteration")});
    } else {
        facts.push_back({fact::mac, "cannot be read"});
    }
    return facts;
}

facts_t describe_plain(bytes_t bytes) {
    der_header_t header;
    if (!read_der_header(bytes, header)) return {};
    return {{fact::outermost, tag_name(header) + ", " + count_text(header.contents.size(), "byte") + " of contents"}};
}

facts_t describe_element(file_kind_t kind, const der_element_t& element, oid_map_handle_t map) {
    const bytes_t contents = element.contents;
    switch (kind) {
    case file_kind_t::certificate:
        return describe_certificate(element.whole, map);
    case file_kind_t::request:
        return describe_request(element.whole, map);
    case file_kind_t::certificate_list:
        return describe_certificate_list(contents, map);
    case file_kind_t::pkcs12:
    case file_kind_t::pkcs12_without_mac:
        return describe_pkcs12(contents, map);
    case file_kind_t::private_key:
        return describe_private_key(element.whole, map);
    case file_kind_t::rsa_private_key:
        return describe_rsa_private_key(contents);
    case file_kind_t::ec_private_key:
        return describe_ec_private_key(contents, map);
    case file_kind_t::encrypted_private_key:
        return describe_encrypted_private_key(contents, map);
    case file_kind_t::rsa_public_key:
        return describe_rsa_public_key(contents);
    case file_kind_t::digest_info:
        return describe_digest_info(contents, map);
    case file_kind_t::signature_value:
        return describe_signature_value(contents);
    case file_kind_t::algorithm_identifier:
        return describe_algorithm(element.whole, contents, map);
    case file_kind_t::content_info:
        return {{fact::content, algorithm_label(contents, map)}};
    case file_kind_t::name:
        return {{fact::name, name_line(element.whole, map)}};
    case file_kind_t::object_identifier:
        return {{fact::oid, oid_label(describe_oid(contents, map))}};
    case file_kind_t::public_key: {
        facts_t facts;
        if (const auto key = read_public_key(element.whole, map)) add_public_key_lines(*key, facts);
        return facts;
    }
    default:
        return describe_plain(element.whole);
    }
}

} // namespace

facts_t describe_file(file_kind_t kind, bytes_t bytes, oid_map_handle_t map) {
    const auto element = der_cursor_t(bytes).take();
    if (kind == file_kind_t::none || !element) return {};
    facts_t facts = describe_element(kind, *element, map);
    const std::uint64_t num_behind = bytes.size() - element->whole.size();
    if (num_behind != 0) facts.push_back({fact::trailing, count_text(num_behind, "byte") + " more"});
    return facts;
}

} // namespace tool
