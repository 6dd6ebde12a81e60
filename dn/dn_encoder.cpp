#include "dn/dn_encoder.h"

#include "der/asn_header.h"
#include "der/checked_size.h"
#include "der/oid_contents.h"
#include "dn/line_splitter.h"
#include "dn/text_sink.h"
#include "dn/value_decoder.h"
#include "oid/map.h"
#include "platform/short_bytes.h"

#include <pkider/der.h>

#include <cstring>
#include <stdexcept>

namespace pkider {
namespace {

// The contents of an AttributeTypeAndValue. Its bytes are still in the line, the map or the encoder's scratch.
struct attribute_t {
    const uint8_t* oid;
    uint64_t oid_length;
    dn_value_t value;

    uint64_t content_size() const { return asn_element_size(oid_length) + asn_element_size(value.length); }

    // Size of an RDN of this attribute alone with four headers in short form.
    uint64_t short_rdn_size() const { return 8 + oid_length + value.length; }
};

constexpr uint64_t max_short_rdn_size = 2 + 0x7F;

uint8_t* as_bytes(char* text) {
    return reinterpret_cast<uint8_t*>(text);
}

uint8_t* put_element(uint8_t* out, uint8_t tag, const uint8_t* contents, uint64_t length) {
    out = asn_put_header(out, tag, length);
    copy_short(out, contents, static_cast<std::size_t>(length));
    return out + length;
}

void put_attribute(uint8_t* out, const attribute_t& attribute) {
    out = asn_put_header(out, asn_tag_t::SEQUENCE, attribute.content_size());
    out = put_element(out, asn_tag_t::OBJECT_IDENTIFIER, attribute.oid, attribute.oid_length);
    put_element(out, attribute.value.tag, attribute.value.bytes, attribute.value.length);
}

uint8_t* put_short_element(uint8_t* out, uint8_t tag, const uint8_t* contents, uint64_t length) {
    out[0] = tag;
    out[1] = static_cast<uint8_t>(length);
    copy_short(out + 2, contents, static_cast<std::size_t>(length));
    return out + 2 + length;
}

// An RDN of one attribute whose lengths all fit in one octet, which is nearly every RDN: nothing is decided about the
// form of its lengths. Bench: dn/encode, dn/encode_rdns.
void put_short_rdn(uint8_t* out, const attribute_t& attribute) {
    const uint64_t size = attribute.short_rdn_size();
    out[0] = asn_tag_t::SET;
    out[1] = static_cast<uint8_t>(size - 2);
    out[2] = asn_tag_t::SEQUENCE;
    out[3] = static_cast<uint8_t>(size - 4);
    out = put_short_element(out + 4, asn_tag_t::OBJECT_IDENTIFIER, attribute.oid, attribute.oid_length);
    put_short_element(out, attribute.value.tag, attribute.value.bytes, attribute.value.length);
}

std::length_error too_long() {
    return std::length_error("pkider: Name too long");
}

// Writes the attributes of a line in their order. Two sizes are not known when the contents begin, those of the Name
// and of an RDN of several attributes: room for the longest header is left before them.
//
// RDNs and the members of each stay in the order of the text, sorted by no rule of DER.
// Required: DnEncoder.WritesTheName/RequiredRdnsStayInTheOrderOfTheText,
// DnEncoder.WritesTheName/RequiredMembersOfASetAreNotSorted.
//
// From 65,536 bytes of contents on, asn_header.h cuts a length, and the Name reads as another one.
// Required: DnEncoder.RequiredValueOf0x10000BytesLosesItsLength.
class name_encoder_t {
  public:
    name_encoder_t(const char* line, oid_map_handle_t map) : m_line(line), m_map(map) { leave_room_for_header(); }

    // Behind a fault nothing is added any more; the rest of the line is only scanned for faults of its own, which go
    // first.
    void add(const RDNdescr_t& pair, uint8_t value_classes) {
        if (m_fault.code != 0) return;

        attribute_t attribute;
        if (!find_type(pair, attribute) && !encode_type(pair, attribute)) return;
        if ((value_classes & CHAR_SPECIAL) == 0) {
            attribute.value = dn_text_value(pair.value_begin, pair.value_end, value_classes);
        } else if (!decode_value(pair, attribute.value)) {
            return;
        }
        put(pair, attribute);
    }

    asn_dn_result_t fault() const { return m_fault; }

