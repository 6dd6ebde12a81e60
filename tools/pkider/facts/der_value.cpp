#include "tools/pkider/facts/der_value.h"

#include "tools/pkider/base/count_text.h"
#include "tools/pkider/facts/oid_names.h"
#include "tools/pkider/formats/name_around_value.h"
#include "tools/pkider/formats/tags.h"

#include <pkider/dn.h>

#include <algorithm>
#include <limits>
#include <string_view>

namespace tool {
namespace {

constexpr std::uint64_t max_oid_bytes = 256; // longer ones are no name of anything
constexpr std::uint64_t max_decimal_bytes = 8;

der_value_t as_bytes(bytes_t contents, std::uint64_t max_bytes) {
    der_value_t value;
    value.bytes = contents.first(std::min<std::uint64_t>(contents.size(), max_bytes));
    value.num_hidden = contents.size() - value.bytes.size();
    return value;
}

der_value_t as_text(bytes_t contents, std::uint64_t max_bytes) {
    std::uint64_t shown = std::min<std::uint64_t>(contents.size(), max_bytes);
    // Never in the middle of a UTF-8 character.
    while (shown < contents.size() && shown > 0 && (contents[shown] & 0xC0) == 0x80) --shown;
    der_value_t value;
    value.text.assign(contents.begin(), contents.begin() + static_cast<std::ptrdiff_t>(shown));
    value.is_string = true;
    value.num_hidden = contents.size() - shown;
    return value;
}

der_value_t as_boolean(bytes_t contents, std::uint64_t max_bytes) {
    if (contents.size() != 1 || (contents[0] != 0 && contents[0] != 0xFF)) return as_bytes(contents, max_bytes);
    der_value_t value; // X.690 11.1: all eight bits or none
    value.text = contents[0] == 0 ? "FALSE" : "TRUE";
    return value;
}

der_value_t as_bits(bytes_t contents, std::uint64_t max_bytes) {
    if (contents.empty() || contents[0] > 7) return as_bytes(contents, max_bytes);
    der_value_t value = as_bytes(contents.subspan(1), max_bytes);
    value.text = contents[0] == 0 ? "" : count_text(contents[0], "unused bit");
    return value;
}

der_value_t as_integer(bytes_t contents, std::uint64_t max_bytes) {
    if (contents.empty() || contents.size() > max_decimal_bytes) return as_bytes(contents, max_bytes);
    std::uint64_t bits = contents[0] >= 0x80 ? ~std::uint64_t{0} : 0;
    for (const std::uint8_t byte : contents) bits = bits << 8 | byte;
    der_value_t value;
    value.text = std::to_string(static_cast<std::int64_t>(bits));
    return value;
}

der_value_t as_oid(bytes_t contents, std::uint64_t max_bytes, oid_map_handle_t map) {
    if (contents.empty() || contents.size() > max_oid_bytes) return as_bytes(contents, max_bytes);
    const oid_text_t oid = describe_oid(contents, map);
    if (oid.dotted.empty()) return as_bytes(contents, max_bytes);
    // A text that does not represent these bytes is shown with them.
    der_value_t value = oid.minimal ? der_value_t{} : as_bytes(contents, max_bytes);
    value.text = oid_label(oid);
    value.oid = oid;
    return value;
}

/// Teletex, BMP and Universal text in UTF-8, by the library's own converters: the string is printed as the value of a
/// name with one attribute, and the escapes are taken away again. None when it does not convert.
std::optional<std::string> convert_string(std::uint8_t tag, bytes_t contents) {
    const std::string name = name_around_value(der_header(tag, contents.size()).append(tool::as_text(contents)));
    if (name.size() > std::numeric_limits<std::uint32_t>::max()) return std::nullopt;
    const auto size = static_cast<std::uint32_t>(name.size());
    std::string line;
    if (!asn_dn_to_printable(tool::as_bytes(name).data(), size, line, DN_ORDER_AS_ENCODED, {})) return std::nullopt;
    std::string text;
    for (std::size_t at = line.find('=') + 1; at < line.size(); ++at) {
        if (line[at] == '\\') ++at;
        text.push_back(line[at]);
    }
    return text;
}

der_value_t as_converted(std::uint8_t tag, bytes_t contents, std::uint64_t max_bytes) {
    if (contents.empty()) return as_text(contents, max_bytes);
    const std::uint64_t shown =
        std::min<std::uint64_t>(contents.size(), max_bytes & ~std::uint64_t{3}); // whole characters
    const auto text = convert_string(tag, contents.first(shown));
    if (!text) return as_bytes(contents, max_bytes);
    der_value_t value;
    value.text = *text;
    value.is_string = true;
    value.num_hidden = contents.size() - shown;
    return value;
}

} // namespace

der_value_t describe_value(const der_header_t& node, std::uint64_t max_bytes, oid_map_handle_t map) {
    const bytes_t contents = node.contents;
    switch (node.identifier) {
    case boolean_tag:
        return as_boolean(contents, max_bytes);
    case integer_tag:
    case enumerated_tag:
        return as_integer(contents, max_bytes);
    case bit_string_tag:
        return as_bits(contents, max_bytes);
    case oid_tag:
        return as_oid(contents, max_bytes, map);
    case utf8_string_tag:
    case numeric_string_tag:
    case printable_string_tag:
    case ia5_string_tag:
    case utc_time_tag:
    case generalized_time_tag:
    case visible_string_tag:
        return as_text(contents, max_bytes);
    case teletex_string_tag:
    case universal_string_tag:
    case bmp_string_tag:
        return as_converted(node.identifier, contents, max_bytes);
    default:
        return as_bytes(contents, max_bytes);
    }
}

} // namespace tool
