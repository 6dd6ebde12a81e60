// A Name written as it is defined: one asn_writer_t an element, appended to the one around it. The counting encoder
// must agree with it to the byte, odd lengths included, and end with the same fault.
#pragma once

#include "der/asn_writer.h"
#include "dn/printable_dn.h"

#include <pkider/der.h>
#include <pkider/oid.h>

#include <cstdint>
#include <string>
#include <vector>

namespace pkider_test {

inline bool append_type(const RDNdescr_t& record, oid_map_handle_t map, pkider::asn_writer_t<16>& out) {
    const auto length = static_cast<uint64_t>(record.type_end - record.type_begin);
    if (const OIDdescr_t* const entry = oid_map_find_sn(map, record.type_begin, length)) {
        out.append(entry->asn, entry->asn_len);
        return true;
    }
    uint8_t contents[512];
    const uint64_t size = oid_str_to_asn_(record.type_begin, record.type_end, contents);
    out.append(contents, size);
    return size != 0;
}

inline asn_dn_result_t append_attribute(const char* line, const RDNdescr_t& record, oid_map_handle_t map,
                                        pkider::asn_writer_t<64>& rdn) {
    pkider::asn_writer_t<16> type(asn_tag_t::OBJECT_IDENTIFIER);
    if (!append_type(record, map, type)) return {2, static_cast<uint16_t>(record.type_begin - line)};

    std::string scratch;
    pkider::dn_value_t decoded;
    const asn_dn_result_t result =
        pkider::printable_dn_value_decode(record.value_begin, record.value_end, scratch, decoded);
    if (result.code != 0) {
        return {result.code, static_cast<uint16_t>(record.value_begin - line + result.position)};
    }
    pkider::asn_writer_t<64> value(decoded.tag);
    value.append(decoded.bytes, decoded.length);

    pkider::asn_writer_t<64> attribute(asn_tag_t::SEQUENCE);
    attribute.append(type);
    attribute.append(value);
    rdn.append(attribute);
    return {};
}

/// Replaces `out` when there is no fault.
inline asn_dn_result_t bottom_up_name(const char* line, oid_map_handle_t map, std::string& out) {
    std::vector<RDNdescr_t> records;
    asn_dn_result_t result = pkider::printable_dn_split(line, records);
    if (result.code != 0) return result;

    pkider::asn_writer_t<128> name(asn_tag_t::SEQUENCE);
    for (std::size_t i = 0; i < records.size();) {
        pkider::asn_writer_t<64> rdn(asn_tag_t::SET);
        do {
            result = append_attribute(line, records[i], map, rdn);
            if (result.code != 0) return result;
        } while (++i < records.size() && records[i].joined_to_previous);
        name.append(rdn);
    }
    out.assign(name.data(), name.data() + name.size());
    return {};
}

} // namespace pkider_test
