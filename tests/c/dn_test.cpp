#include "tests/c/c_output.h"
#include "tests/support/alloc_failure.h"

#include <gtest/gtest.h>

#include <array>
#include <new>
#include <string>
#include <string_view>

using namespace pkider_test;

namespace {

const pkider_oid_map_t* const map = pkider_oid_map_default();
constexpr pkider_dn_fault_t unwritten{77, 77};

result_t encode(std::string_view line, pkider_dn_fault_t* fault = nullptr) {
    return collect([&](auto* out) { return pkider_dn_encode(map, line.data(), line.size(), out, fault); });
}

result_t print(const bytes_t& der, pkider_dn_order_t order, pkider_dn_fault_t* fault = nullptr) {
    return collect([&](auto* out) { return pkider_dn_print(map, der.data(), der.size(), order, out, fault); });
}

struct fault_t {
    const char* name;
    const char* line;
    uint16_t code, position;
};

void PrintTo(const fault_t& row, std::ostream* os) {
    *os << row.line;
}

class CDnLineFault : public testing::TestWithParam<fault_t> {};
class CDnDerFault : public testing::TestWithParam<fault_t> {};

} // namespace

// Both directions

TEST(CDn, IsEncodedAndPrinted) {
    pkider_dn_fault_t fault = unwritten;
    const result_t der = encode("CN=a,O=b", &fault);
    ASSERT_EQ(der.status, PKIDER_OK);
    EXPECT_EQ(fault.code, 0);
    EXPECT_EQ(to_hex(der.text), "30 18 31 0A 30 08 06 03 55 04 03 13 01 61 31 0A 30 08 06 03 55 04 0A 13 01 62");

    fault = unwritten;
    const bytes_t name = to_bytes(der.text);
    EXPECT_EQ(print(name, PKIDER_DN_ORDER_AS_ENCODED, &fault), (result_t{PKIDER_OK, "CN=a,O=b"}));
    EXPECT_EQ(fault.code, 0);
    EXPECT_EQ(print(name, PKIDER_DN_ORDER_REVERSED), (result_t{PKIDER_OK, "O=b,CN=a"}));
    EXPECT_EQ(print(name, 77), (result_t{PKIDER_OK, "CN=a,O=b"}));
}

TEST(CDn, MayBeEmpty) {
    EXPECT_EQ(to_hex(encode("").text), "30 00");
    EXPECT_EQ(print("30 00"_hex, PKIDER_DN_ORDER_AS_ENCODED), (result_t{PKIDER_OK, ""}));
    pkider_output_t out = pkider_output_to_sink([](void*, const uint8_t*, uint64_t) { return 1; }, nullptr);
    const bytes_t name = "30 00"_hex;
    EXPECT_EQ(pkider_dn_print(map, name.data(), name.size(), 0, &out, nullptr), PKIDER_OK) << "no sink for no bytes";
}

// Faults

TEST_P(CDnLineFault, HasCodeAndPosition) {
    pkider_dn_fault_t fault = unwritten;
    EXPECT_EQ(encode(GetParam().line, &fault), (result_t{PKIDER_MALFORMED, ""}));
    EXPECT_EQ(fault.code, GetParam().code);
    EXPECT_EQ(fault.position, GetParam().position);
    EXPECT_EQ(encode(GetParam().line, nullptr).status, PKIDER_MALFORMED);
}

INSTANTIATE_TEST_SUITE_P(Lines, CDnLineFault,
                         testing::Values(fault_t{"TypeSyntax", "CN=a,", 1, 5},
                                         fault_t{"TypeUnknown", "CN=a,XYZ=b", 2, 5},
                                         fault_t{"UnbalancedQuote", "CN=\"a", 3, 3}, fault_t{"HexCount", "CN=#1", 4, 3},
                                         fault_t{"BackslashAtEnd", "CN=a\\", 7, 5},
                                         fault_t{"UnescapedSpecial", "CN=a;b", 10, 4}),
                         [](const auto& row) { return row.param.name; });

TEST_P(CDnDerFault, HasCodeAndPosition) {
    pkider_dn_fault_t fault = unwritten;
    const bytes_t der = from_hex(GetParam().line);
    for (const pkider_dn_order_t order : {PKIDER_DN_ORDER_AS_ENCODED, PKIDER_DN_ORDER_REVERSED}) {
        EXPECT_EQ(print(der, order, &fault), (result_t{PKIDER_MALFORMED, ""}));
        EXPECT_EQ(fault.code, GetParam().code);
        EXPECT_EQ(fault.position, GetParam().position);
    }
    EXPECT_EQ(print(der, 0, nullptr).status, PKIDER_MALFORMED);
}

