#include "dn/rdn_printer.h"

#include "dn/dn_fault.h"
#include "tests/support/hex.h"

#include <gtest/gtest.h>

#include <string>

using namespace pkider;
using namespace pkider_test;

namespace {

struct rdn_row_t {
    const char* name;
    const char* contents; // of the SET
    const char* text;
    uint16_t code = 0;
    uint16_t position = 0; // from the beginning of the Name, four bytes before the contents
    bool walked = true;    // to the end of the contents
};

class DnPrintRdn : public testing::TestWithParam<rdn_row_t> {};

TEST_P(DnPrintRdn, PrintsItsAttributes) {
    const rdn_row_t& row = GetParam();
    bytes_t der = "30 00 31 00"_hex;
    const bytes_t contents = from_hex(row.contents);
    der.insert(der.end(), contents.begin(), contents.end());
    asn_element_t rdn{der.data() + 2, der.data() + 4, contents.size()};
    text_sink_t out;
    out.put('>');
    const asn_dn_result_t result = dn_print_rdn(der.data(), rdn, OID_MAP_HANDLE_DEFAULT, out);
    EXPECT_EQ(out.text(), row.text);
    EXPECT_EQ(result.code, row.code);
    EXPECT_EQ(result.position, row.position);
    EXPECT_EQ(rdn.length == 0, row.walked);
}

const rdn_row_t rdns_rows[] = {
    {"Empty", "", ">"},
    {"OneAttribute", "30 08 06 03 55 04 03 13 01 61", ">CN=a"},
    {"TwoAttributes", "30 08 06 03 55 04 03 13 01 61 30 06 06 01 2A 0C 01 62", ">CN=a+1.2=b"},
    {"FaultInTheSecond", "30 08 06 03 55 04 03 13 01 61 31 00", ">CN=a+", DN_FAULT_NOT_A_SEQUENCE, 14, false},
    {"NoType", "30 00", ">", DN_FAULT_NOT_AN_OID, 6},
    {"NoValue", "30 05 06 03 55 04 03", ">CN=", DN_FAULT_VALUE_HEADER, 11},
    {"WrongNumericString", "30 08 06 03 55 04 03 12 01 61", ">CN=", DN_FAULT_NUMERIC_STRING, 13},
};
INSTANTIATE_TEST_SUITE_P(Rdns, DnPrintRdn, testing::ValuesIn(rdns_rows),
                         [](const auto& row) { return row.param.name; });

TEST(DnAttrTypeToPrintable, PrintsNameOrArcsAndAnEqualsSign) {
    const auto printed = [](const char* oid, oid_map_handle_t map, bool expected) {
        const bytes_t bytes = from_hex(oid);
        text_sink_t sink;
        sink.put('>');
        EXPECT_EQ(dn_attr_type_to_printable(bytes.data(), bytes.size(), sink, map), expected);
        return std::string(sink.text());
    };
    EXPECT_EQ(printed("55 04 03", OID_MAP_HANDLE_DEFAULT, true), ">CN=");
    EXPECT_EQ(printed("55 04 03", oid_map_handle_t{}, true), ">2.5.4.3=");
    EXPECT_EQ(printed("2A 03 04", OID_MAP_HANDLE_DEFAULT, true), ">1.2.3.4=");
    EXPECT_EQ(printed("2A 86", OID_MAP_HANDLE_DEFAULT, false), ">1.2.");
    EXPECT_EQ(printed("", OID_MAP_HANDLE_DEFAULT, false), ">");
}

} // namespace
