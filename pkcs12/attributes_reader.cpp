#include "pkcs12/attributes_reader.h"

#include "der/element_steps.h"
#include "pkcs12/identifiers.h"
#include "pkcs12/tags.h"

namespace pkider {

// PKCS12Attribute ::= SEQUENCE { attrId OBJECT IDENTIFIER, attrValues SET OF ANY }                    (RFC 7292 4.2)
bool read_bag_attributes(asn_element_t attributes, pkcs12_item_t& item) {
    while (attributes.length != 0) {
        asn_element_t attribute, type, values;
        if (!asn_next_element(asn_tag_t::SEQUENCE, attributes, attribute)) return false;
        if (!asn_next_element(asn_tag_t::OBJECT_IDENTIFIER, attribute, type)) return false;
        if (!asn_next_element(asn_tag_t::SET, attribute, values)) return false;

        if (asn_is_oid(type, pkcs12_oid::friendly_name)) {
            if (!asn_next_contents(pkcs12_tag::bmp_string, values, item.friendly_name_len, item.friendly_name))
                return false;
        } else if (asn_is_oid(type, pkcs12_oid::local_key_id)) {
            if (!asn_next_contents(asn_tag_t::OCTET_STRING, values, item.local_key_id_len, item.local_key_id))
                return false;
        }
    }
    return true;
}

} // namespace pkider