INSTANTIATE_TEST_SUITE_P(Names, CDnDerFault,
                         testing::Values(fault_t{"NotAName", "31 00", 11, 0}, fault_t{"NotASet", "30 02 30 00", 12, 2},
                                         fault_t{"NotASequence", "30 04 31 02 31 00", 13, 4},
                                         fault_t{"NotAnOid", "30 06 31 04 30 02 05 00", 14, 6},
                                         fault_t{"NumericString", "30 0C 31 0A 30 08 06 03 55 04 03 12 01 61", 19, 13}),
                         [](const auto& row) { return row.param.name; });

TEST(CDn, RefusesANulInALine) {
    const std::string_view line("CN=a\0,O=b", 9);
    pkider_output_t out{};
    pkider_dn_fault_t fault = unwritten;
    int answer = 77;
    uint64_t num_pairs = 77;
    EXPECT_EQ(pkider_dn_encode(map, line.data(), line.size(), &out, &fault), PKIDER_ARGUMENT);
    EXPECT_EQ(fault.code, 0);
    EXPECT_EQ(pkider_dn_split(line.data(), line.size(), nullptr, 0, &num_pairs, nullptr), PKIDER_ARGUMENT);
    EXPECT_EQ(num_pairs, 0U);
    EXPECT_EQ(pkider_dn_normalize(map, line.data(), line.size(), &out, nullptr, nullptr), PKIDER_ARGUMENT);
    EXPECT_EQ(pkider_dn_reverse(line.data(), line.size(), &out, nullptr), PKIDER_ARGUMENT);
    EXPECT_EQ(pkider_dn_contains(line.data(), line.size(), "O=b", 3, &answer), PKIDER_ARGUMENT);
    EXPECT_EQ(pkider_dn_contains("O=b", 3, line.data(), line.size(), &answer), PKIDER_ARGUMENT);
    EXPECT_EQ(answer, 0);
    EXPECT_EQ(pkider_dn_get_attribute(line.data(), line.size(), "O", 1, 0, &out, nullptr), PKIDER_ARGUMENT);
    EXPECT_EQ(pkider_dn_get_attribute("O=b", 3, "\0", 1, 0, &out, nullptr), PKIDER_ARGUMENT);
    EXPECT_EQ(pkider_dn_has_country_first(line.data(), line.size(), &answer, nullptr), PKIDER_ARGUMENT);
}

TEST(CDn, RefusesNullArguments) {
    pkider_output_t out{};
    int answer = 0;
    uint64_t num_pairs = 0;
    EXPECT_EQ(pkider_dn_encode(map, nullptr, 1, &out, nullptr), PKIDER_ARGUMENT);
    EXPECT_EQ(pkider_dn_print(map, nullptr, 1, 0, &out, nullptr), PKIDER_ARGUMENT);
    EXPECT_EQ(pkider_dn_print(map, "30"_hex.data(), uint64_t{1} << 32, 0, &out, nullptr), PKIDER_TOO_LONG);
    EXPECT_EQ(pkider_dn_split(nullptr, 1, nullptr, 0, &num_pairs, nullptr), PKIDER_ARGUMENT);
    EXPECT_EQ(pkider_dn_split("", 0, nullptr, 0, nullptr, nullptr), PKIDER_ARGUMENT);
    EXPECT_EQ(pkider_dn_normalize(map, "", 0, &out, &out, nullptr), PKIDER_ARGUMENT) << "two outputs, not one twice";
    EXPECT_EQ(pkider_dn_contains("", 0, "", 0, nullptr), PKIDER_ARGUMENT);
    EXPECT_EQ(pkider_dn_contains("", 0, nullptr, 1, &answer), PKIDER_ARGUMENT);
    EXPECT_EQ(pkider_dn_has_country_first("", 0, nullptr, nullptr), PKIDER_ARGUMENT);
}

// Pairs

TEST(CDnSplit, GivesSpansOfTheLine) {
    const std::string_view line = "CN = a, O=b+OU= \"c\"";
    std::array<pkider_dn_pair_t, 3> pairs{};
    uint64_t num_pairs = 0;
    pkider_dn_fault_t fault = unwritten;
    ASSERT_EQ(pkider_dn_split(line.data(), line.size(), pairs.data(), pairs.size(), &num_pairs, &fault), PKIDER_OK);
    ASSERT_EQ(num_pairs, 3U);
    EXPECT_EQ(fault.code, 0);
    EXPECT_EQ(text_of(pairs[0].type), "CN");
    EXPECT_EQ(text_of(pairs[0].value), " a");
    EXPECT_EQ(pairs[0].is_joined_to_previous, 0U);
    EXPECT_EQ(reinterpret_cast<const char*>(pairs[1].type.data), line.data() + 8);
    EXPECT_EQ(text_of(pairs[2].type), "OU");
    EXPECT_EQ(text_of(pairs[2].value), " \"c\"");
    EXPECT_EQ(pairs[2].is_joined_to_previous, 1U);
}

