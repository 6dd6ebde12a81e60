// BoringSSL: its byte-string reader and builder (CBS, CBB), and its object table.
#include "bench/support/made_files.h"
#include "bench/support/row.h"
#include "bench/support/row_names.h"
#include "bench/support/walk_elements.h"

#include <openssl/bytestring.h>
#include <openssl/mem.h>
#include <openssl/nid.h>
#include <openssl/obj.h>
#include <openssl/x509.h>

#include <memory>

namespace pkider_bench {
namespace {

CBS cbs_of(const bytes_t& bytes) {
    CBS out;
    CBS_init(&out, bytes.data(), bytes.size());
    return out;
}

uint64_t answer_of(const CBS& bytes) {
    return pkider_bench::answer_of(CBS_data(&bytes), CBS_len(&bytes));
}

bool enter(CBS& cursor, unsigned tag) {
    CBS child;
    if (!CBS_get_asn1(&cursor, &child, tag)) return false;
    cursor = child;
    return true;
}

void add_oid_rows() {
    add_row(row_name::oid_from_text, oids().size(), [] {
        uint64_t sum = 0;
        uint8_t out[512];
        for (const std::string& text : dotted_oids()) {
            CBB builder;
            std::size_t size = 0;
            CBB_init_fixed(&builder, out, sizeof out);
            CBB_add_asn1_oid_from_text(&builder, text.data(), text.size());
            CBB_finish(&builder, nullptr, &size);
            sum += pkider_bench::answer_of(out, size);
        }
        return sum;
    });
    add_row(row_name::oid_to_text, oids().size(), [] {
        uint64_t sum = 0;
        for (const bytes_t& oid : oids()) {
            const CBS contents = cbs_of(oid);
            char* const text = CBS_asn1_oid_to_text(&contents);
            sum += pkider_bench::answer_of(text, std::char_traits<char>::length(text));
            OPENSSL_free(text);
        }
        return sum;
    });
    add_row(row_name::find_by_contents, attribute_types().size(), []() -> uint64_t {
        for (const bytes_t& type : attribute_types()) {
            const CBS contents = cbs_of(type);
            keep(OBJ_nid2sn(OBJ_cbs2nid(&contents)));
        }
        return 0; // it knows other types
    });
    add_row(row_name::find_by_short_name, 6, [] {
        uint64_t found = 0;
        for (const char* name : {"CN", "C", "L", "ST", "O", "OU"}) found += OBJ_sn2nid(name) != NID_undef;
        return found;
    });
    add_row(row_name::alg_from_oid, signature_oids().size(), []() -> uint64_t {
        for (const bytes_t& oid : signature_oids()) {
            const CBS contents = cbs_of(oid);
            int hash = 0, key = 0;
            keep(OBJ_find_sigid_algs(OBJ_cbs2nid(&contents), &hash, &key));
        }
        return 0;
    });
}

bool read_public_key(const bytes_t& der, CBS& key) {
    CBS cursor = cbs_of(der), algorithm, oid;
    uint8_t unused_bits = 0;
    return enter(cursor, CBS_ASN1_SEQUENCE) && CBS_get_asn1(&cursor, &algorithm, CBS_ASN1_SEQUENCE) &&
           CBS_get_asn1(&algorithm, &oid, CBS_ASN1_OBJECT) && CBS_get_asn1(&cursor, &key, CBS_ASN1_BITSTRING) &&
           CBS_get_u8(&key, &unused_bits);
}

void add_key_and_signature_rows() {
    add_row(row_name::public_key, rsa_public_keys().size(), [] {
        uint64_t sum = 0;
        CBS key;
        for (const bytes_t& der : rsa_public_keys()) {
            if (read_public_key(der, key)) sum += CBS_len(&key);
        }
        return sum;
    });
    add_row(row_name::rsa_public_key, rsa_public_keys().size(), [] {
        uint64_t sum = 0;
        CBS key, modulus, exponent;
        for (const bytes_t& der : rsa_public_keys()) {
            if (!read_public_key(der, key) || !enter(key, CBS_ASN1_SEQUENCE)) continue;
            if (!CBS_get_asn1(&key, &modulus, CBS_ASN1_INTEGER) || !CBS_get_asn1(&key, &exponent, CBS_ASN1_INTEGER)) {
                continue;
            }
            while (CBS_len(&modulus) > 1 && *CBS_data(&modulus) == 0) CBS_skip(&modulus, 1);
            sum += CBS_len(&modulus) + CBS_len(&exponent);
        }
        return sum;
    });
    add_row(row_name::dsa_value, dsa_values().size(), [] {
        uint64_t sum = 0;
        CBS r, s;
        for (const bytes_t& der : dsa_values()) {
            CBS cursor = cbs_of(der);
            if (!enter(cursor, CBS_ASN1_SEQUENCE)) continue;
            if (!CBS_get_asn1(&cursor, &r, CBS_ASN1_INTEGER) || !CBS_get_asn1(&cursor, &s, CBS_ASN1_INTEGER)) continue;
            sum += answer_of(r) + answer_of(s);
        }
        return sum;
    });
    add_row(row_name::ike_algorithm, signature_algorithms().size(), []() -> uint64_t {
        for (const bytes_t& der : signature_algorithms()) {
            CBS cursor = cbs_of(der), oid;
            if (!enter(cursor, CBS_ASN1_SEQUENCE) || !CBS_get_asn1(&cursor, &oid, CBS_ASN1_OBJECT)) continue;
            int hash = 0, key = 0;
            keep(OBJ_find_sigid_algs(OBJ_cbs2nid(&oid), &hash, &key));
        }
        return 0;
    });
    add_row(row_name::digest_info_read, digest_infos().size(), [] {
        uint64_t sum = 0;
        for (const std::string& info : digest_infos()) {
            CBS cursor, algorithm, oid, value;
            CBS_init(&cursor, reinterpret_cast<const uint8_t*>(info.data()), info.size());
            if (!enter(cursor, CBS_ASN1_SEQUENCE) || !CBS_get_asn1(&cursor, &algorithm, CBS_ASN1_SEQUENCE)) continue;
            if (!CBS_get_asn1(&algorithm, &oid, CBS_ASN1_OBJECT)) continue;
            if (!CBS_get_any_asn1_element(&algorithm, &value, nullptr, nullptr)) continue;
            if (CBS_get_asn1(&cursor, &value, CBS_ASN1_OCTETSTRING)) sum += answer_of(oid);
        }
        return sum;
    });
    add_row(row_name::digest_info_build, digests().size(), [] {
        constexpr uint8_t sha256[] = {0x60, 0x86, 0x48, 0x01, 0x65, 0x03, 0x04, 0x02, 0x01};
        uint64_t sum = 0;
        uint8_t out[128];
        for (const std::string& digest : digests()) {
            CBB builder, info, algorithm, child;
            std::size_t size = 0;
            CBB_init_fixed(&builder, out, sizeof out);
            CBB_add_asn1(&builder, &info, CBS_ASN1_SEQUENCE);
            CBB_add_asn1(&info, &algorithm, CBS_ASN1_SEQUENCE);
            CBB_add_asn1(&algorithm, &child, CBS_ASN1_OBJECT);
            CBB_add_bytes(&child, sha256, sizeof sha256);
            CBB_add_asn1(&algorithm, &child, CBS_ASN1_NULL);
            CBB_add_asn1(&info, &child, CBS_ASN1_OCTETSTRING);
            CBB_add_bytes(&child, reinterpret_cast<const uint8_t*>(digest.data()), digest.size());
            CBB_finish(&builder, nullptr, &size);
            sum += pkider_bench::answer_of(out, size);
        }
        return sum;
    });
}

void add_name_rows() {
    add_made_row(row_name::print_name, plain_names().der.size(), []() -> pass_t {
        return [out = std::shared_ptr<BIO>(BIO_new(BIO_s_mem()), BIO_free)]() -> uint64_t {
            for (const bytes_t& der : plain_names().der) {
                const unsigned char* at = der.data();
                X509_NAME* const name = d2i_X509_NAME(nullptr, &at, static_cast<long>(der.size()));
                BIO_reset(out.get());
                X509_NAME_print_ex(out.get(), name, 0, XN_FLAG_RFC2253);
                X509_NAME_free(name);
            }
            return 0; // last RDN first
        };
    });
}

} // namespace

void register_rows() {
    add_row(row_name::walk, num_elements(), [] {
        return walk_certificates([](const uint8_t* at, const uint8_t* end, uint64_t& length) -> const uint8_t* {
            CBS cursor, whole;
            CBS_init(&cursor, at, static_cast<std::size_t>(end - at));
            unsigned tag = 0;
            std::size_t header = 0;
            if (!CBS_get_any_asn1_element(&cursor, &whole, &tag, &header)) return nullptr;
            length = CBS_len(&whole) - header;
            return at + header;
        });
    });
    add_oid_rows();
    add_name_rows();
    add_key_and_signature_rows();
}

} // namespace pkider_bench
