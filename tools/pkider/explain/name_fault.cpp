#include "tools/pkider/explain/name_fault.h"

#include "tools/pkider/formats/name_around_value.h"
#include "tools/pkider/formats/tags.h"

#include <pkider/dn.h>

#include <algorithm>
#include <limits>

namespace tool {
namespace {

constexpr std::uint8_t string_tags[] = {utf8_string_tag, numeric_string_tag,   printable_string_tag, teletex_string_tag,
                                        ia5_string_tag,  universal_string_tag, bmp_string_tag};

bool print(bytes_t der, oid_map_handle_t map, PrintableDnOrder order, std::string& out) {
    if (der.size() > std::numeric_limits<std::uint32_t>::max()) throw data_fault_t("a Name of 4 GiB and more");
    return asn_dn_to_printable(der.data(), static_cast<std::uint32_t>(der.size()), out, order, map);
}

// The next element, its fault with the library's code.
der_element_t next(der_cursor_t& cursor, asn_tag_t::Type tag, asn_dn_fault_t code, const char* what) {
    try {
        return cursor.next(tag, what);
    } catch (const der_fault_t& fault) {
        throw name_fault_t(code, fault);
    }
}

[[noreturn]] void fail(const der_cursor_t& cursor, asn_dn_fault_t code, const char* what) {
    try {
        cursor.fail(what);
    } catch (const der_fault_t& fault) {
        throw name_fault_t(code, fault);
    }
}

void check_type(const der_element_t& type, oid_map_handle_t map) {
    const bytes_t oid = type.contents;
    if (oid_map_find_asn(map, oid.data(), oid.size()) != nullptr) return;
    std::string dotted;
    if (oid_asn_to_str_(oid.data(), oid.data() + oid.size(), dotted)) return;
    fail(der_cursor_t(type), DN_FAULT_OID_UNPRINTABLE, "an OID of whole arcs");
}

bool is_numeric_character(std::uint8_t c) {
    return (c >= '0' && c <= '9') || c == ' ';
}

// Whether the library can convert a string: it is asked with a Name that holds nothing but this value.
bool converts(const der_element_t& value) {
    std::string ignored;
    return print(as_bytes(name_around_value(as_text(value.whole))), {}, DN_ORDER_AS_ENCODED, ignored);
}

void check_value(der_cursor_t& attribute) {
    if (attribute.at_end()) fail(attribute, DN_FAULT_VALUE_HEADER, "the value");
    if (std::ranges::find(string_tags, attribute.remaining().front()) == std::end(string_tags)) return;

    const der_element_t value = next(attribute, asn_tag_t::ANY, DN_FAULT_VALUE_HEADER, "the value");
    der_cursor_t contents(value);
    switch (value.identifier) {
    case numeric_string_tag:
        if (!std::ranges::all_of(value.contents, is_numeric_character))
            fail(contents, DN_FAULT_NUMERIC_STRING, "digits and blanks only");
        break;
    case teletex_string_tag:
        if (!converts(value)) fail(contents, DN_FAULT_TELETEX, "characters of T.61");
        break;
    case bmp_string_tag:
        if (!converts(value)) fail(contents, DN_FAULT_WIDE_STRING, "characters of 2 bytes, none of them a surrogate");
        break;
    case universal_string_tag:
        if (!converts(value))
            fail(contents, DN_FAULT_WIDE_STRING, "characters of 4 bytes up to 10FFFF, none of them a surrogate");
        break;
    default:
        break;
    }
}

// Name ::= SEQUENCE OF SET OF SEQUENCE { type OBJECT IDENTIFIER, value ANY }
void check_name(der_cursor_t der, oid_map_handle_t map) {
    der_cursor_t name(next(der, asn_tag_t::SEQUENCE, DN_FAULT_NOT_A_NAME, "a Name"));
    while (!name.at_end()) {
        der_cursor_t rdn(next(name, asn_tag_t::SET, DN_FAULT_NOT_A_SET, "a RelativeDistinguishedName"));
        while (!rdn.at_end()) {
            der_cursor_t attribute(next(rdn, asn_tag_t::SEQUENCE, DN_FAULT_NOT_A_SEQUENCE, "an AttributeTypeAndValue"));
            check_type(next(attribute, asn_tag_t::OBJECT_IDENTIFIER, DN_FAULT_NOT_AN_OID, "an attribute type"), map);
            check_value(attribute);
        }
    }
}

} // namespace

std::string print_name(bytes_t der, oid_map_handle_t map, bool reversed, std::uint64_t offset) {
    std::string text;
    if (print(der, map, reversed ? DN_ORDER_REVERSED : DN_ORDER_AS_ENCODED, text)) return text;
    check_name(der_cursor_t(der, offset), map);
    throw data_fault_t("the Name cannot be printed");
}

} // namespace tool