TEST(CDnSplit, ReportsTheNumberThatHasNoRoom) {
    pkider_dn_pair_t pair{{}, {}, 77};
    uint64_t num_pairs = 0;
    EXPECT_EQ(pkider_dn_split("A=1,B=2", 7, &pair, 1, &num_pairs, nullptr), PKIDER_NO_ROOM);
    EXPECT_EQ(num_pairs, 2U);
    EXPECT_EQ(pair.is_joined_to_previous, 77U);
    EXPECT_EQ(pkider_dn_split("A=1,B=2", 7, nullptr, 0, &num_pairs, nullptr), PKIDER_NO_ROOM);
    EXPECT_EQ(pkider_dn_split("", 0, nullptr, 0, &num_pairs, nullptr), PKIDER_OK);
    EXPECT_EQ(num_pairs, 0U);
}

TEST(CDnSplit, ReportsAFault) {
    pkider_dn_pair_t pair{{}, {}, 77};
    uint64_t num_pairs = 77;
    pkider_dn_fault_t fault = unwritten;
    EXPECT_EQ(pkider_dn_split("A=1,=", 5, &pair, 1, &num_pairs, &fault), PKIDER_MALFORMED);
    EXPECT_EQ(fault.code, PKIDER_DN_FAULT_TYPE_SYNTAX);
    EXPECT_EQ(fault.position, 4);
    EXPECT_EQ(num_pairs, 0U);
    EXPECT_EQ(pair.is_joined_to_previous, 77U);
}

TEST(CDnSplit, ReportsExhaustedMemory) {
    const std::string line = "CN=a line that is too long to be kept in place,O=b";
    std::array<pkider_dn_pair_t, 2> pairs{};
    uint64_t num_pairs = 0;
    const std::size_t failed = for_each_failing_allocation(
        [&] {
            if (pkider_dn_split(line.data(), line.size(), pairs.data(), pairs.size(), &num_pairs, nullptr) ==
                PKIDER_NO_MEMORY) {
                throw std::bad_alloc();
            }
        },
        [&] { EXPECT_EQ(num_pairs, 0U); });
    EXPECT_GT(failed, 1U);
    EXPECT_EQ(num_pairs, 2U);
}

// The normal form

TEST(CDnNormalize, GivesTextAndDer) {
    const std::string_view line = "cn=a , O=\"b,c\"";
    collector_t text, der;
    pkider_output_t text_out = text.output(), der_out = der.output();
    pkider_dn_fault_t fault = unwritten;
    ASSERT_EQ(pkider_dn_normalize(map, line.data(), line.size(), &text_out, &der_out, &fault), PKIDER_OK);
    EXPECT_EQ(text.text, "CN=a ,O=b\\,c");
    EXPECT_EQ(der.text, encode(line).text);
    EXPECT_EQ(fault.code, 0);
}

TEST(CDnNormalize, ReportsBothSizesAndWritesNothing) {
    const std::string_view line = "CN=a";
    std::string room(100, '?');
    for (const bool has_room_for_text : {true, false}) {
        pkider_output_t text = pkider_output_to_buffer(room.data(), has_room_for_text ? room.size() : 0);
        pkider_output_t der = pkider_output_to_buffer(room.data(), has_room_for_text ? 0 : room.size());
        EXPECT_EQ(pkider_dn_normalize(map, line.data(), line.size(), &text, &der, nullptr), PKIDER_NO_ROOM);
        EXPECT_EQ(text.size, 4U);
        EXPECT_EQ(der.size, 14U);
        EXPECT_EQ(room, std::string(100, '?'));
    }
}

TEST(CDnNormalize, StopsAtTheFirstSink) {
    pkider_output_t text = pkider_output_to_sink([](void*, const uint8_t*, uint64_t) { return 1; }, nullptr);
    collector_t collector;
    pkider_output_t der = collector.output();
    EXPECT_EQ(pkider_dn_normalize(map, "CN=a", 4, &text, &der, nullptr), PKIDER_HOST);
    EXPECT_EQ(collector.text, "");
    EXPECT_EQ(der.size, 0U);
}

TEST(CDnNormalize, ReportsFaultsOfBothKinds) {
    const auto fault_of = [](std::string_view line) {
        pkider_dn_fault_t fault = unwritten;
        pkider_output_t text{}, der{};
        EXPECT_EQ(pkider_dn_normalize(map, line.data(), line.size(), &text, &der, &fault), PKIDER_MALFORMED);
        EXPECT_EQ(text.size, 0U);
        EXPECT_EQ(der.size, 0U);
        return std::pair(fault.code, fault.position);
    };
    EXPECT_EQ(fault_of("CN=a,=b"), std::pair(uint16_t{PKIDER_DN_FAULT_TYPE_SYNTAX}, uint16_t{5}));
    EXPECT_EQ(fault_of("CN=#120161"), std::pair(uint16_t{PKIDER_DN_FAULT_NUMERIC_STRING}, uint16_t{13}));
}

