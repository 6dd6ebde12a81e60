// For any line: the encoder gives the same bytes or the same fault as splitting, looking up, decoding and nesting one
// asn_writer_t in another. It gives the same result with the built-in map, which has fast paths, and with a parsed map
// of the same rows. Its output can be walked as a Name, unless a length was cut.
#include "dn/dn_encoder.h"

#include "der/element_reader.h"
#include "fuzz/check.h"
#include "fuzz/line.h"
#include "tests/support/bottom_up_name.h"
#include "tests/support/builtin_map.h"
#include "tests/support/parsed_map.h"

using namespace pkider;

namespace {

void check_walks(const std::string& der) {
    asn_element_t all = asn_contents(reinterpret_cast<const uint8_t*>(der.data()), der.size());
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
    static const pkider_test::parsed_map_t same_rows(pkider_test::builtin_map_text());
    const bool with_names = (data[0] & 1) != 0;
    const oid_map_handle_t map = with_names ? OID_MAP_HANDLE_DEFAULT : oid_map_handle_t{};
    const fuzz_line_t line(data + 1, size - 1);

    const std::string untouched = "untouched";
    std::string der = untouched;
    std::string expected_der = untouched;
    const asn_dn_result_t result = printable_to_asn_dn_r(line.c_str(), der, map);
    const asn_dn_result_t expected = pkider_test::bottom_up_name(line.c_str(), map, expected_der);
    CHECK_TRUE(result.code == expected.code && result.position == expected.position);
    CHECK_TRUE(der == expected_der);

    std::string general_der = untouched;
    const asn_dn_result_t general =
        printable_to_asn_dn_r(line.c_str(), general_der, with_names ? same_rows : oid_map_handle_t{});
    CHECK_TRUE(general.code == result.code && general.position == result.position && general_der == der);
    if (result.code == 0 && der.size() < 0x10000) check_walks(der);
    return 0;
}
