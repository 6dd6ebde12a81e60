#include "pkcs12/safe_contents_writer.h"

#include "der/asn_block.h"
#include "pkcs12/fetch_ahead.h"
#include "pkcs12/identifiers.h"
#include "pkcs12/tags.h"
#include "platform/compiler.h"

namespace pkider {
namespace {

// PKCS12Attribute ::= SEQUENCE { attrId OBJECT IDENTIFIER, attrValues SET { value } }                 (RFC 7292 4.2)
//
// One builder for both attributes; `oid` has the same size in either.
using attribute_oid_t = decltype(pkcs12_oid::friendly_name);

uint64_t attribute_content_size(uint64_t value_len) {
    return std::tuple_size_v<attribute_oid_t> + asn_checked_element_size(asn_checked_element_size(value_len));
}

// An attribute without bytes is not written.
uint64_t attribute_size(uint64_t value_len) {
    return value_len == 0 ? 0 : asn_checked_element_size(attribute_content_size(value_len));
}

uint8_t* put_attribute(uint8_t* at, const attribute_oid_t& oid, uint8_t tag, const uint8_t* value, uint64_t value_len) {
    if (value_len == 0) return at;
    at = asn_put_header(at, asn_tag_t::SEQUENCE, attribute_content_size(value_len));
    at = asn_put_constant(at, oid);
    at = asn_put_header(at, asn_tag_t::SET, asn_element_size(value_len));
    at = asn_put_header(at, tag, value_len);
    return asn_put_bytes(at, value, value_len);
}

// SafeBag ::= SEQUENCE { bagId OBJECT IDENTIFIER, bagValue [0], bagAttributes SET OPTIONAL }          (RFC 7292 4.2)
// CertBag ::= SEQUENCE { certId OBJECT IDENTIFIER, certValue [0] { OCTET STRING } }                   (RFC 7292 4.2.3)
//
// Contents sizes, from the inside out, and the sizes of the two parts around the item's data.
struct bag_sizes_t {
    uint64_t cert_value = 0; ///< [0] of a CertBag
    uint64_t cert_bag = 0;
    uint64_t value = 0; ///< bagValue
    uint64_t attributes = 0;
    uint64_t bag = 0;
    uint64_t head_part = 0;
    uint64_t attributes_part = 0;
};

bool has_value(const pkcs12_item_t& item) {
    return item.type == PKCS12_ITEM_KEY || item.type == PKCS12_ITEM_CERT;
}

bag_sizes_t count_bag(const pkcs12_item_t& item) {
    bag_sizes_t sizes;
    if (item.type == PKCS12_ITEM_KEY) {
        sizes.value = item.data_len;
        sizes.bag = pkcs12_oid::key_bag.size() + asn_checked_element_size(sizes.value);
    } else if (item.type == PKCS12_ITEM_CERT) {
        sizes.cert_value = asn_checked_element_size(item.data_len);
        sizes.cert_bag = pkcs12_oid::x509_certificate.size() + asn_checked_element_size(sizes.cert_value);
        sizes.value = asn_checked_element_size(sizes.cert_bag);
        sizes.bag = pkcs12_oid::cert_bag.size() + asn_checked_element_size(sizes.value);
    }
    sizes.attributes = attribute_size(item.friendly_name_len) + attribute_size(item.local_key_id_len);
    if (sizes.attributes != 0) sizes.attributes_part = asn_checked_element_size(sizes.attributes);
    sizes.head_part = sizes.bag - (has_value(item) ? item.data_len : 0);
    sizes.bag += sizes.attributes_part;
    sizes.head_part += asn_header_size(sizes.bag);
    return sizes;
}

// All bytes before the item's data. Keys go into keyBags even when the whole is encrypted afterwards.
// Required: Pkcs12Writer.RequiredKeysAreNeverShrouded.
// An item of an unknown type has no bag type and no value.
// Required: Pkcs12Writer.RequiredItemOfUnknownTypeIsABagOfAttributesOnly.
void put_bag_head(uint8_t* at, const pkcs12_item_t& item, const bag_sizes_t& sizes) {
    at = asn_put_header(at, asn_tag_t::SEQUENCE, sizes.bag);
    if (item.type == PKCS12_ITEM_KEY) {
        at = asn_put_constant(at, pkcs12_oid::key_bag);
        asn_put_header(at, asn_tag_t::CONTEXT_0, sizes.value);
    } else if (item.type == PKCS12_ITEM_CERT) {
        at = asn_put_constant(at, pkcs12_oid::cert_bag);
        at = asn_put_header(at, asn_tag_t::CONTEXT_0, sizes.value);
        at = asn_put_header(at, asn_tag_t::SEQUENCE, sizes.cert_bag);
        at = asn_put_constant(at, pkcs12_oid::x509_certificate);
        at = asn_put_header(at, asn_tag_t::CONTEXT_0, sizes.cert_value);
        asn_put_header(at, asn_tag_t::OCTET_STRING, item.data_len);
    }
}

void put_attributes(uint8_t* at, const pkcs12_item_t& item, const bag_sizes_t& sizes) {
    at = asn_put_header(at, asn_tag_t::SET, sizes.attributes);
    at = put_attribute(at, pkcs12_oid::friendly_name, pkcs12_tag::bmp_string, item.friendly_name,
                       item.friendly_name_len);
    put_attribute(at, pkcs12_oid::local_key_id, asn_tag_t::OCTET_STRING, item.local_key_id, item.local_key_id_len);
}

// Asks for the room of the next bag of a large file.
PKIDER_ALWAYS_INLINE inline void fetch_room(const pkcs12_item_t& item, const std::string& out) {
    const uint64_t room = out.capacity() - out.size();
    if (item.data_len > room) return; // an item of an unknown type
    const auto* const end = reinterpret_cast<const uint8_t*>(out.data()) + out.size();
    fetch_ahead<access_t::WRITE>(end, item.data_len, room - item.data_len);
}

void append_bag(const pkcs12_item_t& item, std::string& out) {
    const bag_sizes_t sizes = count_bag(item);
    put_bag_head(asn_append_room(out, sizes.head_part), item, sizes);
    if (has_value(item)) asn_append_bytes(out, item.data, item.data_len);
    if (sizes.attributes != 0) put_attributes(asn_append_room(out, sizes.attributes_part), item, sizes);
}

uint64_t count_bags(const std::list<pkcs12_item_t>& items) {
    uint64_t size = 0;
    for (const pkcs12_item_t& item : items) {
        size += asn_checked_element_size(count_bag(item).bag);
        asn_checked_element_size(size); // no more than fit, so that the sum cannot wrap either
    }
    return size;
}

} // namespace

safe_contents_writer_t::safe_contents_writer_t(const std::list<pkcs12_item_t>& items)
    : m_items(items),
      m_bags_size(count_bags(items)),
      m_safe_size(asn_checked_element_size(m_bags_size)),
      m_size(asn_checked_element_size(m_safe_size)) {}

void safe_contents_writer_t::append_to(std::string& out) const {
    uint8_t* const at =
        asn_put_header(asn_append_room(out, m_size - m_bags_size), asn_tag_t::OCTET_STRING, m_safe_size);
    asn_put_header(at, asn_tag_t::SEQUENCE, m_bags_size);
    const bool is_large = m_size > near_cache_size;
    for (const pkcs12_item_t& item : m_items) {
        if (is_large) fetch_room(item, out);
        append_bag(item, out);
    }
}

} // namespace pkider
