// mbedTLS: its own Name and OID functions, and its low-level ASN.1 reader and writer where it has nothing higher that
// does not do more work than the row.
#include "bench/support/made_files.h"
#include "bench/support/made_oids.h"
#include "bench/support/row.h"
#include "bench/support/row_names.h"
#include "bench/support/walk_elements.h"

#include <mbedtls/asn1.h>
#include <mbedtls/asn1write.h>
#include <mbedtls/oid.h>
#include <mbedtls/x509.h>
#include <mbedtls/x509_crt.h>

#include <cstdlib>
#include <cstring>
#include <memory>

namespace pkider_bench {
namespace {

constexpr int sequence = MBEDTLS_ASN1_CONSTRUCTED | MBEDTLS_ASN1_SEQUENCE;
constexpr int set = MBEDTLS_ASN1_CONSTRUCTED | MBEDTLS_ASN1_SET;
constexpr int context_0 = MBEDTLS_ASN1_CONSTRUCTED | MBEDTLS_ASN1_CONTEXT_SPECIFIC;

struct cursor_t {
    unsigned char* at;
    const unsigned char* end;

    explicit cursor_t(const bytes_t& der) : cursor_t(der.data(), der.size()) {}
    cursor_t(const unsigned char* der, std::size_t size) : at(const_cast<unsigned char*>(der)), end(der + size) {}

    bool read(int tag, std::size_t& length) { return mbedtls_asn1_get_tag(&at, end, &length, tag) == 0; }
    bool enter(int tag) {
        std::size_t length = 0;
        if (!read(tag, length)) return false;
        end = at + length;
        return true;
    }
    bool skip(int tag) {
        std::size_t length = 0;
        if (!read(tag, length)) return false;
        at += length;
        return true;
    }
    // The element's contents as a cursor of their own; this one moves past it.
    bool take(int tag, cursor_t& child) {
        std::size_t length = 0;
        if (!read(tag, length)) return false;
        child.at = at;
        child.end = at + length;
        at += length;
        return true;
    }
    std::size_t left() const { return static_cast<std::size_t>(end - at); }
};

mbedtls_asn1_buf oid_buffer(const bytes_t& oid) {
    return {MBEDTLS_ASN1_OID, oid.size(), const_cast<unsigned char*>(oid.data())};
}

const char* chars(const bytes_t& bytes) {
    return reinterpret_cast<const char*>(bytes.data());
}

struct name_t {
    mbedtls_x509_name first{};

