#include "dn/dn_encoder.h"

#include "der/asn_header.h"
#include "dn/inline_list.h"
#include "dn/line_scanner.h"
#include "dn/printable_dn.h"
#include "oid/codec.h"
#include "oid/map.h"
#include "platform/short_bytes.h"

#include <pkider/der.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace pkider {
namespace {

constexpr std::size_t num_inline_attributes = 12;
constexpr uint64_t inline_name_size = 512;

// What stands in an AttributeTypeAndValue. Its bytes are still in the line, the map or the scratch string. 24 bytes: of
// a long line it is mostly the memory for these that is paid for.
struct attribute_t {
    const uint8_t* oid;
    const uint8_t* value;
    uint32_t value_length;
    uint32_t content_size;
    uint16_t oid_length; // 506 at the most
    uint8_t value_tag;
    bool joined_to_previous;
};

// Types and values that must be rewritten. Contents octets are never longer than their text, so the room for all of
// them is taken once, and what points into it stays where it is.
class scratch_t {
  public:
    /// @param rest_of_line  Where the first piece begins that is rewritten, or before it.
    std::string& text(const char* rest_of_line) {
        if (!m_reserved) m_text.reserve(std::strlen(rest_of_line));
        m_reserved = true;
        return m_text;
    }

  private:
    bool m_reserved = false;
    std::string m_text;
};

const uint8_t* as_bytes(const char* text) {
    return reinterpret_cast<const uint8_t*>(text);
}

uint8_t* put_element(uint8_t* out, uint8_t tag, const uint8_t* contents, uint64_t length) {
    out = asn_put_header(out, tag, length);
    copy_short(out, contents, static_cast<std::size_t>(length));
    return out + length;
}

uint8_t* put_attribute(uint8_t* out, const attribute_t& attribute) {
    out = asn_put_header(out, asn_tag_t::SEQUENCE, attribute.content_size);
    out = put_element(out, asn_tag_t::OBJECT_IDENTIFIER, attribute.oid, attribute.oid_length);
    return put_element(out, attribute.value_tag, attribute.value, attribute.value_length);
}

std::length_error too_long() {
    return std::length_error("pkider: Name too long");
}

// Collects the attributes of a line and counts their sizes, then writes the Name in one go: elements nested by
// appending would be copied once a level, and a long line over and over again.
class name_encoder_t {
  public:
    name_encoder_t(const char* line, oid_map_handle_t map) : m_line(line), m_map(map) {}

    // Behind a fault nothing is added any more; the rest of the line is only scanned for faults of its own, which go
    // first.
    void add(const RDNdescr_t& pair, uint8_t value_classes) {
        if (m_fault.code != 0) return;

        if (m_attributes.size() == num_inline_attributes) make_room_for(pair.type_begin);
        attribute_t& attribute = m_attributes.append();
        attribute.joined_to_previous = pair.joined_to_previous;
        if (!find_type(pair, attribute) && !encode_type(pair, attribute)) return;
        if ((value_classes & CHAR_SPECIAL) != 0) return decode_value(pair, attribute);
        const auto value_length = static_cast<uint64_t>(pair.value_end - pair.value_begin);
        set_value({as_bytes(pair.value_begin), value_length, string_tag_for(value_classes)}, attribute);
    }

    asn_dn_result_t fault() const { return m_fault; }

    void write(std::string& der) const {
        uint64_t content_size = 0;
        for (const attribute_t* first = m_attributes.begin(); first != m_attributes.end();) {
            const rdn_t rdn = rdn_from(first);
            content_size += asn_element_size(rdn.content_size);
            first = rdn.end;
        }
        if (content_size > asn_max_content_size) throw too_long();
        const auto size = static_cast<std::size_t>(asn_element_size(content_size));

        // The line may stand in `der`: it is read before `der` changes.
        if (size <= inline_name_size) {
            uint8_t name[inline_name_size];
            fill(name, content_size);
            der.assign(reinterpret_cast<const char*>(name), size);
        } else {
            std::string name(size, '\0');
            fill(reinterpret_cast<uint8_t*>(name.data()), content_size);
            der = std::move(name);
        }
    }

  private:
    // A line that is longer than most has no more pairs than "=" left. A list that grows by doubling made encoding
    // 10,000 RDNs half as slow again, and 100,000 three times as slow: the memory was paid for over and over.
    void make_room_for(const char* rest_of_line) {
        const char* const end = rest_of_line + std::strlen(rest_of_line);
        m_attributes.reserve(num_inline_attributes + static_cast<std::size_t>(std::count(rest_of_line, end, '=')));
    }

