#include "alg/digest_info.h"

#include "alg/hash_rows.h"
#include "der/element_steps.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

namespace pkider {
namespace {

constexpr uint8_t null_tag = 0x05;
constexpr std::size_t num_hashes = std::size(hash_rows);

struct algorithm_t {
    std::array<uint8_t, max_hash_algorithm_size> der{};
    uint8_t size = 0;
};

// AlgorithmIdentifier ::= SEQUENCE { algorithm OBJECT IDENTIFIER, parameters NULL }
// Every hash is followed by a NULL. Required: DigestInfoWriter.RequiredNullIsWrittenForGostToo.
constexpr algorithm_t algorithm_of(const PKI_OID& hash_oid) {
    constexpr uint64_t null_size = asn_element_size(0);
    const uint64_t contents_size = asn_element_size(hash_oid.len) + null_size;
    algorithm_t algorithm;
    uint8_t* at = asn_put_header(algorithm.der.data(), asn_tag_t::SEQUENCE, contents_size);
    at = asn_put_header(at, asn_tag_t::OBJECT_IDENTIFIER, hash_oid.len);
    at = std::copy_n(hash_oid.data, hash_oid.len, at);
    asn_put_header(at, null_tag, 0);
    algorithm.size = static_cast<uint8_t>(asn_element_size(contents_size));
    return algorithm;
}

// One for each row of hash_rows, followed by one without an object identifier. Bench: alg/digest_info_build.
constexpr auto algorithms = [] {
    std::array<algorithm_t, num_hashes + 1> all{};
    for (std::size_t i = 0; i < num_hashes; ++i) all[i] = algorithm_of(hash_rows[i].oid);
    all[num_hashes] = algorithm_of(empty_oid);
    return all;
}();

const algorithm_t& find_algorithm(pki_alg_t hash) {
    // An unknown hash is not refused. Required: DigestInfoWriter.RequiredUnknownHashGetsAnEmptyObjectIdentifier.
    const alg_row_t* const row = find_row(hash_rows, hash);
    return algorithms[row != nullptr ? static_cast<std::size_t>(row - hash_rows) : num_hashes];
}

} // namespace

digest_info_prefix_t::digest_info_prefix_t(pki_alg_t hash, uint64_t digest_size) {
    const algorithm_t& algorithm = find_algorithm(hash);
    const uint64_t contents_size = algorithm.size + asn_element_size(digest_size);
    if (contents_size > asn_max_content_size) throw std::length_error("pkider: DigestInfo too long");

    uint8_t* at = m_storage.data();
    at = asn_put_header(at, asn_tag_t::SEQUENCE, contents_size);
    std::copy(algorithm.der.begin(), algorithm.der.end(), at); // always all of it: a constant size needs no call
    at = asn_put_header(at + algorithm.size, asn_tag_t::OCTET_STRING, digest_size);
    m_size = static_cast<std::size_t>(at - m_storage.data());
}

} // namespace pkider

void asn_add_alg_to_digest(std::string& digest, pki_alg_t hash) {
    digest.insert(0, pkider::digest_info_prefix_t(hash, digest.size()).bytes());
}

bool asn_read_alg_from_digest(asn_algorid_t* out, const std::string& digest_info) {
    using namespace pkider;

    *out = {};
    const auto* const der = reinterpret_cast<const uint8_t*>(digest_info.data());
    asn_element_t input = asn_contents(der, digest_info.size()), info, algorithm, params, digest;
    return asn_next_element(asn_tag_t::SEQUENCE, input, info) &&
           asn_next_element(asn_tag_t::SEQUENCE, info, algorithm) &&
           asn_next_contents(asn_tag_t::OBJECT_IDENTIFIER, algorithm, out->oid_len, out->oid) &&
           asn_next_element(asn_tag_t::ANY, algorithm, params) &&
           asn_next_element(asn_tag_t::OCTET_STRING, info, digest);
}