    ~name_t() {
        mbedtls_x509_name* next = first.next;
        while (next != nullptr) {
            mbedtls_x509_name* const behind = next->next;
            std::free(next);
            next = behind;
        }
    }
    bool read(const unsigned char* der, std::size_t size) {
        cursor_t cursor(der, size);
        return cursor.enter(sequence) && mbedtls_x509_get_name(&cursor.at, cursor.end, &first) == 0;
    }
};

// The names are written backwards to the end of `out`.
std::size_t encode_name(const char* line, unsigned char* out, std::size_t size, unsigned char** begin) {
    mbedtls_asn1_named_data* names = nullptr;
    std::size_t written = 0;
    *begin = out + size;
    if (mbedtls_x509_string_to_names(&names, line) == 0) {
        const int result = mbedtls_x509_write_names(begin, out, names);
        if (result > 0) written = static_cast<std::size_t>(result);
    }
    mbedtls_asn1_free_named_data_list(&names);
    return written;
}

void add_oid_rows() {
    add_row(row_name::oid_to_text, oids().size(), [] {
        uint64_t sum = 0;
        char text[256];
        for (const bytes_t& oid : oids()) {
            const mbedtls_asn1_buf buffer = oid_buffer(oid);
            const int size = mbedtls_oid_get_numeric_string(text, sizeof text, &buffer);
            if (size > 0) sum += answer_of(text, static_cast<std::size_t>(size));
        }
        return sum;
    });
    add_row(row_name::find_by_contents, attribute_types().size(), []() -> uint64_t {
        for (const bytes_t& type : attribute_types()) {
            const mbedtls_asn1_buf buffer = oid_buffer(type);
            const char* name = nullptr;
            keep(mbedtls_oid_get_attr_short_name(&buffer, &name));
        }
        return 0; // it knows other types
    });
    add_row(row_name::alg_from_oid, signature_oids().size(), []() -> uint64_t {
        for (const bytes_t& oid : signature_oids()) {
            const mbedtls_asn1_buf buffer = oid_buffer(oid);
            mbedtls_md_type_t hash{};
            mbedtls_pk_type_t key{};
            keep(mbedtls_oid_get_sig_alg(&buffer, &hash, &key));
        }
        return 0;
    });
}

void add_name_rows() {
    add_row(row_name::print_name, plain_names().der.size(), []() -> uint64_t {
        char text[2048];
        for (const bytes_t& der : plain_names().der) {
            name_t name;
            if (name.read(der.data(), der.size())) keep(mbedtls_x509_dn_gets(text, sizeof text, &name.first));
        }
        return 0; // ", " between RDNs
    });
    // UTF8String for every value: only the size is the same. It keeps one value of each type, so that it has no rows of
    // long names.
    add_row(row_name::encode_name, plain_names().lines.size(), [] {
        unsigned char out[4096];
        unsigned char* begin = nullptr;
        uint64_t sum = 0;
        for (const std::string& line : plain_names().lines) sum += encode_name(line.c_str(), out, sizeof out, &begin);
        return sum;
    });
    add_row(row_name::normalize_name, plain_names().lines.size(), []() -> uint64_t {
        unsigned char out[4096];
        char text[2048];
        for (const std::string& line : plain_names().lines) {
            unsigned char* begin = nullptr;
            const std::size_t size = encode_name(line.c_str(), out, sizeof out, &begin);
            name_t name;
            if (name.read(begin, size)) keep(mbedtls_x509_dn_gets(text, sizeof text, &name.first));
        }
        return 0;
    });
    for (const std::size_t num : {10u, 100u, 1'000u, 10'000u}) {
        add_made_row(row_name::print_rdns + std::to_string(num), num, [=]() -> pass_t {
            return [der = long_name(num, false), text = bytes_t(num * 40)]() mutable -> uint64_t {
                name_t name;
                auto* const out = reinterpret_cast<char*>(text.data());
                if (name.read(der.data(), der.size())) keep(mbedtls_x509_dn_gets(out, text.size(), &name.first));
                return 0;
            };
        });
    }
}

bool read_public_key(const bytes_t& der, cursor_t& key) {
    cursor_t cursor(der);
    mbedtls_asn1_buf algorithm, params;
    if (!cursor.enter(sequence) || mbedtls_asn1_get_alg(&cursor.at, cursor.end, &algorithm, &params) != 0) return false;
    std::size_t length = 0;
    if (mbedtls_asn1_get_bitstring_null(&cursor.at, cursor.end, &length) != 0) return false;
    key = cursor_t(cursor.at, length);
    return true;
}

std::size_t without_leading_zeros(const cursor_t& number) {
    const unsigned char* at = number.at;
    while (number.end - at > 1 && *at == 0) ++at;
    return static_cast<std::size_t>(number.end - at);
}

void add_key_and_signature_rows() {
    add_row(row_name::public_key, rsa_public_keys().size(), [] {
        uint64_t sum = 0;
        cursor_t key(nullptr, 0);
        for (const bytes_t& der : rsa_public_keys()) {
            if (read_public_key(der, key)) sum += key.left();
        }
        return sum;
    });
    add_row(row_name::rsa_public_key, rsa_public_keys().size(), [] {
        uint64_t sum = 0;
        cursor_t key(nullptr, 0), modulus(nullptr, 0), exponent(nullptr, 0);
        for (const bytes_t& der : rsa_public_keys()) {
            if (!read_public_key(der, key) || !key.enter(sequence)) continue;
            if (!key.take(MBEDTLS_ASN1_INTEGER, modulus) || !key.take(MBEDTLS_ASN1_INTEGER, exponent)) continue;
            sum += without_leading_zeros(modulus) + exponent.left();
        }
        return sum;
    });
    add_row(row_name::dsa_value, dsa_values().size(), [] {
        uint64_t sum = 0;
        cursor_t r(nullptr, 0), s(nullptr, 0);
        for (const bytes_t& der : dsa_values()) {
            cursor_t cursor(der);
            if (!cursor.enter(sequence)) continue;
            if (!cursor.take(MBEDTLS_ASN1_INTEGER, r) || !cursor.take(MBEDTLS_ASN1_INTEGER, s)) continue;
            sum += answer_of(r.at, r.left()) + answer_of(s.at, s.left());
        }
        return sum;
    });
    add_row(row_name::ike_algorithm, signature_algorithms().size(), []() -> uint64_t {
        for (const bytes_t& der : signature_algorithms()) {
            cursor_t cursor(der);
            mbedtls_asn1_buf algorithm, params;
            mbedtls_md_type_t hash{};
            mbedtls_pk_type_t key{};
            if (mbedtls_asn1_get_alg(&cursor.at, cursor.end, &algorithm, &params) != 0) continue;
            keep(mbedtls_oid_get_sig_alg(&algorithm, &hash, &key));
        }
        return 0;
    });
    add_row(row_name::digest_info_build, digests().size(), [] {
        uint64_t sum = 0;
        unsigned char out[128];
        for (const std::string& digest : digests()) {
            unsigned char* at = out + sizeof out;
            const auto* const bytes = reinterpret_cast<const unsigned char*>(digest.data());
            int size = mbedtls_asn1_write_octet_string(&at, out, bytes, digest.size());
            size += mbedtls_asn1_write_algorithm_identifier(&at, out, MBEDTLS_OID_DIGEST_ALG_SHA256,
                                                            MBEDTLS_OID_SIZE(MBEDTLS_OID_DIGEST_ALG_SHA256), 0);
            size += mbedtls_asn1_write_len(&at, out, static_cast<std::size_t>(size));
            size += mbedtls_asn1_write_tag(&at, out, sequence);
            sum += answer_of(at, static_cast<std::size_t>(size));
        }
        return sum;
    });
    add_row(row_name::digest_info_read, digest_infos().size(), [] {
        uint64_t sum = 0;
        for (const std::string& info : digest_infos()) {
            cursor_t cursor(reinterpret_cast<const unsigned char*>(info.data()), info.size());
            mbedtls_asn1_buf algorithm, params;
            if (!cursor.enter(sequence)) continue;
            if (mbedtls_asn1_get_alg(&cursor.at, cursor.end, &algorithm, &params) != 0) continue;
            if (cursor.skip(MBEDTLS_ASN1_OCTET_STRING)) sum += answer_of(algorithm.p, algorithm.len);
        }
        return sum;
    });
}

// Writes backwards, as mbedTLS does, and gives the bytes.
class back_writer_t {
  public:
    back_writer_t(unsigned char* out, std::size_t size) : m_begin(out), m_end(out + size), m_at(m_end) {}

