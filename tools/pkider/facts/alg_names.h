// The algorithms of the library with their display names, for the command line: the library names an algorithm only
// through an object identifier, and some have none.
#pragma once

#include <pkider/alg.h>

#include <span>
#include <string>

namespace tool {

struct alg_row_t {
    pki_alg_t alg;
    const char* name;       ///< Display name.
    const char* enumerator; ///< As written in <pkider/alg.h>.
};

/// Every algorithm with a name: keys and ciphers, hashes, then signatures and MACs.
std::span<const alg_row_t> alg_rows();

/// The row of a value; null when it has no name.
const alg_row_t* find_alg(pki_alg_t alg);

/// The row with this display name or enumerator, letters compared without case; null when there is none.
const alg_row_t* find_alg(const std::string& name);

/// Display name of a value, "unknown" without one.
const char* alg_name(pki_alg_t alg);

/// "0x00040001"
std::string alg_value_text(pki_alg_t alg);

inline pki_alg_t hash_field(pki_alg_t alg) {
    return static_cast<pki_alg_t>(alg & 0x00FF0000);
}
inline pki_alg_t key_field(pki_alg_t alg) {
    return static_cast<pki_alg_t>(alg & 0x0000FFFF);
}

/// True for the OID contents of a hash, those included that the library does not know.
bool is_hash_oid(std::span<const std::uint8_t> oid);

/// Bytes of the hash value; 0 when `hash` is no hash.
std::uint32_t hash_size(pki_alg_t hash);

} // namespace tool
