#include <pkider/dn.h>

#include "tests/support/hex.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <type_traits>
#include <vector>

using namespace pkider_test;

namespace {

// The records as hosts were compiled with them: 32 bits are returned, pointers are in the order of the line.
static_assert(sizeof(asn_dn_result_t) == 4);
static_assert(offsetof(asn_dn_result_t, code) == 0 && offsetof(asn_dn_result_t, position) == 2);
static_assert(offsetof(RDNdescr_t, type_begin) == 0);
static_assert(offsetof(RDNdescr_t, type_end) == sizeof(char*));
static_assert(offsetof(RDNdescr_t, value_begin) == 2 * sizeof(char*));
static_assert(offsetof(RDNdescr_t, value_end) == 3 * sizeof(char*));
static_assert(offsetof(RDNdescr_t, joined_to_previous) == 4 * sizeof(char*));
static_assert(sizeof(PrintableDnOrder) == 4 && sizeof(PrintableDnGetAttr) == 4);

const oid_map_handle_t& map = OID_MAP_HANDLE_DEFAULT;

std::string encode(const char* line) {
    std::string der;
    EXPECT_TRUE(printable_to_asn_dn(line, der, map)) << line;
    return der;
}

std::string print(const std::string& der, PrintableDnOrder order) {
    std::string out;
    EXPECT_TRUE(asn_dn_to_printable(reinterpret_cast<const uint8_t*>(der.data()), static_cast<uint32_t>(der.size()),
                                    out, order, map));
    return out;
}

} // namespace

TEST(InterfaceDn, SplitsALineIntoRecords) {
    const char* const line = "CN=a,O=b+OU=c";
    std::vector<RDNdescr_t> records;
    ASSERT_TRUE(printable_dn_parse(line, records));
    ASSERT_EQ(records.size(), 3U);
    EXPECT_EQ(std::string(records[2].type_begin, records[2].type_end), "OU");
    EXPECT_EQ(records[2].value_begin, line + 12);
    EXPECT_TRUE(records[2].joined_to_previous);
}

TEST(InterfaceDn, EncodesAndPrintsInBothOrders) {
    const std::string der = encode("CN=Server 1,O=Example,C=RU");
    EXPECT_EQ(to_bytes(der), "30 32 31 11 30 0F 06 03 55 04 03 13 08 53 65 72 76 65 72 20 31"
                             "31 10 30 0E 06 03 55 04 0A 13 07 45 78 61 6D 70 6C 65"
                             "31 0B 30 09 06 03 55 04 06 13 02 52 55"_hex);
    EXPECT_EQ(print(der, DN_ORDER_AS_ENCODED), "CN=Server 1,O=Example,C=RU");
    EXPECT_EQ(print(der, DN_ORDER_REVERSED), "C=RU,O=Example,CN=Server 1");
}

TEST(InterfaceDn, NormalizesAndReportsFaultsWithTheirPosition) {
    std::string out;
    std::string der;
    EXPECT_EQ(printable_dn_normalize_r("cn=a, O=\"b,c\"", out, &der, map).code, 0);
    EXPECT_EQ(out, "CN=a,O=b\\,c");
    EXPECT_EQ(der, encode("CN=a,O=b\\,c"));

    const asn_dn_result_t fault = printable_dn_normalize_r("CN=a;b", out, nullptr, map);
    EXPECT_EQ(fault.code, DN_FAULT_UNESCAPED_SPECIAL);
    EXPECT_EQ(fault.position, 4);
    EXPECT_FALSE(printable_dn_normalize("CN=a;b", out, nullptr, map));
    EXPECT_EQ(out, "CN=a,O=b\\,c");
}

TEST(InterfaceDn, NamesEveryFaultCode) {
    static_assert(std::is_same_v<std::underlying_type_t<asn_dn_fault_t>, decltype(asn_dn_result_t::code)>);
    constexpr asn_dn_fault_t of_line[] = {
        DN_FAULT_TYPE_SYNTAX, DN_FAULT_TYPE_UNKNOWN,     DN_FAULT_UNBALANCED_QUOTE, DN_FAULT_HEX_COUNT,
        DN_FAULT_HEX_DIGIT,   DN_FAULT_HEX_ELEMENT,      DN_FAULT_BACKSLASH_AT_END, DN_FAULT_ESCAPE_SECOND_DIGIT,
        DN_FAULT_ESCAPE,      DN_FAULT_UNESCAPED_SPECIAL};
    constexpr asn_dn_fault_t of_der[] = {DN_FAULT_NOT_A_NAME, DN_FAULT_NOT_A_SET,       DN_FAULT_NOT_A_SEQUENCE,
                                         DN_FAULT_NOT_AN_OID, DN_FAULT_OID_UNPRINTABLE, DN_FAULT_VALUE_HEADER,
                                         DN_FAULT_TELETEX,    DN_FAULT_WIDE_STRING,     DN_FAULT_NUMERIC_STRING};
    uint16_t code = 0;
    EXPECT_FALSE(asn_dn_fault_is_of_line(code));
    for (const asn_dn_fault_t fault : of_line) {
        EXPECT_EQ(fault, ++code);
        EXPECT_TRUE(asn_dn_fault_is_of_line(fault));
    }
    for (const asn_dn_fault_t fault : of_der) {
        EXPECT_EQ(fault, ++code);
        EXPECT_FALSE(asn_dn_fault_is_of_line(fault));
    }
    EXPECT_EQ(code, 19);
}

TEST(InterfaceDn, WorksOnLinesAsText) {
    char line[] = "C=RU,O=x,CN=a";
    EXPECT_EQ(printable_dn_reverse(line), line);
    EXPECT_STREQ(line, "CN=a,O=x,C=RU");

    EXPECT_TRUE(printable_dn_contain_attrs(line, "CN=a,C=RU"));
    EXPECT_FALSE(printable_dn_contain_attrs(line, "C=RU,CN=a"));
    EXPECT_FALSE(printable_dn_C_before_CN(line));

    std::string value;
    EXPECT_TRUE(printable_dn_get_attr(line, "O", value, DN_GET_ATTR_VALUE));
    EXPECT_TRUE(printable_dn_get_attr(line, "C", value, DN_GET_ATTR_PAIR));
    EXPECT_EQ(value, "xC=RU");
}
