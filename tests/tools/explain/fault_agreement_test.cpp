// The program explains faults that the library only numbers, or only answers with false. What it says agrees with the
// library for any line and any bytes.
#include "tools/pkider/cli/faults.h"
#include "tools/pkider/explain/dn_fault.h"
#include "tools/pkider/explain/name_fault.h"
#include "tools/pkider/formats/encodings.h"
#include "tools/pkider/formats/oid_text.h"

#include <pkider/c/pkider.h>
#include <pkider/dn.h>

#include <gtest/gtest.h>

#include <random>

namespace pkider_test {
namespace {

// The library's position for a place in the line: quoted and hex values count from after their first character,
// DN_FAULT_BACKSLASH_AT_END from after the backslash.
std::size_t library_position(const std::string& line, const tool::line_fault_t& fault) {
    switch (fault.code) {
    case DN_FAULT_HEX_DIGIT:
        return fault.offset - 1;
    case DN_FAULT_BACKSLASH_AT_END: // a quoted value begins with the quote after the last "=" that is outside quotes;
                                    // only its sum is known
        return line[fault.offset] == '\\' && fault.position == fault.offset ? fault.offset : fault.offset + 1;
    default:
        return fault.offset;
    }
}

TEST(LineFault, StandsWhereTheLibraryFoundIt) {
    constexpr const char* pieces[] = {"CN", "O",  "2.5.4.3", "X",     "=", "=",  "=",   ",",   "+",
                                      " ",  "\"", "\"",      "\\",    "a", "bc", "#",   "4",   "1",
                                      ";",  "g",  "0C0161",  "#0C05", "Ж", "\t", "CN=", "O=a,"};
    std::mt19937 random(7);
    std::uniform_int_distribution<std::size_t> pick(0, std::size(pieces) - 1);
    std::size_t num_faults[DN_FAULT_UNESCAPED_SPECIAL + 1] = {};
    for (int round = 0; round < 200000; ++round) {
        std::string line;
        for (int i = 0; i < 8; ++i) line += pieces[pick(random)];
        std::string name;
        const asn_dn_result_t result = printable_dn_normalize_r(line, name, nullptr, OID_MAP_HANDLE_DEFAULT);
        if (!asn_dn_fault_is_of_line(result.code)) continue;
        ++num_faults[result.code];
        const tool::line_fault_t fault = tool::explain_line_fault(line, result, OID_MAP_HANDLE_DEFAULT);
        ASSERT_LE(fault.offset, line.size()) << line;
        ASSERT_EQ(library_position(line, fault), result.position) << "code " << result.code << " of " << line;
        ASSERT_FALSE(fault.words.empty()) << line;
        ASSERT_FALSE(fault.advice.empty()) << line;
        switch (result.code) { // the character that is meant
        case DN_FAULT_BACKSLASH_AT_END:
            ASSERT_EQ(line[fault.offset], '\\') << line;
            break;
        case DN_FAULT_ESCAPE:
            ASSERT_EQ(line[fault.offset - 1], '\\') << line;
            break;
        case DN_FAULT_UNESCAPED_SPECIAL:
            ASSERT_NE(std::string_view("\"#+,;<=>").find(line[fault.offset]), std::string_view::npos) << line;
            break;
        default:
            break;
        }
    }
    for (unsigned code = DN_FAULT_TYPE_SYNTAX; code <= DN_FAULT_UNESCAPED_SPECIAL; ++code)
        EXPECT_GT(num_faults[code], 5u) << "code " << code;
}

/// The fault that the C interface reports; the C++ interface only says that there is one.
pkider_dn_fault_t library_fault(const std::string& der) {
    const auto ignore = [](void*, const uint8_t*, uint64_t) { return 0; };
    pkider_output_t output = pkider_output_to_sink(ignore, nullptr);
    pkider_dn_fault_t fault = {};
    pkider_dn_print(pkider_oid_map_default(), reinterpret_cast<const uint8_t*>(der.data()), der.size(),
                    PKIDER_DN_ORDER_AS_ENCODED, &output, &fault);
    return fault;
}

// Names with values of every kind, spoilt in a byte or cut.
TEST(NameFault, IsFoundExactlyWhereTheLibraryFails) {
    const std::string names[] = {"300E310C300A06035504031303616263",
                                 "301C310D300B06035504031E0400410416310B3009060355040A140241C2",
                                 "301A310B3009060355040A12023132310B300906035504061C0400000041",
                                 "30173115300806035504030C0161300906032A03040402000130001F"};
    std::mt19937 random(11);
    std::size_t num_faults[DN_FAULT_NUMERIC_STRING + 1] = {};
    std::size_t num_successes = 0;
    for (const std::string& hex : names) {
        const std::string good(tool::from_hex(hex)->text());
        for (int round = 0; round < 8000; ++round) {
            std::string der = good;
            for (int i = 0; i < 2; ++i)
                der[random() % der.size()] = static_cast<char>(random() % 4 == 0 ? random() : random() % 0x33);
            der.resize(der.size() - (random() % 8 == 0 ? random() % der.size() : 0));
            std::string text;
            const bool printed =
                asn_dn_to_printable(reinterpret_cast<const uint8_t*>(der.data()), static_cast<uint32_t>(der.size()),
                                    text, DN_ORDER_AS_ENCODED, OID_MAP_HANDLE_DEFAULT);
            try {
                ASSERT_EQ(tool::print_name(tool::as_bytes(der), OID_MAP_HANDLE_DEFAULT), text);
                ASSERT_TRUE(printed) << tool::to_hex(der);
                ++num_successes;
            } catch (const tool::name_fault_t& fault) {
                ASSERT_FALSE(printed) << tool::to_hex(der);
                const pkider_dn_fault_t expected = library_fault(der);
                ASSERT_EQ(fault.code, expected.code) << tool::to_hex(der);
                ASSERT_EQ(fault.offset, expected.position) << tool::to_hex(der);
                ++num_faults[fault.code];
            }
        }
    }
    EXPECT_GT(num_successes, 500u);
    for (unsigned code = DN_FAULT_NOT_A_NAME; code <= DN_FAULT_NUMERIC_STRING; ++code)
        EXPECT_GT(num_faults[code], 5u) << "code " << code;
}

TEST(NameFault, CountsFromTheStartOfTheWholeInput) {
    try {
        tool::print_name(tool::from_hex("30023000")->view(), OID_MAP_HANDLE_DEFAULT, false, 100);
        ADD_FAILURE() << "no fault";
    } catch (const tool::name_fault_t& fault) {
        EXPECT_EQ(fault.offset, 102u);
        EXPECT_EQ(fault.code, DN_FAULT_NOT_A_SET);
    }
}

// Where the library's text for contents is the true one, it reads back as the same contents.
TEST(OidText, ExactTextsConvertBack) {
    std::mt19937 random(3);
    for (int round = 0; round < 20000; ++round) {
        std::string contents;
        for (std::size_t size = 1 + random() % 6; size != 0; --size) {
            contents += static_cast<char>(random() % 3 == 0 ? random() : random() % 0x80);
        }
        const auto dotted = tool::oid_dotted(contents);
        const auto exact = tool::exact_oid_dotted(contents);
        ASSERT_EQ(dotted.has_value(), exact.has_value()) << tool::to_hex(contents);
        if (!exact) continue;
        const auto again = tool::oid_contents(*exact);
        if (*dotted == *exact) {
            ASSERT_TRUE(again) << tool::to_hex(contents);
            ASSERT_LE(again->size(), contents.size());
        }
    }
}

TEST(OidText, KnowsArcsOfAnySize) {
    EXPECT_EQ(tool::exact_oid_dotted(tool::from_hex("2A90808080 00")->text()), "1.2.4294967296");
    EXPECT_EQ(tool::exact_oid_dotted(tool::from_hex("69 83FFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFF7F")->text()),
              "2.25.340282366920938463463374607431768211455"); // 2^128 - 1
    EXPECT_EQ(tool::exact_oid_dotted(tool::from_hex("8837")->text()), "2.999");
    EXPECT_EQ(tool::exact_oid_dotted(tool::from_hex("27")->text()), "0.39");
    EXPECT_EQ(tool::exact_oid_dotted(tool::from_hex("28")->text()), "1.0");
    EXPECT_EQ(tool::exact_oid_dotted(tool::from_hex("4F")->text()), "1.39");
    EXPECT_EQ(tool::exact_oid_dotted(tool::from_hex("50")->text()), "2.0");
    EXPECT_EQ(tool::exact_oid_dotted(tool::from_hex("8F FFFFFF7F")->text()), "2.4294967215");
    EXPECT_EQ(tool::exact_oid_dotted(""), std::nullopt);
    EXPECT_EQ(tool::exact_oid_dotted("\x2A\x86"), std::nullopt);
    EXPECT_EQ(tool::exact_oid_dotted(std::string(64, '\xFF') + '\x01'), std::nullopt);
}

TEST(OidText, SaysWhyATextIsRefused) {
    constexpr std::pair<const char*, const char*> rows[] = {
        {"", "there is no OID"},
        {"1.2x", "an OID is digits and dots only"},
        {".1", "the first arc is missing"},
        {"3.1", "the first arc is above 2"},
        {"0010.1", "the first arc is above 2"},
        {"02", "a single arc is no OID"},
        {"1.", "an arc is missing after the last dot"},
        {"1..2", "an arc is missing between two dots"},
        {"1.2.4294967296", "the arc 4294967296 is above 4294967295"},
        {"1.00042949672960", "the arc 00042949672960 is above 4294967295"},
    };
    for (const auto& [text, why] : rows) {
        EXPECT_EQ(tool::oid_contents(text), std::nullopt) << text;
        EXPECT_EQ(tool::why_no_oid(text), why) << text;
    }
}

} // namespace
} // namespace pkider_test