    // The line may be in `der`.
    void write(std::string& der) {
        const std::size_t content_size = m_out.size() - asn_max_header_size;
        if (content_size > asn_max_content_size) throw too_long();
        uint8_t* const content = as_bytes(m_out.data()) + asn_max_header_size;
        const uint8_t* const name = asn_put_header_before(content, asn_tag_t::SEQUENCE, content_size);
        der.assign(reinterpret_cast<const char*>(name), static_cast<std::size_t>(content - name) + content_size);
    }

  private:
    bool find_type(const RDNdescr_t& pair, attribute_t& out) const {
        if (m_map.map == nullptr) return false;
        const auto type_length = static_cast<std::size_t>(pair.type_end - pair.type_begin);
        const OIDdescr_t* const entry = m_map.map->find_sn(pair.type_begin, type_length);
        if (entry == nullptr) return false;
        out.oid = entry->asn;
        out.oid_length = entry->asn_len;
        return true;
    }

    // Dotted text.
    bool encode_type(const RDNdescr_t& pair, attribute_t& out) {
        out.oid = m_oid;
        out.oid_length = oid_str_to_asn_(pair.type_begin, pair.type_end, m_oid);
        if (out.oid_length != 0) return true;
        m_fault = dn_fault(DN_FAULT_TYPE_UNKNOWN, pair.type_begin - m_line);
        return false;
    }

    bool decode_value(const RDNdescr_t& pair, dn_value_t& out) {
        const asn_dn_result_t result = printable_dn_value_decode(pair.value_begin, pair.value_end, m_value, out);
        if (result.code == 0) return true;
        m_fault = dn_fault(asn_dn_fault_t{result.code}, pair.value_begin - m_line + result.position);
        return false;
    }

    void put(const RDNdescr_t& pair, const attribute_t& attribute) {
        const bool is_first = !pair.joined_to_previous;
        const bool is_last = *pair.value_end != '+';
        if (is_first && is_last && attribute.short_rdn_size() <= max_short_rdn_size) return put_rdn(attribute);

        if (is_first) begin_set();
        put_member(attribute);
        if (is_last) end_set();
    }

    void put_rdn(const attribute_t& attribute) {
        const auto size = static_cast<std::size_t>(attribute.short_rdn_size());
        put_short_rdn(as_bytes(m_out.room(size)), attribute);
        m_out.take(size);
    }

    void put_member(const attribute_t& attribute) {
        const uint64_t content_size = attribute.content_size();
        if (content_size > asn_max_content_size) throw too_long();
        const std::size_t size = checked_size(asn_element_size(content_size));
        put_attribute(as_bytes(m_out.room(size)), attribute);
        m_out.take(size);
    }

    void leave_room_for_header() {
        m_out.room(asn_max_header_size);
        m_out.take(asn_max_header_size);
    }

    void begin_set() {
        leave_room_for_header();
        m_set_content = m_out.size();
    }

    // Closes the gap before the header.
    void end_set() {
        const std::size_t content_size = m_out.size() - m_set_content;
        uint8_t* const content = as_bytes(m_out.data()) + m_set_content;
        const uint8_t* const set = asn_put_header_before(content, asn_tag_t::SET, content_size);
        const std::size_t size = static_cast<std::size_t>(content - set) + content_size;
        const std::size_t set_begin = m_set_content - asn_max_header_size;
        std::memmove(m_out.data() + set_begin, set, size);
        m_out.cut(set_begin + size);
    }

    const char* m_line;
    oid_map_handle_t m_map;
    asn_dn_result_t m_fault;
    std::size_t m_set_content = 0; // where the contents of the open SET begin
    text_sink_t m_out;
    std::string m_value;
    uint8_t m_oid[oid_buffer_size];
};

} // namespace

asn_dn_result_t printable_to_asn_dn_r(const char* dn, std::string& der, oid_map_handle_t map) {
    name_encoder_t encoder(dn, map);
    const asn_dn_result_t result =
        split_line(dn, [&encoder](const RDNdescr_t& pair, uint8_t classes) { encoder.add(pair, classes); });
    if (result.code != 0) return result;
    if (encoder.fault().code != 0) return encoder.fault();

    encoder.write(der);
    return {};
}

} // namespace pkider

bool printable_to_asn_dn(const char* dn, std::string& der, oid_map_handle_t map) {
    return pkider::printable_to_asn_dn_r(dn, der, map).code == 0;
}
