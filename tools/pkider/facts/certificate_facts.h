// What a certificate says beside its two names: version, serial number, signature algorithm, validity, key.
#pragma once

#include "tools/pkider/facts/certificate.h"
#include "tools/pkider/facts/facts.h"
#include "tools/pkider/facts/public_key.h"
#include "tools/pkider/facts/signature_algorithm.h"
#include "tools/pkider/text/json.h"

#include <string>

namespace tool {

struct certificate_facts_t {
    std::uint32_t version = 1; ///< 1 to 3.
    std::string serial;        ///< Upper-case hex of the number, "-" before a negative one.
    signature_algorithm_t signature;
    std::string not_before; ///< ISO 8601; what the certificate says, in quotes, when that is not a time.
    std::string not_after;
    public_key_t key;
};

/// Tells what the fields say; the views of the result point into them.
///
/// @throws  der_fault_t
certificate_facts_t read_certificate_facts(const certificate_t& certificate, oid_map_handle_t map);

/// The same in a few lines for people.
facts_t certificate_lines(const certificate_facts_t& facts);

/// Adds the fields to the object that holds the names; docs/certificate_json.md describes them.
void add_certificate_json(const certificate_facts_t& facts, json_t& json);

} // namespace tool
