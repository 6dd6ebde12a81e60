#include "tools/pkider/facts/pbe_algorithm.h"

#include "tools/pkider/base/count_text.h"
#include "tools/pkider/base/failure.h"
#include "tools/pkider/facts/oid_names.h"
#include "tools/pkider/formats/oid_constant.h"

#include <algorithm>

namespace tool {
namespace {

// clang-format off
constexpr bytes_t pbes2       = oid<"1.2.840.113549.1.5.13">;
constexpr bytes_t pbkdf2      = oid<"1.2.840.113549.1.5.12">;
constexpr bytes_t hmac_gost94 = oid<"1.2.643.2.2.10">;
constexpr bytes_t gost28147   = oid<"1.2.643.2.2.21">;
// clang-format on

/// Reads as far as the bytes go. Throws der_fault_t; the fields before the fault are filled.
void fill_pbes2(bytes_t algorithm, pbes2_t& out) {
    der_cursor_t cursor(algorithm);
    out.scheme = cursor.next(asn_tag_t::OBJECT_IDENTIFIER, "the encryption algorithm").contents;
    der_cursor_t parameters(cursor.next(asn_tag_t::SEQUENCE, "the PBES2-params"));
    const der_element_t derivation_identifier = parameters.next(asn_tag_t::SEQUENCE, "the key derivation");
    out.derivation = derivation_identifier.contents;
    const der_element_t encryption_identifier = parameters.next(asn_tag_t::SEQUENCE, "the encryption scheme");
    out.encryption = encryption_identifier.contents;

    // The cipher first: it says most about who wrote the file.
    der_cursor_t encryption(encryption_identifier);
    out.cipher = encryption.next(asn_tag_t::OBJECT_IDENTIFIER, "the cipher").contents;
    der_cursor_t cipher_parameters(encryption.next(asn_tag_t::SEQUENCE, "the cipher's parameters"));
    cipher_parameters.next(asn_tag_t::OCTET_STRING, "the IV");
    out.cipher_set = cipher_parameters.next(asn_tag_t::OBJECT_IDENTIFIER, "the cipher's parameter set").contents;

    der_cursor_t derivation(derivation_identifier);
    out.kdf = derivation.next(asn_tag_t::OBJECT_IDENTIFIER, "the function of the key derivation").contents;
    der_cursor_t kdf_parameters(derivation.next(asn_tag_t::SEQUENCE, "the PBKDF2-params"));
    kdf_parameters.next(asn_tag_t::OCTET_STRING, "the salt");
    kdf_parameters.next(asn_tag_t::INTEGER, "the iteration count");
    if (kdf_parameters.sees(asn_tag_t::INTEGER)) kdf_parameters.next(asn_tag_t::INTEGER, "the key length");
    if (kdf_parameters.at_end()) return;

    der_cursor_t prf(kdf_parameters.next(asn_tag_t::SEQUENCE, "the pseudo-random function"));
    out.prf = prf.next(asn_tag_t::OBJECT_IDENTIFIER, "the pseudo-random function").contents;
    out.prf_has_parameter = !prf.at_end();
}

bool is_another(const std::optional<bytes_t>& found, bytes_t expected) {
    return found && !std::ranges::equal(*found, expected);
}

} // namespace

pbes2_t read_pbes2(bytes_t algorithm) {
    pbes2_t out;
    try {
        fill_pbes2(algorithm, out);
    } catch (const der_fault_t& fault) {
        out.missing = fault.expected;
    }
    return out;
}

std::string algorithm_name(bytes_t oid) {
    return oid_name(describe_oid(oid, {}));
}

std::string why_refused(bytes_t algorithm) {
    const pbes2_t found = read_pbes2(algorithm);
    if (is_another(found.scheme, pbes2)) return "encrypted by " + algorithm_name(*found.scheme) + ", not PBES2";
    if (is_another(found.cipher, gost28147))
        return "the cipher is " + algorithm_name(*found.cipher) + ", not GOST 28147-89";
    if (is_another(found.kdf, pbkdf2)) return "the key derivation is " + algorithm_name(*found.kdf) + ", not PBKDF2";
    if (is_another(found.prf, hmac_gost94))
        return "the pseudo-random function is " + algorithm_name(*found.prf) + ", not HMAC GOST R 34.11-94";
    if (!found.missing.empty()) return "its algorithm is malformed: expected " + found.missing;
    if (!found.prf) return "no pseudo-random function is named";
    if (!found.prf_has_parameter) return "the pseudo-random function has no parameter";
    return "the iteration count is out of range";
}

std::string protection_text(bytes_t algorithm, uint32_t iterations) {
    const pbes2_t accepted = read_pbes2(algorithm);
    return algorithm_name(accepted.cipher.value()) + ", " + algorithm_name(accepted.cipher_set.value()) +
           ", PBKDF2 with " + count_text(iterations, "iteration");
}

} // namespace tool
