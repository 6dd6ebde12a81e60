// The bytes before the hash value of a DigestInfo, which comes last.
#pragma once

#include "der/asn_header.h"

#include <pkider/alg.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace pkider {

/// Size of the longest AlgorithmIdentifier of a hash: an object identifier of 9 bytes, and NULL.
inline constexpr std::size_t max_hash_algorithm_size = 15;

/// DigestInfo ::= SEQUENCE { AlgorithmIdentifier, OCTET STRING }, up to the contents of the latter (RFC 8017 9.2).
class digest_info_prefix_t {
  public:
    /// @param hash         One without an object identifier gets an empty one.
    /// @param digest_size  Size of the hash value in bytes.
    /// @throws             std::length_error when a length would exceed 0xFFFFFFFF.
    digest_info_prefix_t(pki_alg_t hash, uint64_t digest_size);

    std::string_view bytes() const { return {reinterpret_cast<const char*>(m_storage.data()), m_size}; }

  private:
    std::array<uint8_t, asn_max_header_size + max_hash_algorithm_size + asn_max_header_size> m_storage;
    std::size_t m_size;
};

} // namespace pkider
