// Botan 2.
#include "bench/support/made_files.h"
#include "bench/support/row.h"
#include "bench/support/row_names.h"
#include "bench/support/walk_elements.h"

#include <botan/alg_id.h>
#include <botan/asn1_obj.h>
#include <botan/ber_dec.h>
#include <botan/bigint.h>
#include <botan/der_enc.h>
#include <botan/oids.h>
#include <botan/x509_dn.h>

namespace pkider_bench {
namespace {

Botan::OID read_oid(const bytes_t& der) {
    Botan::OID oid;
    Botan::BER_Decoder(der).decode(oid);
    return oid;
}

uint64_t print_all(const std::vector<bytes_t>& all) {
    for (const bytes_t& der : all) {
        Botan::X509_DN name;
        Botan::BER_Decoder(der).decode(name);
        keep(name.to_string().size());
    }
    return 0; // quoted values
}

} // namespace

void register_rows() {
    add_row(row_name::oid_from_text, oids().size(), []() -> uint64_t {
        for (const std::string& text : dotted_oids()) {
            std::vector<uint8_t> out;
            Botan::DER_Encoder(out).encode(Botan::OID(text));
            keep(out.size());
        }
        return 0; // identifier and length first
    });
    add_row(row_name::oid_to_text, oids().size(), [all = oid_elements(oids())] {
        uint64_t sum = 0;
        for (const bytes_t& der : all) {
            const std::string text = read_oid(der).to_string();
            sum += answer_of(text.data(), text.size());
        }
        return sum;
    });
    add_row(row_name::find_by_contents, attribute_types().size(),
            [all = oid_elements(attribute_types())]() -> uint64_t {
                for (const bytes_t& der : all) keep(Botan::OIDS::oid2str_or_empty(read_oid(der)).size());
                return 0;
            });
    add_row(row_name::alg_from_oid, signature_oids().size(), [all = oid_elements(signature_oids())]() -> uint64_t {
        for (const bytes_t& der : all) keep(Botan::OIDS::oid2str_or_empty(read_oid(der)).size());
        return 0;
    });
    add_row(row_name::print_name, plain_names().der.size(), [] { return print_all(plain_names().der); });
    add_row(row_name::public_key, rsa_public_keys().size(), [] {
        uint64_t sum = 0;
        for (const bytes_t& der : rsa_public_keys()) {
            Botan::AlgorithmIdentifier algorithm;
            std::vector<uint8_t> key;
            Botan::BER_Decoder(der)
                .start_cons(Botan::SEQUENCE)
                .decode(algorithm)
                .decode(key, Botan::BIT_STRING)
                .end_cons();
            sum += key.size();
        }
        return sum;
    });
    add_row(row_name::dsa_value, dsa_values().size(), []() -> uint64_t {
        for (const bytes_t& der : dsa_values()) {
            Botan::BigInt r, s;
            Botan::BER_Decoder(der).start_cons(Botan::SEQUENCE).decode(r).decode(s).end_cons();
            keep(r.bits() + s.bits());
        }
        return 0; // big numbers
    });
}

} // namespace pkider_bench
