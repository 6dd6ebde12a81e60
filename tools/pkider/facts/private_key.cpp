#include "tools/pkider/facts/private_key.h"

#include "tools/pkider/base/count_text.h"
#include "tools/pkider/base/failure.h"

#include <algorithm>

namespace tool {
namespace {

constexpr uint8_t gost_2001[] = {0x2A, 0x85, 0x03, 0x02, 0x02, 0x13};                 // 1.2.643.2.2.19
constexpr uint8_t gost_2012_256[] = {0x2A, 0x85, 0x03, 0x07, 0x01, 0x01, 0x01, 0x01}; // 1.2.643.7.1.1.1.1
constexpr uint8_t gost_2012_512[] = {0x2A, 0x85, 0x03, 0x07, 0x01, 0x01, 0x01, 0x02}; // 1.2.643.7.1.1.1.2
constexpr bytes_t gost_algorithms[] = {gost_2001, gost_2012_256, gost_2012_512};

// clang-format off
//                                     member in JSON    label on the screen
constexpr fact_name_t parameter_sets[] {{"public_key_set", "public key set"},
                                        {"digest_set",     "digest set"},
                                        {"encryption_set", "encryption set"}};
constexpr fact_name_t malformed_parameters {"parameters",  "parameters"};
constexpr fact_name_t odd_form             {"form",        "form"};
// clang-format on

bool is_gost_algorithm(bytes_t oid) {
    return std::ranges::any_of(gost_algorithms, [&](bytes_t each) { return std::ranges::equal(each, oid); });
}

} // namespace

private_key_t read_private_key(bytes_t info) {
    der_cursor_t input(info);
    der_cursor_t cursor(input.next(asn_tag_t::SEQUENCE, "SEQUENCE (PrivateKeyInfo)"));
    cursor.next(asn_tag_t::INTEGER, "INTEGER (version)");
    der_cursor_t algorithm(cursor.next(asn_tag_t::SEQUENCE, "SEQUENCE (algorithm)"));
    const der_element_t oid = algorithm.next(asn_tag_t::OBJECT_IDENTIFIER, "OBJECT IDENTIFIER (algorithm)");

    private_key_t key;
    if (!algorithm.at_end()) key.parameters = algorithm.next(asn_tag_t::ANY, "the algorithm's parameters").whole;
    key.octets = cursor.next(asn_tag_t::OCTET_STRING, "OCTET STRING (private key)").contents;
    if (!input.at_end()) input.fail("the end of the private key");

    key.algorithm = describe_oid(oid.contents, {});
    key.is_gost = is_gost_algorithm(oid.contents);
    pkcs8_pki_gost_t gost;
    if (asn_read_pkcs8_pki_gost(info.data(), info.size(), gost)) key.gost = gost;
    return key;
}

std::string private_key_line(const private_key_t& key) {
    const std::size_t size = key.gost ? key.gost->key_len : key.octets.size();
    return (key.algorithm.name.empty() ? oid_label(key.algorithm) : key.algorithm.name) + ", " +
           count_text(size, "byte");
}

facts_t private_key_details(const private_key_t& key) {
    facts_t lines;
    if (!key.is_gost) return lines;
    // GostR3410-PublicKeyParameters ::= SEQUENCE { publicKeyParamSet, digestParamSet OPTIONAL, ... }  (RFC 4491 2.3.2)
    try {
        der_cursor_t parameters(der_cursor_t(key.parameters).next(asn_tag_t::SEQUENCE, "SEQUENCE"));
        for (const fact_name_t& name : parameter_sets) {
            if (!parameters.sees(asn_tag_t::OBJECT_IDENTIFIER)) break;
            const der_element_t set = parameters.next(asn_tag_t::OBJECT_IDENTIFIER, "OBJECT IDENTIFIER");
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