    unsigned char* mark() const { return m_at; }
    void close(int tag, const unsigned char* mark) {
        mbedtls_asn1_write_len(&m_at, m_begin, static_cast<std::size_t>(mark - m_at));
        mbedtls_asn1_write_tag(&m_at, m_begin, static_cast<unsigned char>(tag));
    }
    void raw(const unsigned char* bytes, std::size_t size) {
        mbedtls_asn1_write_raw_buffer(&m_at, m_begin, bytes, size);
    }
    void raw(const bytes_t& bytes) { raw(bytes.data(), bytes.size()); }
    void octets(const bytes_t& bytes) { mbedtls_asn1_write_octet_string(&m_at, m_begin, bytes.data(), bytes.size()); }
    void oid(const bytes_t& contents) { mbedtls_asn1_write_oid(&m_at, m_begin, chars(contents), contents.size()); }
    void integer(int value) { mbedtls_asn1_write_int(&m_at, m_begin, value); }
    void null() { mbedtls_asn1_write_null(&m_at, m_begin); }

    const unsigned char* data() const { return m_at; }
    std::size_t size() const { return static_cast<std::size_t>(m_end - m_at); }

  private:
    unsigned char *m_begin, *m_end, *m_at;
};

bool is(const cursor_t& contents, const bytes_t& oid) {
    return contents.left() == oid.size() && std::memcmp(contents.at, oid.data(), oid.size()) == 0;
}

bool is(const mbedtls_asn1_buf& contents, const bytes_t& oid) {
    return contents.len == oid.size() && std::memcmp(contents.p, oid.data(), oid.size()) == 0;
}

uint64_t read_private_key(const bytes_t& der) {
    cursor_t cursor(der), key(nullptr, 0);
    mbedtls_asn1_buf algorithm, params;
    if (!cursor.enter(sequence) || !cursor.skip(MBEDTLS_ASN1_INTEGER)) return 1;
    if (mbedtls_asn1_get_alg(&cursor.at, cursor.end, &algorithm, &params) != 0 || !is(algorithm, made_oid::gost_2001))
        return 1;
    if (!cursor.enter(MBEDTLS_ASN1_OCTET_STRING) || !cursor.take(MBEDTLS_ASN1_OCTET_STRING, key)) return 1;
    return answer_of(key.at, key.left());
}

uint64_t write_private_key(const bytes_t& key) {
    unsigned char out[256];
    back_writer_t writer(out, sizeof out);
    const unsigned char* const all = writer.mark();
    writer.octets(key);
    writer.close(MBEDTLS_ASN1_OCTET_STRING, all);
    const unsigned char* const algorithm = writer.mark();
    writer.oid(made_oid::digest_params);
    writer.oid(made_oid::public_key_params);
    writer.close(sequence, algorithm);
    writer.oid(made_oid::gost_2001);
    writer.close(sequence, algorithm);
    writer.integer(0);
    writer.close(sequence, all);
    return answer_of(writer.data(), writer.size());
}

uint64_t read_encrypted_key(const bytes_t& der) {
    cursor_t cursor(der), algorithm(nullptr, 0), encrypted(nullptr, 0), derivation(nullptr, 0), scheme(nullptr, 0);
    cursor_t id(nullptr, 0), salt(nullptr, 0), iv(nullptr, 0), count(nullptr, 0);
    if (!cursor.enter(sequence) || !cursor.take(sequence, algorithm)) return 1;
    if (!cursor.take(MBEDTLS_ASN1_OCTET_STRING, encrypted)) return 1;
    if (!algorithm.take(MBEDTLS_ASN1_OID, id) || !is(id, made_oid::pbes2) || !algorithm.enter(sequence)) return 1;
    if (!algorithm.take(sequence, derivation) || !algorithm.take(sequence, scheme)) return 1;
    if (!scheme.take(MBEDTLS_ASN1_OID, id) || !is(id, made_oid::gost_28147) || !scheme.enter(sequence)) return 1;
    if (!scheme.take(MBEDTLS_ASN1_OCTET_STRING, iv) || !scheme.skip(MBEDTLS_ASN1_OID)) return 1;
    if (!derivation.take(MBEDTLS_ASN1_OID, id) || !is(id, made_oid::pbkdf2) || !derivation.enter(sequence)) return 1;
    if (!derivation.take(MBEDTLS_ASN1_OCTET_STRING, salt)) return 1;
    int iterations = 0;
    if (mbedtls_asn1_get_int(&derivation.at, derivation.end, &iterations) != 0) return 1;
    mbedtls_asn1_buf prf, params;
    if (mbedtls_asn1_get_alg(&derivation.at, derivation.end, &prf, &params) != 0 || !is(prf, made_oid::hmac_gost))
        return 1;
    return answer_of(salt.at, salt.left()) + answer_of(iv.at, iv.left()) + static_cast<uint64_t>(iterations) +
           answer_of(encrypted.at, encrypted.left());
}

uint64_t write_encrypted_key(const encrypted_parts_t& parts) {
    unsigned char out[512];
    back_writer_t writer(out, sizeof out);
    const unsigned char* const all = writer.mark();
    writer.octets(parts.encrypted);
    const unsigned char* const algorithm = writer.mark();
    writer.oid(made_oid::cipher_params);
    writer.octets(parts.iv);
    writer.close(sequence, algorithm);
    writer.oid(made_oid::gost_28147);
    writer.close(sequence, algorithm);
    const unsigned char* const derivation = writer.mark();
    writer.null();
    writer.oid(made_oid::hmac_gost);
    writer.close(sequence, derivation);
    writer.integer(static_cast<int>(parts.iterations));
    writer.octets(parts.salt);
    writer.close(sequence, derivation);
    writer.oid(made_oid::pbkdf2);
    writer.close(sequence, derivation);
    writer.close(sequence, algorithm);
    writer.oid(made_oid::pbes2);
    writer.close(sequence, algorithm);
    writer.close(sequence, all);
    return answer_of(writer.data(), writer.size());
}

void add_pkcs8_rows() {
    add_row(row_name::pkcs8_read, num_repeats, repeated([der = made_private_key()] { return read_private_key(der); }));
    add_row(row_name::pkcs8_write, num_repeats, repeated([key = made_key_bytes()] { return write_private_key(key); }));
    add_row(row_name::pkcs8_encrypted_read, num_repeats,
            repeated([der = made_encrypted_key()] { return read_encrypted_key(der); }));
    add_row(row_name::pkcs8_encrypted_write, num_repeats,
            repeated([parts = made_encrypted_parts()] { return write_encrypted_key(parts); }));
}

// What a host would collect from one bag.
struct item_t {
    const unsigned char *data, *name, *id;
    std::size_t data_len, name_len, id_len;
};

bool read_attributes(cursor_t& bag, item_t& out) {
    if (bag.left() == 0) return true;
    if (!bag.enter(set)) return false;
    cursor_t attribute(nullptr, 0), id(nullptr, 0), value(nullptr, 0);
    while (bag.left() != 0) {
        if (!bag.take(sequence, attribute) || !attribute.take(MBEDTLS_ASN1_OID, id) || !attribute.enter(set))
            return false;
        if (is(id, made_oid::friendly_name)) {
            if (!attribute.take(MBEDTLS_ASN1_BMP_STRING, value)) return false;
            out.name = value.at;
            out.name_len = value.left();
        } else if (is(id, made_oid::local_key_id)) {
            if (!attribute.take(MBEDTLS_ASN1_OCTET_STRING, value)) return false;
            out.id = value.at;
            out.id_len = value.left();
        }
    }
    return true;
}

bool read_bag(cursor_t& bag, item_t& out) {
    cursor_t id(nullptr, 0), value(nullptr, 0), certificate(nullptr, 0);
    if (!bag.take(MBEDTLS_ASN1_OID, id) || !bag.take(context_0, value) || !read_attributes(bag, out)) return false;
    if (!is(id, made_oid::cert_bag) || !value.enter(sequence) || !value.skip(MBEDTLS_ASN1_OID) ||
        !value.enter(context_0))
        return false;
    if (!value.take(MBEDTLS_ASN1_OCTET_STRING, certificate)) return false;
    out.data = certificate.at;
    out.data_len = certificate.left();
    return true;
}

// The items go to a list, as in any host that does not know their number.
uint64_t read_pfx(const bytes_t& der) {
    struct node_t {
        item_t item;
        std::unique_ptr<node_t> next;
    };
    cursor_t cursor(der), safe(nullptr, 0), bag(nullptr, 0), id(nullptr, 0);
    if (!cursor.enter(sequence) || !cursor.skip(MBEDTLS_ASN1_INTEGER) || !cursor.take(sequence, safe)) return 1;
    if (!cursor.skip(sequence)) return 1; // MacData
    if (!safe.take(MBEDTLS_ASN1_OID, id) || !is(id, made_oid::data)) return 1;
    if (!safe.enter(context_0) || !safe.enter(MBEDTLS_ASN1_OCTET_STRING) || !safe.enter(sequence)) return 1;
    if (!safe.enter(sequence) || !safe.take(MBEDTLS_ASN1_OID, id) || !is(id, made_oid::data)) return 1;
    if (!safe.enter(context_0) || !safe.enter(MBEDTLS_ASN1_OCTET_STRING) || !safe.enter(sequence)) return 1;

    std::unique_ptr<node_t> first;
    std::unique_ptr<node_t>* last = &first;
    while (safe.left() != 0) {
        *last = std::make_unique<node_t>();
        if (!safe.take(sequence, bag) || !read_bag(bag, (*last)->item)) return 1;
        last = &(*last)->next;
    }
    uint64_t sum = 0;
    while (first != nullptr) {
        sum += first->item.data_len + first->item.id_len;
        first = std::move(first->next);
    }
    return sum;
}

void write_attribute(back_writer_t& writer, const bytes_t& type, int tag, const bytes_t& value) {
    const unsigned char* const mark = writer.mark();
    writer.raw(value);
    writer.close(tag, mark);
    writer.close(set, mark);
    writer.oid(type);
    writer.close(sequence, mark);
}

void write_bag(back_writer_t& writer, const made_item_t& item) {
    const unsigned char* const bag = writer.mark();
    write_attribute(writer, made_oid::local_key_id, MBEDTLS_ASN1_OCTET_STRING, item.local_key_id);
    write_attribute(writer, made_oid::friendly_name, MBEDTLS_ASN1_BMP_STRING, item.friendly_name);
    writer.close(set, bag);
    const unsigned char* const value = writer.mark();
    writer.octets(*item.certificate);
    writer.close(context_0, value);
    writer.oid(made_oid::x509_certificate);
    writer.close(sequence, value);
    writer.close(context_0, value);
    writer.oid(made_oid::cert_bag);
    writer.close(sequence, bag);
}

uint64_t write_pfx(const std::vector<made_item_t>& items, const bytes_t& digest, bytes_t& out) {
    back_writer_t writer(out.data(), out.size());
    const unsigned char* const all = writer.mark();
    writer.integer(2000);
    writer.octets(bytes_t(digest.begin(), digest.begin() + 8));
    const unsigned char* const digest_info = writer.mark();
    writer.octets(digest);
    const unsigned char* const algorithm = writer.mark();
    writer.null();
    writer.oid(made_oid::gost_hash);
    writer.close(sequence, algorithm);
    writer.close(sequence, digest_info);
    writer.close(sequence, all);
    const unsigned char* const safe = writer.mark();
    for (auto item = items.rbegin(); item != items.rend(); ++item) write_bag(writer, *item);
    writer.close(sequence, safe);
    for (int level = 0; level < 2; ++level) { // the SafeContents, then the AuthenticatedSafe around it
        writer.close(MBEDTLS_ASN1_OCTET_STRING, safe);
        writer.close(context_0, safe);
        writer.oid(made_oid::data);
        writer.close(sequence, safe);
        if (level == 0) writer.close(sequence, safe);
    }
    writer.integer(3);
    writer.close(sequence, all);
    return writer.size();
}

void add_pkcs12_rows() {
    for (const std::size_t num : {10u, 100u, 1'000u, 10'000u, 100'000u}) {
        add_made_row(row_name::pkcs12_read + std::to_string(num), num,
                     [=]() -> pass_t { return [der = made_pfx(num)] { return read_pfx(der); }; });
        add_made_row(row_name::pkcs12_write + std::to_string(num), num, [=]() -> pass_t {
            return [items = made_items(num), digest = made_bytes(32, 7),
                    out = bytes_t(made_pfx(num).size() + 64)]() mutable -> uint64_t {
                return write_pfx(items, digest, out) == 0 ? 1 : 0; // lengths of 65,536 and more are written otherwise
            };
        });
    }
}

} // namespace

void register_rows() {
    add_row(row_name::walk, num_elements(), [] {
        return walk_certificates([](const uint8_t* at, const uint8_t* end, uint64_t& length) -> const uint8_t* {
            auto* content = const_cast<unsigned char*>(at) + 1;
            std::size_t len = 0;
            if (mbedtls_asn1_get_len(&content, end, &len) != 0) return nullptr;
            length = len;
            return content;
        });
    });
    add_oid_rows();
    add_name_rows();
    add_key_and_signature_rows();
    add_pkcs8_rows();
    add_pkcs12_rows();
}

} // namespace pkider_bench
