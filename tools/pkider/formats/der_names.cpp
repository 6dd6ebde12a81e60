#include "tools/pkider/formats/der_names.h"

#include "tools/pkider/formats/der_walker.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace tool {
namespace {

struct name_row_t {
    universal_tag_t tag;
    const char* name;
};

// X.680 8.4, table 1.
constexpr name_row_t name_rows[] = {
    {boolean_tag, "BOOLEAN"},
    {integer_tag, "INTEGER"},
    {bit_string_tag, "BIT STRING"},
    {octet_string_tag, "OCTET STRING"},
    {null_tag, "NULL"},
    {oid_tag, "OBJECT IDENTIFIER"},
    {object_descriptor_tag, "ObjectDescriptor"},
    {external_tag, "EXTERNAL"},
    {real_tag, "REAL"},
    {enumerated_tag, "ENUMERATED"},
    {embedded_pdv_tag, "EMBEDDED PDV"},
    {utf8_string_tag, "UTF8String"},
    {relative_oid_tag, "RELATIVE-OID"},
    {time_tag, "TIME"},
    {sequence_tag, "SEQUENCE"},
    {set_tag, "SET"},
    {numeric_string_tag, "NumericString"},
    {printable_string_tag, "PrintableString"},
    {teletex_string_tag, "TeletexString"},
    {videotex_string_tag, "VideotexString"},
    {ia5_string_tag, "IA5String"},
    {utc_time_tag, "UTCTime"},
    {generalized_time_tag, "GeneralizedTime"},
    {graphic_string_tag, "GraphicString"},
    {visible_string_tag, "VisibleString"},
    {general_string_tag, "GeneralString"},
    {universal_string_tag, "UniversalString"},
    {character_string_tag, "CHARACTER STRING"},
    {bmp_string_tag, "BMPString"},
};

constexpr universal_tag_t constructed_types[] = {external_tag, embedded_pdv_tag, sequence_tag, set_tag,
                                                 character_string_tag};

std::string universal_name(const der_header_t& header) {
    const auto has_tag = [&](const name_row_t& row) { return row.tag == header.tag_number; };
    const auto* const row = std::find_if(std::begin(name_rows), std::end(name_rows), has_tag);
    if (row == std::end(name_rows)) return "[UNIVERSAL " + std::to_string(header.tag_number) + "]";
    const auto* const end = std::end(constructed_types);
    const bool is_constructed_type = std::find(std::begin(constructed_types), end, row->tag) != end;
    if (header.constructed() == is_constructed_type) return row->name;
    return std::string(row->name) + (header.constructed() ? " (constructed)" : " (primitive)");
}

} // namespace

std::string tag_name(const der_header_t& header) {
    const std::string number = std::to_string(header.tag_number);
    switch (header.identifier >> 6) { // X.690 8.1.2.2
    case 0:
        return universal_name(header);
    case 1:
        return "[APPLICATION " + number + "]";
    case 2:
        return "[" + number + "]";
    default:
        return "[PRIVATE " + number + "]";
    }
}

std::string type_of(std::uint8_t identifier) {
    der_header_t header;
    header.identifier = identifier;
    header.tag_number = identifier & tag_number_bits;
    const std::string name = tag_name(header);
    if (name.starts_with('[')) return header.constructed() ? name : name + ", primitive";
    const bool has_vowel = std::string_view("AEIO").find(name.front()) != std::string_view::npos; // "a UTCTime"
    return (has_vowel ? "an " : "a ") + name;
}

} // namespace tool
