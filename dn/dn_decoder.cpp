#include "dn/dn_decoder.h"

#include "der/element_reader.h"
#include "dn/dn_fault.h"
#include "dn/plain_rdn.h"
#include "dn/rdn_line.h"
#include "dn/rdn_printer.h"
#include "oid/map.h"

namespace pkider {
namespace {

// Prints the next RDN if it is a plain one, and moves past it.
template <typename Line>
bool print_if_plain(asn_element_t& name, Line& line) {
    plain_rdn_t rdn;
    if (!read_plain_rdn(name, rdn)) return false;
    const std::size_t size = rdn.printed_size();
    if (!print_plain_rdn(rdn, line.room(size))) return false;
    line.take(size);

    const uint8_t* const end = rdn.text + rdn.text_size;
    name.length -= static_cast<uint64_t>(end - name.content);
    name.content = end;
    return true;
}

// An RDN without attributes gets its "," too. Required: DnDecoder.PrintsTheLine/RequiredAnEmptySetPrintsNothing.
template <typename Line>
asn_dn_result_t print_rdns(const uint8_t* der, asn_element_t name, oid_map_handle_t map, Line& line) {
    const bool has_builtin_types = map.map != nullptr && map.map->begins_with_builtin();
    asn_element_t rdn;
    while (name.length != 0) {
        if (has_builtin_types && print_if_plain(name, line)) continue;
        if (!asn_next_element(asn_tag_t::SET, name, rdn)) return dn_fault(DN_FAULT_NOT_A_SET, rdn.start - der);
        const asn_dn_result_t result = dn_print_rdn(der, rdn, map, line.begin());
        if (result.code != 0) return result;
        line.end();
    }
    return {};
}

// Walks forward in either order, so that the first fault is the first one in the input; the RDNs finished before it
// are still reversed.
template <typename Line>
asn_dn_result_t print_name(const uint8_t* der, asn_element_t name, oid_map_handle_t map, std::string& out) {
    Line line(static_cast<std::size_t>(name.length));
    const asn_dn_result_t result = print_rdns(der, name, map, line);
    std::string_view text = line.text();
    if (result.code == 0) text.remove_suffix(1); // the last ","
    out.append(text);
    return result;
}

} // namespace

asn_dn_result_t asn_dn_to_printable_r(const uint8_t* der, uint32_t length, std::string& out, PrintableDnOrder order,
                                      oid_map_handle_t map) {
    asn_element_t name;
    name.content = asn_decode_header(asn_tag_t::SEQUENCE, der, length, &name.length);
    if (name.content == nullptr) return dn_fault(DN_FAULT_NOT_A_NAME, 0);
    if (name.length == 0) return {};
    return order == DN_ORDER_REVERSED ? print_name<reversed_line_t>(der, name, map, out)
                                      : print_name<forward_line_t>(der, name, map, out);
}

} // namespace pkider

bool asn_dn_to_printable(const uint8_t* der, uint32_t length, std::string& out, PrintableDnOrder order,
                         oid_map_handle_t map) {
    return pkider::asn_dn_to_printable_r(der, length, out, order, map).code == 0;
}
