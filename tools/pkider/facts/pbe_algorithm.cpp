#include "tools/pkider/facts/pbe_algorithm.h"

#include "tools/pkider/base/count_text.h"
#include "tools/pkider/base/failure.h"
#include "tools/pkider/facts/oid_names.h"

namespace tool {
namespace {

constexpr uint8_t pbes2[] = {0x2A, 0x86, 0x48, 0x86, 0xF7, 0x0D, 0x01, 0x05, 0x0D};  // 1.2.840.113549.1.5.13
constexpr uint8_t pbkdf2[] = {0x2A, 0x86, 0x48, 0x86, 0xF7, 0x0D, 0x01, 0x05, 0x0C}; // 1.2.840.113549.1.5.12
constexpr uint8_t hmac_gost94[] = {0x2A, 0x85, 0x03, 0x02, 0x02, 0x0A};              // 1.2.643.2.2.10
constexpr uint8_t gost28147[] = {0x2A, 0x85, 0x03, 0x02, 0x02, 0x15};                // 1.2.643.2.2.21

std::string oid_text(const der_element_t& element) {
    return algorithm_name(element.contents);
}

} // namespace

std::string algorithm_name(bytes_t oid) {
    const oid_text_t text = describe_oid(oid, {});
    return text.name.empty() ? oid_label(text) : text.name;
}

std::string why_refused(bytes_t algorithm) {
    try {
        der_cursor_t cursor(algorithm);
        const der_element_t scheme = cursor.next(asn_tag_t::OBJECT_IDENTIFIER, "OBJECT IDENTIFIER");
        if (!scheme.holds(pbes2)) return "encrypted by " + oid_text(scheme) + ", not PBES2";
        der_cursor_t parameters(cursor.next(asn_tag_t::SEQUENCE, "SEQUENCE (PBES2-params)"));
        der_cursor_t derivation(parameters.next(asn_tag_t::SEQUENCE, "SEQUENCE (keyDerivationFunc)"));
        der_cursor_t encryption(parameters.next(asn_tag_t::SEQUENCE, "SEQUENCE (encryptionScheme)"));

        const der_element_t cipher = encryption.next(asn_tag_t::OBJECT_IDENTIFIER, "OBJECT IDENTIFIER (cipher)");
        if (!cipher.holds(gost28147)) return "the cipher is " + oid_text(cipher) + ", not GOST 28147-89";
        der_cursor_t cipher_parameters(encryption.next(asn_tag_t::SEQUENCE, "SEQUENCE (cipher's parameters)"));
        cipher_parameters.next(asn_tag_t::OCTET_STRING, "OCTET STRING (IV)");
        cipher_parameters.next(asn_tag_t::OBJECT_IDENTIFIER, "OBJECT IDENTIFIER (cipher's parameter set)");

        const der_element_t kdf = derivation.next(asn_tag_t::OBJECT_IDENTIFIER, "OBJECT IDENTIFIER (key derivation)");
        if (!kdf.holds(pbkdf2)) return "the key derivation is " + oid_text(kdf) + ", not PBKDF2";
        der_cursor_t kdf_parameters(derivation.next(asn_tag_t::SEQUENCE, "SEQUENCE (PBKDF2-params)"));
        kdf_parameters.next(asn_tag_t::OCTET_STRING, "OCTET STRING (salt)");
        kdf_parameters.next(asn_tag_t::INTEGER, "INTEGER (iterations)");
        if (kdf_parameters.sees(asn_tag_t::INTEGER)) kdf_parameters.next(asn_tag_t::INTEGER, "INTEGER (key length)");
        if (kdf_parameters.at_end()) return "no pseudo-random function is named";

        der_cursor_t prf(kdf_parameters.next(asn_tag_t::SEQUENCE, "SEQUENCE (pseudo-random function)"));
        const der_element_t function = prf.next(asn_tag_t::OBJECT_IDENTIFIER, "OBJECT IDENTIFIER");
        if (!function.holds(hmac_gost94))
            return "the pseudo-random function is " + oid_text(function) + ", not HMAC GOST R 34.11-94";
        if (prf.at_end()) return "the pseudo-random function has no parameter";
        return "the iteration count is out of range";
    } catch (const der_fault_t& fault) {
        return "its algorithm is malformed: expected " + fault.expected;
    }
}

std::string protection_text(bytes_t algorithm, uint32_t iterations) {
    der_cursor_t cursor(algorithm);
    cursor.next(asn_tag_t::OBJECT_IDENTIFIER, "OBJECT IDENTIFIER");
    der_cursor_t parameters(cursor.next(asn_tag_t::SEQUENCE, "SEQUENCE"));
    parameters.next(asn_tag_t::SEQUENCE, "SEQUENCE");
    der_cursor_t encryption(parameters.next(asn_tag_t::SEQUENCE, "SEQUENCE"));
    const der_element_t cipher = encryption.next(asn_tag_t::OBJECT_IDENTIFIER, "OBJECT IDENTIFIER");
    der_cursor_t cipher_parameters(encryption.next(asn_tag_t::SEQUENCE, "SEQUENCE"));
    cipher_parameters.next(asn_tag_t::OCTET_STRING, "OCTET STRING");
    const der_element_t set = cipher_parameters.next(asn_tag_t::OBJECT_IDENTIFIER, "OBJECT IDENTIFIER");
    return oid_text(cipher) + ", " + oid_text(set) + ", PBKDF2 with " + count_text(iterations, "iteration");
}

} // namespace tool
