#include "tools/pkider/facts/private_key.h"

#include "tools/pkider/base/count_text.h"
#include "tools/pkider/base/failure.h"
#include "tools/pkider/facts/gost_kinds.h"

#include <algorithm>

namespace tool {
namespace {

// clang-format off
//                                     member in JSON    label on the screen
constexpr fact_name_t parameter_sets[] {{"public_key_set", "public key set"},
                                        {"digest_set",     "digest set"},
                                        {"encryption_set", "encryption set"}};
constexpr fact_name_t malformed_parameters {"parameters",  "parameters"};
constexpr fact_name_t odd_form             {"form",        "form"};
// clang-format on

bool is_gost_algorithm(bytes_t oid) {
    return std::ranges::any_of(gost_kinds, [&](const gost_kind_t& kind) {
        const PKI_OID& of_kind = PKI_KEY_ALG_TO_OID(kind.alg);
        return std::ranges::equal(bytes_t(of_kind.data, of_kind.len), oid);
    });
}

} // namespace

private_key_t read_private_key(bytes_t info) {
    der_cursor_t input(info);
    der_cursor_t cursor(input.next(asn_tag_t::SEQUENCE, "a PrivateKeyInfo"));
    private_key_t key;
    key.version = cursor.next(asn_tag_t::INTEGER, "the version").whole;
    const der_element_t identifier = cursor.next(asn_tag_t::SEQUENCE, "the algorithm");
    key.algorithm_identifier = identifier.whole;
    der_cursor_t algorithm(identifier);
    const der_element_t oid = algorithm.next(asn_tag_t::OBJECT_IDENTIFIER, "the algorithm");
    if (!algorithm.at_end()) key.parameters = algorithm.next(asn_tag_t::ANY, "the algorithm's parameters").whole;
    key.octets = cursor.next(asn_tag_t::OCTET_STRING, "the private key").contents;
    key.attributes = cursor.remaining();
    if (!input.at_end()) input.fail("the end of the private key");

    key.algorithm = describe_oid(oid.contents, {});
    key.is_gost = is_gost_algorithm(oid.contents);
    pkcs8_pki_gost_t gost;
    if (asn_read_pkcs8_pki_gost(info.data(), info.size(), gost)) key.gost = gost;
    return key;
}

std::string private_key_line(const private_key_t& key) {
    const std::size_t size = key.gost ? key.gost->key_len : key.octets.size();
    return oid_name(key.algorithm) + ", " + count_text(size, "byte");
}

facts_t private_key_details(const private_key_t& key) {
    facts_t lines;
    if (!key.is_gost) return lines;
    // GostR3410-PublicKeyParameters ::= SEQUENCE { publicKeyParamSet, digestParamSet OPTIONAL, ... }  (RFC 4491 2.3.2)
    try {
        der_cursor_t parameters(der_cursor_t(key.parameters).next(asn_tag_t::SEQUENCE, "the parameters"));
        for (const fact_name_t& name : parameter_sets) {
            if (!parameters.sees(asn_tag_t::OBJECT_IDENTIFIER)) break;
            const der_element_t set = parameters.next(asn_tag_t::OBJECT_IDENTIFIER, "a parameter set");
            lines.push_back({name, oid_label(describe_oid(set.contents, {}))});
        }
    } catch (const der_fault_t& fault) {
        lines.push_back({malformed_parameters, "malformed: expected " + fault.expected});
    }
    if (!key.gost)
        lines.push_back({odd_form, "without the inner OCTET STRING; 'pkider key wrap' puts it around the key"});
    return lines;
}

} // namespace tool