// Utilities

TEST(CDnReverse, MovesRdnsAndReportsFaults) {
    const auto reverse = [](std::string_view line, pkider_dn_fault_t* fault) {
        return collect([&](auto* out) { return pkider_dn_reverse(line.data(), line.size(), out, fault); });
    };
    pkider_dn_fault_t fault = unwritten;
    EXPECT_EQ(reverse("A=1,B=2+C=3", &fault), (result_t{PKIDER_OK, "B=2+C=3,A=1"}));
    EXPECT_EQ(fault.code, 0);
    EXPECT_EQ(reverse("A=1,B=\"", &fault), (result_t{PKIDER_MALFORMED, ""}));
    EXPECT_EQ(fault.code, PKIDER_DN_FAULT_UNBALANCED_QUOTE);
    EXPECT_EQ(fault.position, 6);
}

TEST(CDnContains, Answers) {
    int answer = 77;
    EXPECT_EQ(pkider_dn_contains("A=1,B=2,C=3", 11, "A=1,C=3", 7, &answer), PKIDER_OK);
    EXPECT_EQ(answer, 1);
    EXPECT_EQ(pkider_dn_contains("A=1,B=2,C=3", 11, "C=3,A=1", 7, &answer), PKIDER_OK);
    EXPECT_EQ(answer, 0);

    const std::string line = "CN=a line that is too long to be kept in place";
    const std::size_t failed = for_each_failing_allocation(
        [&] {
            if (pkider_dn_contains(line.data(), line.size(), line.data(), line.size(), &answer) == PKIDER_NO_MEMORY) {
                throw std::bad_alloc();
            }
        },
        [&] { EXPECT_EQ(answer, 0); });
    EXPECT_EQ(failed, 2U);
    EXPECT_EQ(answer, 1);
}

TEST(CDnGetAttribute, GivesPairOrValueOrNothing) {
    const auto get = [](std::string_view line, std::string_view type, pkider_dn_get_attr_t mode,
                        pkider_dn_fault_t* fault) {
        return collect([&](auto* out) {
            return pkider_dn_get_attribute(line.data(), line.size(), type.data(), type.size(), mode, out, fault);
        });
    };
    pkider_dn_fault_t fault = unwritten;
    EXPECT_EQ(get("A=1,B=2", "B", PKIDER_DN_GET_ATTR_VALUE, &fault), (result_t{PKIDER_OK, "2"}));
    EXPECT_EQ(fault.code, 0);
    EXPECT_EQ(get("A=1,B=2", "B", PKIDER_DN_GET_ATTR_PAIR, nullptr), (result_t{PKIDER_OK, "B=2"}));
    EXPECT_EQ(get("A=1,B=2", "b", PKIDER_DN_GET_ATTR_VALUE, &fault), (result_t{PKIDER_NOT_FOUND, ""}));
    EXPECT_EQ(fault.code, 0);
    EXPECT_EQ(get("A=1,B", "A", PKIDER_DN_GET_ATTR_VALUE, &fault), (result_t{PKIDER_MALFORMED, ""}));
    EXPECT_EQ(fault.code, PKIDER_DN_FAULT_TYPE_SYNTAX);
}

TEST(CDnCountryFirst, AnswersOrReportsAFault) {
    int answer = 77;
    pkider_dn_fault_t fault = unwritten;
    EXPECT_EQ(pkider_dn_has_country_first("C=RU,CN=a", 9, &answer, &fault), PKIDER_OK);
    EXPECT_EQ(answer, 1);
    EXPECT_EQ(pkider_dn_has_country_first("CN=a,C=RU", 9, &answer, &fault), PKIDER_OK);
    EXPECT_EQ(answer, 0);
    EXPECT_EQ(fault.code, 0);
    EXPECT_EQ(pkider_dn_has_country_first("C=RU,CN", 7, &answer, &fault), PKIDER_MALFORMED);
    EXPECT_EQ(fault.code, PKIDER_DN_FAULT_TYPE_SYNTAX);
    const std::string line = "CN=a line that is too long to be kept in place";
    const std::size_t failed = for_each_failing_allocation(
        [&] {
            if (pkider_dn_has_country_first(line.data(), line.size(), &answer, nullptr) == PKIDER_NO_MEMORY) {
                throw std::bad_alloc();
            }
        },
        [&] { EXPECT_EQ(answer, 0); });
    EXPECT_GT(failed, 0U);
}
