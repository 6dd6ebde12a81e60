// OpenSSL's libcrypto.
#include "bench/support/made_files.h"
#include "bench/support/row.h"
#include "bench/support/row_names.h"
#include "bench/support/walk_elements.h"

#include <openssl/asn1.h>
#include <openssl/dsa.h>
#include <openssl/objects.h>
#include <openssl/pkcs12.h>
#include <openssl/x509.h>

#include <memory>

namespace pkider_bench {
namespace {

template <auto Free>
struct freed_by_t {
    template <typename T>
    void operator()(T* at) const {
        Free(at);
    }
};
using object_t = std::unique_ptr<ASN1_OBJECT, freed_by_t<ASN1_OBJECT_free>>;
using name_t = std::unique_ptr<X509_NAME, freed_by_t<X509_NAME_free>>;
using public_key_t = std::unique_ptr<X509_PUBKEY, freed_by_t<X509_PUBKEY_free>>;
using signature_t = std::unique_ptr<DSA_SIG, freed_by_t<DSA_SIG_free>>;
using algorithm_t = std::unique_ptr<X509_ALGOR, freed_by_t<X509_ALGOR_free>>;
using digest_info_t = std::unique_ptr<X509_SIG, freed_by_t<X509_SIG_free>>;
using pfx_t = std::unique_ptr<PKCS12, freed_by_t<PKCS12_free>>;
using private_key_t = std::unique_ptr<PKCS8_PRIV_KEY_INFO, freed_by_t<PKCS8_PRIV_KEY_INFO_free>>;
using memory_t = std::unique_ptr<BIO, freed_by_t<BIO_free>>;

name_t read_name(const bytes_t& der) {
    const unsigned char* at = der.data();
    return name_t(d2i_X509_NAME(nullptr, &at, static_cast<long>(der.size())));
}

object_t read_object(const bytes_t& der) {
    const unsigned char* at = der.data();
    return object_t(d2i_ASN1_OBJECT(nullptr, &at, static_cast<long>(der.size())));
}

void add_oid_rows() {
    add_row(row_name::oid_from_text, oids().size(), [] {
        uint64_t sum = 0;
        unsigned char out[512];
        for (const std::string& text : dotted_oids()) {
            const int size = a2d_ASN1_OBJECT(out, sizeof out, text.c_str(), static_cast<int>(text.size()));
            sum += answer_of(out, static_cast<std::size_t>(size));
        }
        return sum;
    });
    add_row(row_name::oid_to_text, oids().size(), [all = oid_elements(oids())] {
        uint64_t sum = 0;
        char text[256];
        for (const bytes_t& der : all) {
            const object_t object = read_object(der);
            sum += answer_of(text, static_cast<std::size_t>(OBJ_obj2txt(text, sizeof text, object.get(), 1)));
        }
        return sum;
    });
    add_row(row_name::find_by_contents, attribute_types().size(),
            [all = oid_elements(attribute_types())]() -> uint64_t {
                for (const bytes_t& der : all) keep(OBJ_nid2sn(OBJ_obj2nid(read_object(der).get())));
                return 0; // it knows other types
            });
    add_row(row_name::find_by_short_name, 6, [] {
        uint64_t found = 0;
        for (const char* name : {"CN", "C", "L", "ST", "O", "OU"}) found += OBJ_sn2nid(name) != NID_undef;
        return found;
    });
    add_row(row_name::alg_from_oid, signature_oids().size(), [all = oid_elements(signature_oids())]() -> uint64_t {
        for (const bytes_t& der : all) {
            int hash = 0, key = 0;
            keep(OBJ_find_sigid_algs(OBJ_obj2nid(read_object(der).get()), &hash, &key));
        }
        return 0;
    });
}

pass_t make_printing(std::vector<bytes_t> all) {
    return [all = std::move(all), out = std::shared_ptr<BIO>(BIO_new(BIO_s_mem()), BIO_free)]() -> uint64_t {
        for (const bytes_t& der : all) {
            const name_t name = read_name(der);
            BIO_reset(out.get());
            X509_NAME_print_ex(out.get(), name.get(), 0, XN_FLAG_RFC2253);
        }
        return 0; // last RDN first
    };
}

void add_name_rows() {
    add_made_row(row_name::print_name, plain_names().der.size(), [] { return make_printing(plain_names().der); });
    for (const std::size_t num : {10u, 100u, 1'000u, 10'000u}) {
        add_made_row(row_name::print_rdns + std::to_string(num), num,
                     [=] { return make_printing({long_name(num, false)}); });
    }
}

void add_key_and_signature_rows() {
    add_row(row_name::public_key, rsa_public_keys().size(), [] {
        uint64_t sum = 0;
        for (const bytes_t& der : rsa_public_keys()) {
            const unsigned char* at = der.data();
            const public_key_t key(d2i_X509_PUBKEY(nullptr, &at, static_cast<long>(der.size())));
            const unsigned char* bits = nullptr;
            int length = 0;
            X509_PUBKEY_get0_param(nullptr, &bits, &length, nullptr, key.get());
            sum += static_cast<uint64_t>(length);
        }
        return sum;
    });
    add_row(row_name::dsa_value, dsa_values().size(), []() -> uint64_t {
        for (const bytes_t& der : dsa_values()) {
            const unsigned char* at = der.data();
            const signature_t signature(d2i_DSA_SIG(nullptr, &at, static_cast<long>(der.size())));
            keep(signature.get());
        }
        return 0; // big numbers
    });
    add_row(row_name::ike_algorithm, signature_algorithms().size(), []() -> uint64_t {
        for (const bytes_t& der : signature_algorithms()) {
            const unsigned char* at = der.data();
            const algorithm_t algorithm(d2i_X509_ALGOR(nullptr, &at, static_cast<long>(der.size())));
            const ASN1_OBJECT* object = nullptr;
            X509_ALGOR_get0(&object, nullptr, nullptr, algorithm.get());
            int hash = 0, key = 0;
            keep(OBJ_find_sigid_algs(OBJ_obj2nid(object), &hash, &key));
        }
        return 0;
    });
    add_row(row_name::digest_info_build, digests().size(), [] {
        uint64_t sum = 0;
        for (const std::string& digest : digests()) {
            const digest_info_t info(X509_SIG_new());
            X509_ALGOR* algorithm = nullptr;
            ASN1_OCTET_STRING* value = nullptr;
            X509_SIG_getm(info.get(), &algorithm, &value);
            X509_ALGOR_set0(algorithm, OBJ_nid2obj(NID_sha256), V_ASN1_NULL, nullptr);
            ASN1_OCTET_STRING_set(value, reinterpret_cast<const unsigned char*>(digest.data()),
                                  static_cast<int>(digest.size()));
            unsigned char out[128];
            unsigned char* at = out;
            sum += answer_of(out, static_cast<std::size_t>(i2d_X509_SIG(info.get(), &at)));
        }
        return sum;
    });
    add_row(row_name::digest_info_read, digest_infos().size(), [] {
        uint64_t sum = 0;
        for (const std::string& der : digest_infos()) {
            const auto* at = reinterpret_cast<const unsigned char*>(der.data());
            const digest_info_t info(d2i_X509_SIG(nullptr, &at, static_cast<long>(der.size())));
            const X509_ALGOR* algorithm = nullptr;
            X509_SIG_get0(info.get(), &algorithm, nullptr);
            const ASN1_OBJECT* object = nullptr;
            X509_ALGOR_get0(&object, nullptr, nullptr, algorithm);
            sum += answer_of(OBJ_get0_data(object), OBJ_length(object));
        }
        return sum;
    });
}

void add_file_rows() {
    add_row(row_name::pkcs8_read, num_repeats, repeated([der = made_private_key()]() -> uint64_t {
                const unsigned char* at = der.data();
                const private_key_t key(d2i_PKCS8_PRIV_KEY_INFO(nullptr, &at, static_cast<long>(der.size())));
                keep(key.get());
                return 0; // the inner OCTET STRING is left to the key's method
            }));
    add_row(row_name::pkcs8_encrypted_read, num_repeats, repeated([der = made_encrypted_key()]() -> uint64_t {
                const unsigned char* at = der.data();
                const digest_info_t key(d2i_X509_SIG(nullptr, &at, static_cast<long>(der.size())));
                keep(key.get());
                return 0; // the parameters stay encoded
            }));
    for (const std::size_t num : {10u, 100u, 1'000u, 10'000u}) {
        add_made_row(row_name::pkcs12_read + std::to_string(num), num, [=]() -> pass_t {
            return [der = made_pfx(num)]() -> uint64_t {
                const unsigned char* at = der.data();
                const pfx_t pfx(d2i_PKCS12(nullptr, &at, static_cast<long>(der.size())));
                STACK_OF(PKCS7)* const safes = PKCS12_unpack_authsafes(pfx.get());
                STACK_OF(PKCS12_SAFEBAG)* const bags = PKCS12_unpack_p7data(sk_PKCS7_value(safes, 0));
                keep(bags);
                sk_PKCS12_SAFEBAG_pop_free(bags, PKCS12_SAFEBAG_free);
                sk_PKCS7_pop_free(safes, PKCS7_free);
                return 0;
            };
        });
    }
}

} // namespace

void register_rows() {
    add_row(row_name::walk, num_elements(), [] {
        return walk_certificates([](const uint8_t* at, const uint8_t* end, uint64_t& length) -> const uint8_t* {
            const unsigned char* content = at;
            long len = 0;
            int tag = 0, cls = 0;
            if ((ASN1_get_object(&content, &len, &tag, &cls, end - at) & 0x80) != 0) return nullptr;
            length = static_cast<uint64_t>(len);
            return content;
        });
    });
    add_oid_rows();
    add_name_rows();
    add_key_and_signature_rows();
    add_file_rows();
}

} // namespace pkider_bench
