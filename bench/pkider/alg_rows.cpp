#include "bench/pkider/rows.h"
#include "bench/support/inputs.h"
#include "bench/support/row.h"
#include "bench/support/row_names.h"

#include <pkider/alg.h>

namespace pkider_bench {
namespace {

constexpr auto sha256 = static_cast<pki_alg_t>(0x00040000);

uint64_t read_public_keys(std::size_t cut) {
    uint64_t sum = 0;
    asn_pubkey_t out;
    for (const bytes_t& key : rsa_public_keys()) {
        if (asn_read_pubkey(key.data(), static_cast<int32_t>(key.size() - cut), out)) sum += out.key_len;
    }
    return sum;
}

} // namespace

void register_alg_rows() {
    add_row(row_name::alg_from_oid, signature_oids().size(), [] {
        uint64_t known = 0;
        for (const bytes_t& oid : signature_oids()) {
            known += PKI_OID_TO_ALG(oid.data(), static_cast<uint32_t>(oid.size())) != 0;
        }
        return known == 0 ? uint64_t{1} : uint64_t{0}; // libraries know different sets
    });
    add_row(row_name::public_key, rsa_public_keys().size(), [] { return read_public_keys(0); });
    add_row(row_name::public_key_refused, rsa_public_keys().size(), [] { return read_public_keys(1); });
    add_row(row_name::rsa_public_key, rsa_public_keys().size(), [] {
        uint64_t sum = 0;
        asn_pubkey_t key;
        asn_rsa_pubkey_t rsa;
        for (const bytes_t& der : rsa_public_keys()) {
            if (!asn_read_pubkey(der.data(), static_cast<int32_t>(der.size()), key)) continue;
            if (asn_read_rsa_pubkey(key, rsa)) sum += rsa.modulus_len + rsa.exponent_len;
        }
        return sum;
    });
    add_row(row_name::dsa_value, dsa_values().size(), [] {
        uint64_t sum = 0;
        asn_dsa_certsign_t out;
        for (const bytes_t& value : dsa_values()) {
            if (asn_read_dsa_certsign(value.data(), static_cast<uint32_t>(value.size()), out)) {
                sum += answer_of(out.r, out.r_len) + answer_of(out.s, out.s_len);
            }
        }
        return sum;
    });
    add_row(row_name::ike_algorithm, signature_algorithms().size(), [] {
        uint64_t known = 0;
        asn_ike_signalg_t out;
        for (const bytes_t& algorithm : signature_algorithms()) {
            if (asn_read_ike_signalg(algorithm.data(), static_cast<uint32_t>(algorithm.size()), out)) {
                known += out.to_pki_alg() != 0;
            }
        }
        return known == 0 ? uint64_t{1} : uint64_t{0}; // as above
    });
    // The digest is its own output: the row pays for putting the hash value there, as a host does.
    add_row(row_name::digest_info_build, digests().size(), [] {
        uint64_t sum = 0;
        std::string out;
        for (const std::string& digest : digests()) {
            out = digest;
            asn_add_alg_to_digest(out, sha256);
            sum += answer_of(out.data(), out.size());
        }
        return sum;
    });
    add_row(row_name::digest_info_read, digest_infos().size(), [] {
        uint64_t sum = 0;
        asn_algorid_t out;
        for (const std::string& info : digest_infos()) {
            if (asn_read_alg_from_digest(&out, info)) sum += answer_of(out.oid, out.oid_len);
        }
        return sum;
    });
}

} // namespace pkider_bench
