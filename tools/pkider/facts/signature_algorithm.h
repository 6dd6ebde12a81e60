// What a signature algorithm identifier says, the parameters of RSASSA-PSS included (RFC 4055 3.1).
#pragma once

#include "tools/pkider/facts/facts.h"
#include "tools/pkider/facts/oid_names.h"

#include <pkider/alg.h>

#include <optional>
#include <string>

namespace tool {

/// Parameters of RSASSA-PSS. What is absent has its default, and that is said.
struct pss_parameters_t {
    oid_text_t hash;
    oid_text_t mask_hash;
    std::uint32_t salt_length = 20;
    std::uint32_t trailer_field = 1;
    bool hash_is_default = true;
    bool mask_is_default = true;
    bool salt_is_default = true;
};

struct signature_algorithm_t {
    oid_text_t oid;
    pki_alg_t alg = PKI_ALG_NONE; ///< The hash of RSASSA-PSS included; none when the library does not know it.
    std::optional<pss_parameters_t> pss;
};

/// Reads a whole AlgorithmIdentifier; none when it is not one.
std::optional<signature_algorithm_t> read_signature_algorithm(bytes_t identifier, oid_map_handle_t map);

/// "sha256RSA", "sha256RSASSA-PSS", or what else the OID is called.
std::string signature_algorithm_name(const signature_algorithm_t& algorithm);

/// "hash SHA256, mask MGF1 with SHA1 (default), salt 20 bytes (default)"
std::string pss_line(const pss_parameters_t& pss);

/// "signature" with its name, and "PSS" with its line.
void add_signature_lines(const signature_algorithm_t& algorithm, facts_t& facts);

/// {"name": ..., "oid": ..., "value": ..., "pss": {...}}; docs/certificate_json.md describes the fields.
json_t signature_algorithm_json(const signature_algorithm_t& algorithm);

} // namespace tool
