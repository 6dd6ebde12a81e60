#include "dn/rdn_printer.h"

#include "der/checked_size.h"
#include "dn/dn_fault.h"
#include "dn/string_tags.h"
#include "dn/teletex.h"
#include "dn/value_escape.h"
#include "oid/map.h"
#include "platform/kodex.h"

#include <algorithm>
#include <limits>

namespace pkider {
namespace {

constexpr bool is_numeric(uint8_t byte) {
    return (byte >= '0' && byte <= '9') || byte == ' ';
}

bool print_dotted(const uint8_t* oid, uint64_t length, text_sink_t& out) {
    std::string text;
    const bool whole = oid_asn_to_str_(oid, oid + length, text);
    out.put(text.data(), text.size());
    return whole;
}

void put_escaped(const std::string& text, text_sink_t& out) {
    dn_value_escape(reinterpret_cast<const uint8_t*>(text.data()), text.size(), out);
}

bool print_numeric(const asn_element_t& value, text_sink_t& out) {
    if (!std::all_of(value.content, value.content + value.length, is_numeric)) return false;
    out.put(value.content, static_cast<std::size_t>(value.length));
    return true;
}

bool print_teletex(const asn_element_t& value, text_sink_t& out) {
    if (value.length > static_cast<uint64_t>(std::numeric_limits<int32_t>::max())) return false;
    std::string text;
    if (!teletex_to_utf8(value.content, static_cast<int32_t>(value.length), text)) return false;
    put_escaped(text, out);
    return true;
}

bool print_wide(kodex_codepage_t source, const asn_element_t& value, text_sink_t& out) {
    const kodex_converter_t converter(source, kodex_codepage_t::UTF8);
    const uint64_t size = converter.get_outsize(value.content, value.length);
    if (size == 0) return false;
    std::string text(checked_size(size), '\0');
    if (converter.convert_safe(value.content, value.length, text.data(), size) == 0) return false;
    put_escaped(text, out);
    return true;
}

class rdn_printer_t {
  public:
    rdn_printer_t(const uint8_t* der, oid_map_handle_t map, text_sink_t& out) : m_der(der), m_map(map), m_out(out) {}

    asn_dn_result_t print(asn_element_t& rdn) {
        asn_element_t attribute;
        while (rdn.length != 0) {
            if (!asn_next_element(asn_tag_t::SEQUENCE, rdn, attribute)) {
                return fault(DN_FAULT_NOT_A_SEQUENCE, attribute.start);
            }
            const asn_dn_result_t result = print_attribute(attribute);
            if (result.code != 0) return result;
            if (rdn.length != 0) m_out.put('+');
        }
        return {};
    }

  private:
    asn_dn_result_t fault(asn_dn_fault_t code, const uint8_t* at) const { return dn_fault(code, at - m_der); }

    asn_dn_result_t print_attribute(asn_element_t& attribute) {
        asn_element_t type;
        if (!asn_next_element(asn_tag_t::OBJECT_IDENTIFIER, attribute, type)) {
            return fault(DN_FAULT_NOT_AN_OID, type.start);
        }
        if (!dn_attr_type_to_printable(type.content, type.length, m_out, m_map)) {
            return fault(DN_FAULT_OID_UNPRINTABLE, type.content);
        }
        return print_value(attribute);
    }

    // `rest` is all after the type, to the end of the AttributeTypeAndValue. A value of no string type is all of it, in
    // hexadecimal, and its header is ignored. After a string, the rest is ignored. Required:
    // DnDecoderValue.IsPrinted/RequiredHexOfAValueIgnoresItsHeader,
    // DnDecoderValue.IsPrinted/RequiredBytesAfterAStringAreIgnored.
    asn_dn_result_t print_value(asn_element_t& rest) {
        if (rest.length == 0) return fault(DN_FAULT_VALUE_HEADER, rest.content);
        const uint8_t tag = rest.content[0];
        if (!is_string_tag(tag)) {
            m_out.put('#');
            dn_append_hex(rest.content, rest.length, m_out);
            return {};
        }

        asn_element_t value;
        if (!asn_next_element(asn_tag_t::ANY, rest, value)) return fault(DN_FAULT_VALUE_HEADER, value.start);
        return print_string(tag, value);
    }

    asn_dn_result_t print_string(uint8_t tag, const asn_element_t& value) {
        switch (tag) {
        case NUMERIC_STRING:
            if (!print_numeric(value, m_out)) return fault(DN_FAULT_NUMERIC_STRING, value.content);
            break;
        case TELETEX_STRING:
            if (!print_teletex(value, m_out)) return fault(DN_FAULT_TELETEX, value.content);
            break;
        case UNIVERSAL_STRING:
            if (!print_wide(kodex_codepage_t::UNIVERSAL, value, m_out))
                return fault(DN_FAULT_WIDE_STRING, value.content);
            break;
        case BMP_STRING:
            if (!print_wide(kodex_codepage_t::BMP, value, m_out)) return fault(DN_FAULT_WIDE_STRING, value.content);
            break;
        default:
            dn_value_escape(value.content, value.length, m_out);
        }
        return {};
    }

    const uint8_t* m_der;
    oid_map_handle_t m_map;
    text_sink_t& m_out;
};

} // namespace

asn_dn_result_t dn_print_rdn(const uint8_t* der, asn_element_t& rdn, oid_map_handle_t map, text_sink_t& out) {
    return rdn_printer_t(der, map, out).print(rdn);
}

bool dn_attr_type_to_printable(const uint8_t* oid, uint64_t length, text_sink_t& out, oid_map_handle_t map) {
    // Required: DnDecoder.RequiredAnEmptyShortNameIsPrintedUnchanged.
    const OIDdescr_t* const entry = map.map == nullptr ? nullptr : map.map->find_asn(oid, length);
    if (entry != nullptr) {
        out.put(entry->sn, static_cast<std::size_t>(entry->sn_len));
    } else if (!print_dotted(oid, length, out)) {
        return false;
    }
    out.put('=');
    return true;
}

} // namespace pkider
