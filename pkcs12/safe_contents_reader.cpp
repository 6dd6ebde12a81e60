#include "pkcs12/safe_contents_reader.h"

#include "der/element_steps.h"
#include "pkcs12/attributes_reader.h"
#include "pkcs12/fetch_ahead.h"
#include "pkcs12/identifiers.h"
#include "pkcs8/encrypted_gost_key.h"

namespace pkider {
namespace {

// Required: SafeContents.RequiredShroudedKeyIsProtectedAnywhere, ShroudedKey.RequiredUnreadableOneIsSkipped and
// SafeContents.RequiredKeyThatCannotBeDecryptedIsSkipped.
void read_shrouded_key(const asn_element_t& value, pkcs12_item_t& item, pbe_crypto_t& crypto, pkcs12_easy_t& out) {
    pkcs8_encrypted_pki_gost_t params;
    if (!asn_read_pkcs8_encrypted_pki_gost(value.content, value.length, params)) return;

    std::list<std::string> plain(1); // a node from the start: the bytes keep their address, short strings too
    if (!crypto.decrypt(params, params.encrypted, params.encrypted_len, plain.front())) return;
    item.type = PKCS12_ITEM_KEY;
    item.data_len = plain.front().size();
    item.data = reinterpret_cast<const uint8_t*>(plain.front().data());
    out.buffers.splice(out.buffers.end(), plain);
    out.protected_items.push_back(item);
}

// CertBag ::= SEQUENCE { certId OBJECT IDENTIFIER, certValue [0] { OCTET STRING } }                   (RFC 7292 4.2.3)
//
// Required: SafeContents.RequiredEveryCertificateTypeIsTaken.
bool read_certificate(asn_element_t value, pkcs12_item_t& item) {
    asn_element_t bag, type, wrapped;
    if (!asn_next_element(asn_tag_t::SEQUENCE, value, bag)) return false;
    if (!asn_next_element(asn_tag_t::OBJECT_IDENTIFIER, bag, type)) return false;
    if (!asn_next_element(asn_tag_t::CONTEXT_0, bag, wrapped)) return false;
    return asn_next_contents(asn_tag_t::OCTET_STRING, wrapped, item.data_len, item.data);
}

// SafeBag ::= SEQUENCE { bagId OBJECT IDENTIFIER, bagValue [0], bagAttributes SET OPTIONAL }          (RFC 7292 4.2)
bool read_bag(asn_element_t& bags, safe_kind_t kind, pbe_crypto_t& crypto, pkcs12_easy_t& out) {
    asn_element_t bag, type, value;
    if (!asn_next_element(asn_tag_t::SEQUENCE, bags, bag)) return false;
    if (bags.length > near_cache_size)
        fetch_ahead<access_t::READ>(bag.start, static_cast<uint64_t>(bags.content - bag.start), bags.length);
    if (!asn_next_element(asn_tag_t::OBJECT_IDENTIFIER, bag, type)) return false;
    if (!asn_next_element(asn_tag_t::CONTEXT_0, bag, value)) return false;

    pkcs12_item_t item;
    if (asn_is_next(asn_tag_t::SET, bag)) {
        asn_element_t attributes;
        if (!asn_next_element(asn_tag_t::SET, bag, attributes)) return false;
        if (!read_bag_attributes(attributes, item)) return false;
    }

    std::list<pkcs12_item_t>& items = kind == safe_kind_t::PLAIN ? out.plain_items : out.protected_items;
    if (asn_is_oid(type, pkcs12_oid::cert_bag)) {
        if (!read_certificate(value, item)) return false;
        item.type = PKCS12_ITEM_CERT;
        items.push_back(item);
    } else if (asn_is_oid(type, pkcs12_oid::key_bag)) {
        item.type = PKCS12_ITEM_KEY;
        item.data_len = value.length;
        item.data = value.content;
        items.push_back(item);
    } else if (asn_is_oid(type, pkcs12_oid::shrouded_key_bag)) {
        read_shrouded_key(value, item, crypto, out);
    }
    return true;
}

} // namespace

bool read_safe_contents(const uint8_t* data, uint64_t size, safe_kind_t kind, pbe_crypto_t& crypto,
                        pkcs12_easy_t& out) {
    asn_element_t input = asn_contents(data, size);
    asn_element_t bags;
    if (!asn_next_element(asn_tag_t::SEQUENCE, input, bags)) return false;
    while (bags.length != 0) {
        if (!read_bag(bags, kind, crypto, out)) return false;
    }
    return true;
}

} // namespace pkider
