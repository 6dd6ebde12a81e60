#include "bench/support/made_files.h"

#include "bench/support/made_oids.h"

#include <initializer_list>
#include <string>

namespace pkider_bench {
namespace {

bytes_t join(std::initializer_list<bytes_t> parts) {
    bytes_t out;
    for (const bytes_t& part : parts) out.insert(out.end(), part.begin(), part.end());
    return out;
}

bytes_t sequence(std::initializer_list<bytes_t> parts) {
    return element(0x30, join(parts));
}
bytes_t oid(const bytes_t& contents) {
    return element(0x06, contents);
}
bytes_t octets(const bytes_t& contents) {
    return element(0x04, contents);
}
bytes_t integer(const bytes_t& contents) {
    return element(0x02, contents);
}

const bytes_t null = {0x05, 0x00};

bytes_t safe_bag(const made_item_t& item) {
    const bytes_t certificate = sequence({oid(made_oid::x509_certificate), element(0xA0, octets(*item.certificate))});
    const bytes_t name = sequence({oid(made_oid::friendly_name), element(0x31, element(0x1E, item.friendly_name))});
    const bytes_t id = sequence({oid(made_oid::local_key_id), element(0x31, octets(item.local_key_id))});
    return sequence({oid(made_oid::cert_bag), element(0xA0, certificate), element(0x31, join({name, id}))});
}

} // namespace

bytes_t made_key_bytes() {
    return made_bytes(32, 1);
}

bytes_t made_private_key() {
    const bytes_t algorithm = sequence(
        {oid(made_oid::gost_2001), sequence({oid(made_oid::public_key_params), oid(made_oid::digest_params)})});
    return sequence({integer({0}), algorithm, octets(octets(made_key_bytes()))});
}

encrypted_parts_t made_encrypted_parts() {
    return {made_bytes(8, 2), made_bytes(8, 3), made_bytes(72, 4), 2000};
}

bytes_t made_encrypted_key() {
    const encrypted_parts_t parts = made_encrypted_parts();
    const bytes_t prf = sequence({oid(made_oid::hmac_gost), null});
    const bytes_t derivation =
        sequence({oid(made_oid::pbkdf2), sequence({octets(parts.salt), integer({0x07, 0xD0}), prf})});
    const bytes_t scheme =
        sequence({oid(made_oid::gost_28147), sequence({octets(parts.iv), oid(made_oid::cipher_params)})});
    return sequence({sequence({oid(made_oid::pbes2), sequence({derivation, scheme})}), octets(parts.encrypted)});
}

std::vector<made_item_t> made_items(std::size_t num_certificates) {
    std::vector<made_item_t> out;
    for (std::size_t i = 0; i < num_certificates; ++i) {
        bytes_t name;
        for (const char c : "certificate " + std::to_string(i)) {
            name.push_back(0);
            name.push_back(static_cast<uint8_t>(c));
        }
        out.push_back({&certificates()[i % certificates().size()], name, made_bytes(20, static_cast<uint32_t>(i))});
    }
    return out;
}

bytes_t made_pfx(std::size_t num_certificates) {
    bytes_t bags;
    for (const made_item_t& item : made_items(num_certificates)) {
        const bytes_t bag = safe_bag(item);
        bags.insert(bags.end(), bag.begin(), bag.end());
    }
    const bytes_t safe = element(0x30, sequence({oid(made_oid::data), element(0xA0, octets(element(0x30, bags)))}));
    const bytes_t digest = sequence({sequence({oid(made_oid::gost_hash), null}), octets(made_bytes(32, 7))});
    const bytes_t mac = sequence({digest, octets(made_bytes(8, 7)), integer({0x07, 0xD0})});
    return sequence({integer({3}), sequence({oid(made_oid::data), element(0xA0, octets(safe))}), mac});
}

} // namespace pkider_bench
