// The encryption algorithm of PKCS#8 and PKCS#12 in words (PBES2, RFC 8018 6.2 and A.4).
#pragma once

#include "tools/pkider/formats/der_cursor.h"

#include <string>

namespace tool {

/// The name of an OID with these contents, its dotted text when it has none.
std::string algorithm_name(bytes_t oid);

/// Why the library refuses an AlgorithmIdentifier with these contents, in the order in which it helps most to know.
std::string why_refused(bytes_t algorithm);

/// What an algorithm that the library accepted asks for: cipher, parameter set, iterations.
std::string protection_text(bytes_t algorithm, uint32_t iterations);

} // namespace tool
