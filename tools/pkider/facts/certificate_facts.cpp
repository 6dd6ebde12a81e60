#include "tools/pkider/facts/certificate_facts.h"

#include "tools/pkider/base/failure.h"
#include "tools/pkider/facts/fact_names.h"
#include "tools/pkider/formats/der_integer.h"
#include "tools/pkider/formats/encodings.h"
#include "tools/pkider/formats/time_text.h"

#include <vector>

namespace tool {
namespace {

/// A two's complement number as hex digits with a sign: people compare serial numbers by eye.
std::string signed_hex(bytes_t contents) {
    if (contents.empty()) return "";
    if (contents[0] < 0x80) return to_hex(as_text(without_leading_zeros(contents)));

    std::vector<std::uint8_t> magnitude(contents.begin(), contents.end());
    unsigned carry = 1;
    for (auto byte = magnitude.rbegin(); byte != magnitude.rend(); ++byte) {
        const unsigned sum = static_cast<std::uint8_t>(~*byte) + carry;
        *byte = static_cast<std::uint8_t>(sum);
        carry = sum >> 8;
    }
    return "-" + to_hex(as_text(without_leading_zeros(magnitude)));
}

std::uint32_t read_version(const std::optional<der_element_t>& version) {
    if (!version) return 1; // DEFAULT v1
    const bytes_t contents = version->contents;
    if (contents.size() != 1 || contents[0] > 2) throw der_fault_t(version->offset, "a version from 0 to 2");
    return contents[0] + 1u;
}

std::string read_time(const der_element_t& time) {
    if (const auto text = time_text(time.identifier, time.contents)) return *text;
    return '"' + std::string(as_text(time.contents)) + '"';
}

} // namespace

certificate_facts_t read_certificate_facts(const certificate_t& certificate, oid_map_handle_t map) {
    certificate_facts_t facts;
    facts.version = read_version(certificate.version);
    facts.serial = signed_hex(certificate.serial.contents);
    facts.not_before = read_time(certificate.not_before);
    facts.not_after = read_time(certificate.not_after);
    const auto key = read_public_key(certificate.public_key.whole, map);
    if (!key) throw der_fault_t(certificate.public_key.offset, "a SubjectPublicKeyInfo");
    facts.key = *key;
    const auto signature = read_signature_algorithm(certificate.signature_algorithm.whole, map);
    if (!signature) throw der_fault_t(certificate.signature_algorithm.contents_offset(), "an OBJECT IDENTIFIER");
    facts.signature = *signature;
    return facts;
}

facts_t certificate_lines(const certificate_facts_t& facts) {
    facts_t lines = {{fact::serial, facts.serial}, {fact::valid, facts.not_before + " to " + facts.not_after}};
    add_public_key_lines(facts.key, lines);
    add_signature_lines(facts.signature, lines);
    return lines;
}

void add_certificate_json(const certificate_facts_t& facts, json_t& json) {
    json["version"] = facts.version;
    json["serial"] = facts.serial;
    json["signature_algorithm"] = signature_algorithm_json(facts.signature);
    json["not_before"] = json_text(facts.not_before);
    json["not_after"] = json_text(facts.not_after);
    json["public_key"] = public_key_json(facts.key);
}

} // namespace tool