    bool find_type(const RDNdescr_t& pair, attribute_t& out) const {
        if (m_map.map == nullptr) return false;
        const auto type_length = static_cast<uint64_t>(pair.type_end - pair.type_begin);
        const OIDdescr_t* const entry = m_map.map->find_sn(pair.type_begin, type_length);
        if (entry == nullptr) return false;
        out.oid = entry->asn;
        out.oid_length = static_cast<uint16_t>(entry->asn_len);
        return true;
    }

    // Dotted text. This and decode_value are kept out of the loop over an ordinary line.
    [[gnu::noinline]] bool encode_type(const RDNdescr_t& pair, attribute_t& out) {
        uint8_t contents[oid_buffer_size];
        const uint64_t num_bytes = oid_str_to_asn_(pair.type_begin, pair.type_end, contents);
        if (num_bytes == 0) {
            m_fault = dn_fault(DN_FAULT_TYPE_UNKNOWN, pair.type_begin - m_line);
            return false;
        }
        std::string& text = m_scratch.text(pair.type_begin);
        out.oid = as_bytes(text.data()) + text.size();
        out.oid_length = static_cast<uint16_t>(num_bytes);
        text.append(reinterpret_cast<const char*>(contents), out.oid_length);
        return true;
    }

    [[gnu::noinline]] void decode_value(const RDNdescr_t& pair, attribute_t& out) {
        dn_value_t value;
        std::string& text = m_scratch.text(pair.type_begin);
        const asn_dn_result_t result = printable_dn_value_decode(pair.value_begin, pair.value_end, text, value);
        if (result.code == 0) return set_value(value, out);
        m_fault = dn_fault(dn_fault_t{result.code}, pair.value_begin - m_line + result.position);
    }

    static void set_value(const dn_value_t& value, attribute_t& out) {
        const uint64_t content_size = asn_element_size(out.oid_length) + asn_element_size(value.length);
        if (content_size > asn_max_content_size) throw too_long();
        out.content_size = static_cast<uint32_t>(content_size);
        out.value = value.bytes;
        out.value_length = static_cast<uint32_t>(value.length);
        out.value_tag = value.tag;
    }

    struct rdn_t {
        const attribute_t* end;
        uint64_t content_size;
    };
    rdn_t rdn_from(const attribute_t* first) const {
        const attribute_t* at = first;
        uint64_t content_size = 0;
        do {
            content_size += asn_element_size(at->content_size);
            ++at;
        } while (at != m_attributes.end() && at->joined_to_previous);
        return {at, content_size};
    }

    // RDNs and the members of each stay in the order of the text, sorted by no rule of DER.
    // Wanted: DnEncoder.WritesTheName/RequiredRdnsStayInTheOrderOfTheText,
    // DnEncoder.WritesTheName/RequiredMembersOfASetAreNotSorted.
    //
    // From 65,536 bytes of contents on, asn_header.h cuts a length, and the Name reads as another one.
    // Wanted: DnEncoder.RequiredValueOf0x10000BytesLosesItsLength.
    void fill(uint8_t* out, uint64_t content_size) const {
        out = asn_put_header(out, asn_tag_t::SEQUENCE, content_size);
        for (const attribute_t* at = m_attributes.begin(); at != m_attributes.end();) {
            const rdn_t rdn = rdn_from(at);
            out = asn_put_header(out, asn_tag_t::SET, rdn.content_size);
            for (; at != rdn.end; ++at) out = put_attribute(out, *at);
        }
    }

    const char* m_line;
    oid_map_handle_t m_map;
    asn_dn_result_t m_fault;
    scratch_t m_scratch;
    inline_list_t<attribute_t, num_inline_attributes> m_attributes;
};

} // namespace

asn_dn_result_t printable_to_asn_dn_r(const char* dn, std::string& der, oid_map_handle_t map) {
    name_encoder_t encoder(dn, map);
    const asn_dn_result_t result =
        scan_line(dn, [&encoder](const RDNdescr_t& pair, uint8_t classes) { encoder.add(pair, classes); });
    if (result.code != 0) return result;
    if (encoder.fault().code != 0) return encoder.fault();

    encoder.write(der);
    return {};
}

} // namespace pkider

bool printable_to_asn_dn(const char* dn, std::string& der, oid_map_handle_t map) {
    return pkider::printable_to_asn_dn_r(dn, der, map).code == 0;
}
