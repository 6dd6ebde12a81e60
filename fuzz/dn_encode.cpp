// Whatever the line: the encoder ends as splitting, looking up, decoding and nesting one element builder in another do,
// with the same bytes or the same fault; and what it wrote is walked as a Name, as long as no length had to be cut.
#include "dn/dn_encoder.h"

#include "der/asn_writer.h"
#include "der/element_reader.h"
#include "dn/printable_dn.h"
#include "fuzz/check.h"
#include "fuzz/line.h"

using namespace pkider;

namespace {

asn_dn_result_t append_attribute(const char* line, const RDNdescr_t& record, oid_map_handle_t map,
                                 asn_writer_t<64>& rdn) {
    asn_writer_t<16> type(asn_tag_t::OBJECT_IDENTIFIER);
    const auto type_length = static_cast<uint64_t>(record.type_end - record.type_begin);
    if (const OIDdescr_t* const entry = oid_map_find_sn(map, record.type_begin, type_length)) {
        type.append(entry->asn, entry->asn_len);
    } else {
        uint8_t contents[512];
        const uint64_t length = oid_str_to_asn_(record.type_begin, record.type_end, contents);
        if (length == 0) return {2, static_cast<uint16_t>(record.type_begin - line)};
        type.append(contents, length);
    }

    std::string scratch;
    dn_value_t decoded;
    const asn_dn_result_t result = printable_dn_value_decode(record.value_begin, record.value_end, scratch, decoded);
    if (result.code != 0) {
        return {result.code, static_cast<uint16_t>(record.value_begin - line + result.position)};
    }
    asn_writer_t<64> value(decoded.tag);
    value.append(decoded.bytes, decoded.length);

    asn_writer_t<64> attribute(asn_tag_t::SEQUENCE);
    attribute.append(type);
    attribute.append(value);
    rdn.append(attribute);
    return {};
}

asn_dn_result_t encode_naively(const char* line, oid_map_handle_t map, std::string& out) {
    std::vector<RDNdescr_t> records;
    asn_dn_result_t result = printable_dn_split(line, records);
    if (result.code != 0) return result;

    asn_writer_t<128> name(asn_tag_t::SEQUENCE);
    for (std::size_t i = 0; i < records.size();) {
        asn_writer_t<64> rdn(asn_tag_t::SET);
        do {
            result = append_attribute(line, records[i], map, rdn);
            if (result.code != 0) return result;
        } while (++i < records.size() && records[i].joined_to_previous);
        name.append(rdn);
    }
    out.assign(name.data(), name.data() + name.size());
    return {};
}

void check_walks(const std::string& der) {
    asn_element_t all{nullptr, reinterpret_cast<const uint8_t*>(der.data()), der.size()};
    asn_element_t name;
    asn_element_t rdn;
    asn_element_t attribute;
    asn_element_t element;
    CHECK_TRUE(asn_next_element(asn_tag_t::SEQUENCE, all, name) && all.length == 0);
    while (name.length != 0) {
        CHECK_TRUE(asn_next_element(asn_tag_t::SET, name, rdn) && rdn.length != 0);
        while (rdn.length != 0) {
            CHECK_TRUE(asn_next_element(asn_tag_t::SEQUENCE, rdn, attribute));
            CHECK_TRUE(asn_next_element(asn_tag_t::OBJECT_IDENTIFIER, attribute, element) && element.length != 0);
            CHECK_TRUE(asn_next_element(asn_tag_t::ANY, attribute, element) && attribute.length == 0);
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const oid_map_handle_t map = (data[0] & 1) != 0 ? OID_MAP_HANDLE_DEFAULT : oid_map_handle_t{};
    const fuzz_line_t line(data + 1, size - 1);

    const std::string untouched = "untouched";
    std::string der = untouched;
    std::string expected_der = untouched;
    const asn_dn_result_t result = printable_to_asn_dn_r(line.c_str(), der, map);
    const asn_dn_result_t expected = encode_naively(line.c_str(), map, expected_der);
    CHECK_TRUE(result.code == expected.code && result.position == expected.position);
    CHECK_TRUE(der == expected_der);
    if (result.code == 0 && der.size() < 0x10000) check_walks(der);
    return 0;
}
