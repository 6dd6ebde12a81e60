// The encryption algorithm of PKCS#8 and PKCS#12 in words (PBES2, RFC 8018 6.2 and A.4).
#pragma once

#include "tools/pkider/formats/der_cursor.h"

#include <optional>
#include <string>

namespace tool {

/// An encryption algorithm, read as PBES2 with PBKDF2 and GOST 28147-89. Each field is the contents of its element;
/// it is missing where reading stopped before it. Other algorithms share the first fields.
struct pbes2_t {
    std::optional<bytes_t> scheme;     ///< The OID of the whole: PBES2.
    std::optional<bytes_t> derivation; ///< The AlgorithmIdentifier of the key derivation.
    std::optional<bytes_t> encryption; ///< The AlgorithmIdentifier of the cipher.
    std::optional<bytes_t> cipher;     ///< The OID of the cipher,
    std::optional<bytes_t> cipher_set; ///< and that of its parameter set.
    std::optional<bytes_t> kdf;        ///< The OID of the key derivation: PBKDF2.
    std::optional<bytes_t> prf;        ///< The OID of the pseudo-random function of PBKDF2; optional (RFC 8018 A.2).
    bool prf_has_parameter = false;
    std::string missing; ///< What was expected where reading stopped; empty if nothing was missing.
};

/// Reads an AlgorithmIdentifier with these contents. It does not check which algorithms the OIDs name.
pbes2_t read_pbes2(bytes_t algorithm);

/// The name of an OID with these contents, its dotted text when it has none.
std::string algorithm_name(bytes_t oid);

/// Why the library refuses an AlgorithmIdentifier with these contents, in the order in which it helps most to know.
std::string why_refused(bytes_t algorithm);

/// What an algorithm that the library accepted asks for: cipher, parameter set, iterations.
std::string protection_text(bytes_t algorithm, uint32_t iterations);

} // namespace tool
