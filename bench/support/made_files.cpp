#include "bench/support/made_files.h"

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
const bytes_t gost_2001 = {0x2A, 0x85, 0x03, 0x02, 0x02, 0x13};
const bytes_t public_key_params = {0x2A, 0x85, 0x03, 0x02, 0x02, 0x23, 0x01};
const bytes_t digest_params = {0x2A, 0x85, 0x03, 0x02, 0x02, 0x1E, 0x01};
const bytes_t pbes2 = {0x2A, 0x86, 0x48, 0x86, 0xF7, 0x0D, 0x01, 0x05, 0x0D};
const bytes_t pbkdf2 = {0x2A, 0x86, 0x48, 0x86, 0xF7, 0x0D, 0x01, 0x05, 0x0C};
const bytes_t hmac_gost = {0x2A, 0x85, 0x03, 0x02, 0x02, 0x0A};
const bytes_t gost_28147 = {0x2A, 0x85, 0x03, 0x02, 0x02, 0x15};
const bytes_t cipher_params = {0x2A, 0x85, 0x03, 0x02, 0x02, 0x1F, 0x01};
const bytes_t gost_hash = {0x2A, 0x85, 0x03, 0x02, 0x02, 0x09};
const bytes_t data = {0x2A, 0x86, 0x48, 0x86, 0xF7, 0x0D, 0x01, 0x07, 0x01};
const bytes_t cert_bag = {0x2A, 0x86, 0x48, 0x86, 0xF7, 0x0D, 0x01, 0x0C, 0x0A, 0x01, 0x03};
const bytes_t x509_certificate = {0x2A, 0x86, 0x48, 0x86, 0xF7, 0x0D, 0x01, 0x09, 0x16, 0x01};
const bytes_t friendly_name = {0x2A, 0x86, 0x48, 0x86, 0xF7, 0x0D, 0x01, 0x09, 0x14};
const bytes_t local_key_id = {0x2A, 0x86, 0x48, 0x86, 0xF7, 0x0D, 0x01, 0x09, 0x15};

bytes_t safe_bag(const made_item_t& item) {
    const bytes_t certificate = sequence({oid(x509_certificate), element(0xA0, octets(*item.certificate))});
    const bytes_t name = sequence({oid(friendly_name), element(0x31, element(0x1E, item.friendly_name))});
    const bytes_t id = sequence({oid(local_key_id), element(0x31, octets(item.local_key_id))});
    return sequence({oid(cert_bag), element(0xA0, certificate), element(0x31, join({name, id}))});
}

} // namespace

bytes_t made_key_bytes() {
    return made_bytes(32, 1);
}

bytes_t made_private_key() {
    const bytes_t algorithm = sequence({oid(gost_2001), sequence({oid(public_key_params), oid(digest_params)})});
    return sequence({integer({0}), algorithm, octets(octets(made_key_bytes()))});
}

encrypted_parts_t made_encrypted_parts() {
    return {made_bytes(8, 2), made_bytes(8, 3), made_bytes(72, 4), 2000};
}

bytes_t made_encrypted_key() {
    const encrypted_parts_t parts = made_encrypted_parts();
    const bytes_t prf = sequence({oid(hmac_gost), null});
    const bytes_t derivation = sequence({oid(pbkdf2), sequence({octets(parts.salt), integer({0x07, 0xD0}), prf})});
    const bytes_t scheme = sequence({oid(gost_28147), sequence({octets(parts.iv), oid(cipher_params)})});
    return sequence({sequence({oid(pbes2), sequence({derivation, scheme})}), octets(parts.encrypted)});
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
    const bytes_t safe = element(0x30, sequence({oid(data), element(0xA0, octets(element(0x30, bags)))}));
    const bytes_t digest = sequence({sequence({oid(gost_hash), null}), octets(made_bytes(32, 7))});
    const bytes_t mac = sequence({digest, octets(made_bytes(8, 7)), integer({0x07, 0xD0})});
    return sequence({integer({3}), sequence({oid(data), element(0xA0, octets(safe))}), mac});
}

} // namespace pkider_bench
