// GnuTLS.
#include "bench/support/made_files.h"
#include "bench/support/row.h"
#include "bench/support/row_names.h"

#include <gnutls/abstract.h>
#include <gnutls/crypto.h>
#include <gnutls/gnutls.h>
#include <gnutls/pkcs12.h>
#include <gnutls/x509.h>

namespace pkider_bench {
namespace {

gnutls_datum_t datum(const bytes_t& bytes) {
    return {const_cast<unsigned char*>(bytes.data()), static_cast<unsigned>(bytes.size())};
}

std::vector<std::string> dotted_of(const std::vector<bytes_t>& all) {
    std::vector<std::string> out;
    for (const bytes_t& contents : all) {
        out.emplace_back();
        for (std::size_t i = 0; i < oids().size(); ++i) {
            if (oids()[i] == contents) out.back() = dotted_oids()[i];
        }
    }
    return out;
}

uint64_t print_all(const std::vector<bytes_t>& all) {
    for (const bytes_t& der : all) {
        gnutls_x509_dn_t name = nullptr;
        gnutls_x509_dn_init(&name);
        const gnutls_datum_t bytes = datum(der);
        gnutls_datum_t text{};
        if (gnutls_x509_dn_import(name, &bytes) == 0) gnutls_x509_dn_get_str2(name, &text, 0);
        gnutls_free(text.data);
        gnutls_x509_dn_deinit(name);
    }
    return 0; // last RDN first
}

} // namespace

void register_rows() {
    // GnuTLS looks attribute types and algorithms up by dotted text.
    add_row(row_name::find_by_contents, attribute_types().size(), [all = dotted_of(attribute_types())]() -> uint64_t {
        for (const std::string& oid : all) keep(gnutls_x509_dn_oid_name(oid.c_str(), 0));
        return 0;
    });
    add_row(row_name::alg_from_oid, signature_oids().size(), [all = dotted_of(signature_oids())]() -> uint64_t {
        for (const std::string& oid : all) keep(gnutls_oid_to_sign(oid.c_str()));
        return 0;
    });
    add_row(row_name::print_name, plain_names().der.size(), [] { return print_all(plain_names().der); });
    for (const std::size_t num : {10u, 100u, 1'000u}) {
        add_made_row(row_name::print_rdns + std::to_string(num), num, [=]() -> pass_t {
            return [all = std::vector<bytes_t>{long_name(num, false)}] { return print_all(all); };
        });
    }
    add_row(row_name::rsa_public_key, rsa_public_keys().size(), []() -> uint64_t {
        for (const bytes_t& der : rsa_public_keys()) {
            gnutls_pubkey_t key = nullptr;
            gnutls_pubkey_init(&key);
            const gnutls_datum_t bytes = datum(der);
            keep(gnutls_pubkey_import(key, &bytes, GNUTLS_X509_FMT_DER));
            gnutls_pubkey_deinit(key);
        }
        return 0; // big numbers
    });
    add_row(row_name::dsa_value, dsa_values().size(), [] {
        uint64_t sum = 0;
        for (const bytes_t& der : dsa_values()) {
            const gnutls_datum_t bytes = datum(der);
            gnutls_datum_t r{}, s{};
            if (gnutls_decode_rs_value(&bytes, &r, &s) == 0)
                sum += answer_of(r.data, r.size) + answer_of(s.data, s.size);
            gnutls_free(r.data);
            gnutls_free(s.data);
        }
        return sum;
    });
    add_row(row_name::digest_info_build, digests().size(), [] {
        uint64_t sum = 0;
        for (const std::string& digest : digests()) {
            auto* const bytes = reinterpret_cast<unsigned char*>(const_cast<char*>(digest.data()));
            const gnutls_datum_t value = {bytes, static_cast<unsigned>(digest.size())};
            gnutls_datum_t info{};
            if (gnutls_encode_ber_digest_info(GNUTLS_DIG_SHA256, &value, &info) == 0)
                sum += answer_of(info.data, info.size);
            gnutls_free(info.data);
        }
        return sum;
    });
    for (const std::size_t num : {10u, 100u, 1'000u}) {
        add_made_row(row_name::pkcs12_read + std::to_string(num), num, [=]() -> pass_t {
            return [der = made_pfx(num)]() -> uint64_t {
                gnutls_pkcs12_t pfx = nullptr;
                gnutls_pkcs12_bag_t bag = nullptr;
                gnutls_pkcs12_init(&pfx);
                gnutls_pkcs12_bag_init(&bag);
                const gnutls_datum_t bytes = datum(der);
                if (gnutls_pkcs12_import(pfx, &bytes, GNUTLS_X509_FMT_DER, 0) == 0)
                    keep(gnutls_pkcs12_get_bag(pfx, 0, bag));
                gnutls_pkcs12_bag_deinit(bag);
                gnutls_pkcs12_deinit(pfx);
                return 0; // at most 32 bags are taken
            };
        });
    }
}

} // namespace pkider_bench
