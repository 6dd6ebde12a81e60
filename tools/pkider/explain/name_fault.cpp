#include "tools/pkider/explain/name_fault.h"

#include "tools/pkider/formats/name_around_value.h"
#include "tools/pkider/formats/tags.h"

#include <pkider/dn.h>

#include <algorithm>
#include <limits>

namespace tool {
namespace {

/// A string type that is printed as text, and what the library expects of its contents.
struct string_row_t {
    std::uint8_t tag;
    asn_dn_fault_t code;
    const char* expected; // null: nothing, they are printed unchanged
};

constexpr string_row_t string_rows[] = {
    {utf8_string_tag, {}, nullptr},
    {printable_string_tag, {}, nullptr},
    {ia5_string_tag, {}, nullptr},
    {numeric_string_tag, DN_FAULT_NUMERIC_STRING, "digits and blanks only"},
    {teletex_string_tag, DN_FAULT_TELETEX, "characters of T.61"},
    {bmp_string_tag, DN_FAULT_WIDE_STRING, "characters of 2 bytes, none of them a surrogate"},
    {universal_string_tag, DN_FAULT_WIDE_STRING, "characters of 4 bytes up to 10FFFF, none of them a surrogate"},
};

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

// Whether the library can print a string: it is asked with a Name that holds nothing but this value.
bool is_printed(const der_element_t& value) {
    std::string ignored;
    return print(as_bytes(name_around_value(as_text(value.whole))), {}, DN_ORDER_AS_ENCODED, ignored);
}

void check_value(der_cursor_t& attribute) {
    if (attribute.at_end()) fail(attribute, DN_FAULT_VALUE_HEADER, "the value");
    const auto row = std::ranges::find(string_rows, attribute.remaining().front(), &string_row_t::tag);
    if (row == std::end(string_rows)) return;

    const der_element_t value = next(attribute, asn_tag_t::ANY, DN_FAULT_VALUE_HEADER, "the value");
    if (row->expected != nullptr && !is_printed(value)) fail(der_cursor_t(value), row->code, row->expected);
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
