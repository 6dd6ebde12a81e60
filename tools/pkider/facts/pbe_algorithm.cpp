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
    return oid_name(describe_oid(oid, {}));
}

std::string why_refused(bytes_t algorithm) {
    try {
        der_cursor_t cursor(algorithm);
        const der_element_t scheme = cursor.next(asn_tag_t::OBJECT_IDENTIFIER, "the encryption algorithm");
        if (!scheme.holds(pbes2)) return "encrypted by " + oid_text(scheme) + ", not PBES2";
        der_cursor_t parameters(cursor.next(asn_tag_t::SEQUENCE, "the PBES2-params"));
        der_cursor_t derivation(parameters.next(asn_tag_t::SEQUENCE, "the key derivation"));
        der_cursor_t encryption(parameters.next(asn_tag_t::SEQUENCE, "the encryption scheme"));

        const der_element_t cipher = encryption.next(asn_tag_t::OBJECT_IDENTIFIER, "the cipher");
        if (!cipher.holds(gost28147)) return "the cipher is " + oid_text(cipher) + ", not GOST 28147-89";
        der_cursor_t cipher_parameters(encryption.next(asn_tag_t::SEQUENCE, "the cipher's parameters"));
        cipher_parameters.next(asn_tag_t::OCTET_STRING, "the IV");
        cipher_parameters.next(asn_tag_t::OBJECT_IDENTIFIER, "the cipher's parameter set");

        const der_element_t kdf = derivation.next(asn_tag_t::OBJECT_IDENTIFIER, "the function of the key derivation");
        if (!kdf.holds(pbkdf2)) return "the key derivation is " + oid_text(kdf) + ", not PBKDF2";
        der_cursor_t kdf_parameters(derivation.next(asn_tag_t::SEQUENCE, "the PBKDF2-params"));
        kdf_parameters.next(asn_tag_t::OCTET_STRING, "the salt");
        kdf_parameters.next(asn_tag_t::INTEGER, "the iteration count");
        if (kdf_parameters.sees(asn_tag_t::INTEGER)) kdf_parameters.next(asn_tag_t::INTEGER, "the key length");
        if (kdf_parameters.at_end()) return "no pseudo-random function is named";

        der_cursor_t prf(kdf_parameters.next(asn_tag_t::SEQUENCE, "the pseudo-random function"));
        const der_element_t function = prf.next(asn_tag_t::OBJECT_IDENTIFIER, "the pseudo-random function");
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
    cursor.next(asn_tag_t::OBJECT_IDENTIFIER, "the encryption algorithm");
    der_cursor_t parameters(cursor.next(asn_tag_t::SEQUENCE, "the PBES2-params"));
    parameters.next(asn_tag_t::SEQUENCE, "the key derivation");
    der_cursor_t encryption(parameters.next(asn_tag_t::SEQUENCE, "the encryption scheme"));
    const der_element_t cipher = encryption.next(asn_tag_t::OBJECT_IDENTIFIER, "the cipher");
    der_cursor_t cipher_parameters(encryption.next(asn_tag_t::SEQUENCE, "the cipher's parameters"));
    cipher_parameters.next(asn_tag_t::OCTET_STRING, "the IV");
    const der_element_t set = cipher_parameters.next(asn_tag_t::OBJECT_IDENTIFIER, "the cipher's parameter set");
    return oid_text(cipher) + ", " + oid_text(set) + ", PBKDF2 with " + count_text(iterations, "iteration");
}

} // namespace tool
