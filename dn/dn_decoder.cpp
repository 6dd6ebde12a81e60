#include "dn/dn_decoder.h"

#include "der/element_reader.h"
#include "dn/dn_fault.h"
#include "dn/inline_list.h"
#include "dn/teletex.h"
#include "dn/value_escape.h"
#include "oid/map.h"
#include "platform/kodex.h"

#include <algorithm>
#include <limits>

namespace pkider {
namespace {

// The string types that are printed as text; universal tag numbers of X.680 8.4.
enum string_tag_t : uint8_t {
    UTF8_STRING = 12,
    NUMERIC_STRING = 18,
    PRINTABLE_STRING = 19,
    TELETEX_STRING = 20,
    IA5_STRING = 22,
    UNIVERSAL_STRING = 28,
    BMP_STRING = 30,
};

constexpr bool is_string_tag(uint8_t tag) {
    switch (tag) {
    case UTF8_STRING:
    case NUMERIC_STRING:
    case PRINTABLE_STRING:
    case TELETEX_STRING:
    case IA5_STRING:
    case UNIVERSAL_STRING:
    case BMP_STRING:
        return true;
    default:
        return false;
    }
}

constexpr bool is_numeric(uint8_t byte) {
    return (byte >= '0' && byte <= '9') || byte == ' ';
}

void put_escaped(const std::string& text, text_sink_t& out) {
    dn_value_escape(reinterpret_cast<const uint8_t*>(text.data()), text.size(), out);
}

bool print_numeric(const asn_element_t& value, text_sink_t& out) {
    if (!std::all_of(value.content, value.content + value.length, is_numeric)) return false;
    dn_value_escape(value.content, value.length, out); // nothing in it needs an escape
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
    std::string text(static_cast<std::size_t>(size), '\0');
    if (converter.convert_safe(value.content, value.length, text.data(), size) == 0) return false;
    put_escaped(text, out);
    return true;
}

// One walk over a Name. A fault is reported where it stands in `der`.
class name_printer_t {
  public:
    name_printer_t(const uint8_t* der, oid_map_handle_t map, text_sink_t& out) : m_der(der), m_map(map), m_out(out) {}

    // `on_rdn()` is called behind each RDN and its ",". An RDN without attributes gets its "," too.
    // Wanted: DnDecoder.PrintsTheLine/RequiredAnEmptySetPrintsNothing.
    template <typename OnRdn>
    asn_dn_result_t print(asn_element_t name, OnRdn&& on_rdn) {
        asn_element_t rdn;
        while (name.length != 0) {
            if (!asn_next_element(asn_tag_t::SET, name, rdn)) return fault(DN_FAULT_NOT_A_SET, rdn.start);
            const asn_dn_result_t result = print_rdn(rdn);
            if (result.code != 0) return result;
            m_out.put(',');
            on_rdn();
        }
        return {};
    }

  private:
    asn_dn_result_t fault(dn_fault_t code, const uint8_t* at) const { return dn_fault(code, at - m_der); }

    asn_dn_result_t print_rdn(asn_element_t& rdn) {
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

    // `rest` is what stands behind the type, to the end of the AttributeTypeAndValue. All of it is printed in
    // hexadecimal, whatever a header in it says; behind a string, what is left of it is ignored. Wanted:
    // DnDecoderValue.IsPrinted/RequiredHexOfAValueIgnoresItsHeader,
    // DnDecoderValue.IsPrinted/RequiredBytesBehindAStringAreIgnored.
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

asn_dn_result_t print_as_encoded(const uint8_t* der, const asn_element_t& name, oid_map_handle_t map,
                                 std::string& out) {
    text_sink_t sink(static_cast<std::size_t>(name.length));
    const asn_dn_result_t result = name_printer_t(der, map, sink).print(name, [] {});
    std::string_view text = sink.text();
    if (result.code == 0) text.remove_suffix(1); // the last ","
    out.append(text);
    return result;
}

// Walks forward like the other, so that the first fault is the first one in the input; the RDNs finished before it are
// turned round all the same.
asn_dn_result_t print_reversed(const uint8_t* der, const asn_element_t& name, oid_map_handle_t map, std::string& out) {
    text_sink_t sink(static_cast<std::size_t>(name.length));
    inline_list_t<std::size_t, 16> rdn_ends;
    const asn_dn_result_t result = name_printer_t(der, map, sink).print(name, [&] { rdn_ends.append() = sink.size(); });

    const std::string_view text = sink.text();
    out.reserve(out.size() + text.size());
    for (std::size_t i = rdn_ends.size(); i-- > 0;) {
        const std::size_t begin = i == 0 ? 0 : rdn_ends[i - 1];
        out.append(text.substr(begin, rdn_ends[i] - begin));
    }
    if (result.code == 0) out.pop_back();
    return result;
}

} // namespace

bool dn_attr_type_to_printable(const uint8_t* oid, uint64_t length, text_sink_t& out, oid_map_handle_t map) {
    // Wanted: DnDecoder.RequiredAnEmptyShortNameIsPrintedAsItIs.
    const OIDdescr_t* const entry = map.map == nullptr ? nullptr : map.map->find_asn(oid, length);
    if (entry != nullptr) {
        out.put(entry->sn, static_cast<std::size_t>(entry->sn_len));
    } else if (!oid_asn_to_str_(oid, oid + length, out.spill())) {
        return false;
    }
    out.put('=');
    return true;
}

asn_dn_result_t asn_dn_to_printable_r(const uint8_t* der, uint32_t length, std::string& out, PrintableDnOrder order,
                                      oid_map_handle_t map) {
    asn_element_t name;
    name.content = asn_decode_header(asn_tag_t::SEQUENCE, der, length, &name.length);
    if (name.content == nullptr) return dn_fault(DN_FAULT_NOT_A_NAME, 0);
    if (name.length == 0) return {};
    return order == DN_ORDER_REVERSED ? print_reversed(der, name, map, out) : print_as_encoded(der, name, map, out);
}

} // namespace pkider

bool asn_dn_to_printable(const uint8_t* der, uint32_t length, std::string& out, PrintableDnOrder order,
                         oid_map_handle_t map) {
    return pkider::asn_dn_to_printable_r(der, length, out, order, map).code == 0;
}
