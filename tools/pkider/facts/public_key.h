// What a public key is: algorithm, size, exponent, curve, parameter sets.
#pragma once

#include "tools/pkider/facts/facts.h"
#include "tools/pkider/facts/oid_names.h"

#include <pkider/alg.h>

#include <optional>
#include <string>

namespace tool {

struct rsa_key_t {
    bytes_t modulus;  ///< Without leading zeros.
    bytes_t exponent; ///< Without leading zeros.
};

struct gost_key_t {
    oid_text_t public_key_set;
    std::optional<oid_text_t> digest_set;
    std::optional<oid_text_t> encryption_set;
    bytes_t key; ///< As stored, lowest byte first; empty when the BIT STRING holds no OCTET STRING.
};

struct public_key_t {
    oid_text_t algorithm;
    pki_alg_t alg = PKI_ALG_NONE; ///< Known to the catalogue as a key algorithm.
    std::optional<rsa_key_t> rsa;
    std::optional<gost_key_t> gost;
    std::optional<oid_text_t> curve; ///< Of an elliptic-curve key with a named curve.
    std::optional<bytes_t> prime;    ///< p of a DSA key, without leading zeros.
    bytes_t bits;                    ///< The BIT STRING's contents after the count of unused bits.
};

/// Reads a SubjectPublicKeyInfo; the views point into it. None when it is not one; a key whose inner form is unknown or
/// damaged keeps what could be read.
std::optional<public_key_t> read_public_key(bytes_t spki, oid_map_handle_t map);

/// "RSA, 2048 bits, exponent 65537"
std::string public_key_line(const public_key_t& key);

/// The lines after the first: parameter sets by name.
facts_t public_key_details(const public_key_t& key);

/// "key" with its line, and the lines behind it.
void add_public_key_lines(const public_key_t& key, facts_t& facts);

/// {"algorithm": {...}, "bits": 2048, "exponent": "65537", ...}; docs/certificate_json.md describes the fields.
json_t public_key_json(const public_key_t& key);

} // namespace tool
