#include "tools/pkider/formats/der_walker.h"

#include "tests/support/guarded.h"
#include "tests/support/hex.h"
#include "tools/pkider/formats/der_names.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using namespace pkider_test::literals;
using pkider_test::bytes_t;
using pkider_test::for_every_prefix;
using tool::der_node_t;
using tool::der_walk_options_t;
using tool::der_walker_t;

/// "0 SEQUENCE", one level of depth a dot: "2 .INTEGER"
std::vector<std::string> walk(const bytes_t& bytes, const der_walk_options_t& options = {}) {
    der_walker_t walker(bytes, options);
    std::vector<std::string> lines;
    while (const der_node_t* const node = walker.next()) {
        lines.push_back(std::to_string(node->offset) + " " + std::string(node->depth, '.') + tag_name(*node));
        if (node->opened) lines.back() += " opened";
        if (node->too_deep) lines.back() += " too deep";
    }
    if (walker.fault()) lines.push_back(std::to_string(walker.fault()->offset) + " fault: " + walker.fault()->found);
    return lines;
}

using lines_t = std::vector<std::string>;

TEST(DerWalker, VisitsElementsInTheOrderOfTheBytes) {
    EXPECT_EQ(walk("30 08 02 01 05 30 00 31 01 05"_hex),
              (lines_t{"0 SEQUENCE", "2 .INTEGER", "5 .SEQUENCE", "7 .SET", "9 fault: no length octet"}));
    EXPECT_EQ(walk("30 03 02 01 05 05 00"_hex), (lines_t{"0 SEQUENCE", "2 .INTEGER", "5 NULL"}));
    EXPECT_EQ(walk({}), lines_t{});
}

TEST(DerWalker, StepsOutOfSeveralLevelsAtOnce) {
    EXPECT_EQ(walk("30 06 30 04 30 02 30 00 05 00"_hex),
              (lines_t{"0 SEQUENCE", "2 .SEQUENCE", "4 ..SEQUENCE", "6 ...SEQUENCE", "8 NULL"}));
}

TEST(DerWalker, BeginsWhereItIsTold) {
    EXPECT_EQ(walk("30 03 02 01 05"_hex, {.offset = 2}), lines_t{"2 INTEGER"});
    EXPECT_EQ(walk("05 00"_hex, {.offset = 2}), lines_t{});
    EXPECT_EQ(walk("05 00"_hex, {.offset = 3}), lines_t{"3 fault: the end of the data at offset 2"});
}

TEST(DerWalker, StopsAtTheDepthLimitAndSaysSo) {
    const bytes_t nested = "30 06 30 04 30 02 30 00 05 00"_hex;
    EXPECT_EQ(walk(nested, {.max_depth = 2}), (lines_t{"0 SEQUENCE", "2 .SEQUENCE too deep", "8 NULL"}));
    EXPECT_EQ(walk(nested, {.max_depth = 1}), (lines_t{"0 SEQUENCE too deep", "8 NULL"}));
    EXPECT_EQ(walk("30 00"_hex, {.max_depth = 1}), lines_t{"0 SEQUENCE"}) << "nothing is left out here";
}

TEST(DerWalker, WalksAHundredThousandLevels) {
    bytes_t nested;
    for (int i = 0; i < 100'000; ++i) {
        const auto size = static_cast<std::uint32_t>(nested.size());
        const std::uint8_t header[] = {static_cast<std::uint8_t>(size),
                                       static_cast<std::uint8_t>(size >> 8),
                                       static_cast<std::uint8_t>(size >> 16),
                                       static_cast<std::uint8_t>(size >> 24),
                                       0x84,
                                       0x30};
        nested.insert(nested.end(), std::begin(header), std::end(header));
    }
    std::reverse(nested.begin(), nested.end());

    const auto count = [&nested](std::uint32_t max_depth) {
        der_walker_t walker(nested, {.max_depth = max_depth});
        std::size_t num_nodes = 0;
        while (walker.next() != nullptr) ++num_nodes;
        EXPECT_FALSE(walker.fault());
        return num_nodes;
    };
    EXPECT_EQ(count(64), 64u);
    EXPECT_EQ(count(1'000'000), 100'000u);
    EXPECT_FALSE(tool::holds_der(nested)) << "too deep to be anything but an attack";
}

TEST(DerWalker, ReadsHighTagNumbers) {
    const bytes_t bytes = "BF 83 49 02 05 00 5F 81 00 01 41"_hex;
    EXPECT_EQ(walk(bytes), (lines_t{"0 [457]", "4 .NULL", "6 [APPLICATION 128]"}));
    der_walker_t walker(bytes, {});
    EXPECT_EQ(walker.next()->header_len, 4u);
}

struct fault_row_t {
    const char* name;
    bytes_t bytes;
    std::uint64_t offset;
    const char* found;
};

class DerWalkerFault : public testing::TestWithParam<fault_row_t> {};

TEST_P(DerWalkerFault, IsToldWithItsOffset) {
    const fault_row_t& row = GetParam();
    der_walker_t walker(row.bytes, {});
    while (walker.next() != nullptr) {
    }
    ASSERT_TRUE(walker.fault());
    EXPECT_EQ(walker.fault()->offset, row.offset);
    EXPECT_EQ(walker.fault()->found, row.found);
    EXPECT_EQ(walker.next(), nullptr) << "a fault is the end";
}

const fault_row_t bytes_rows[] = {
    {"NoLength", "05 00 30"_hex, 2, "no length octet"},
    {"Indefinite", "30 80 00 00"_hex, 0, "a length of the indefinite form, which DER does not have"},
    {"FiveLengthOctets", "04 85 00 00 00 00 00"_hex, 0, "a length of 5 octets, more than 4"},
    {"LengthOctetsCut", "04 82 01"_hex, 0, "a length that is cut off"},
    {"PastTheData", "30 05 02 01 05"_hex, 0, "an element of 7 bytes where 5 are left in the data"},
    {"PastTheParent", "30 03 02 02 05 05 00"_hex, 2,
     "an element of 4 bytes where 3 are left in the SEQUENCE at offset 0"},
    {"TagNumberCut", "1F 81"_hex, 0, "a tag number that is cut off"},
    {"TagNumberTooLong", "1F 81 81 81 81 81 81 81 81 81 01 00"_hex, 0, "a tag number of more than 63 bits"},
    {"LengthOfAHighTagMissing", "1F 81 01"_hex, 0, "no length octet"},
    {"OneByteLeft", "30 03 05 00 05"_hex, 4, "no length octet"},
};
INSTANTIATE_TEST_SUITE_P(Bytes, DerWalkerFault, testing::ValuesIn(bytes_rows),
                         [](const auto& row) { return row.param.name; });

TEST(DerWalker, ReadsNoByteTooMany) {
    for_every_prefix("30 0E BF 83 49 02 05 00 03 02 00 05 04 02 05 00"_hex,
                     [](const std::uint8_t* data, std::size_t size) {
                         der_walker_t walker({data, size}, {.open_strings = true});
                         std::uint64_t num_nodes = 0;
                         while (walker.next() != nullptr) ++num_nodes;
                         EXPECT_LE(num_nodes, 6u);
                         EXPECT_EQ(walker.fault().has_value(), size != 0);
                     });
}

TEST(DerWalker, OpensStringsThatHoldDerWhenAsked) {
    const bytes_t bytes = "30 0B 04 02 05 00 03 03 00 05 00 04 00"_hex;
    EXPECT_EQ(walk(bytes), (lines_t{"0 SEQUENCE", "2 .OCTET STRING", "6 .BIT STRING", "11 .OCTET STRING"}));
    EXPECT_EQ(walk(bytes, {.open_strings = true}), (lines_t{"0 SEQUENCE", "2 .OCTET STRING opened", "4 ..NULL",
                                                            "6 .BIT STRING opened", "9 ..NULL", "11 .OCTET STRING"}));
}

TEST(DerWalker, OpensStringsInsideStrings) {
    EXPECT_EQ(walk("04 06 04 04 30 02 05 00"_hex, {.open_strings = true}),
              (lines_t{"0 OCTET STRING opened", "2 .OCTET STRING opened", "4 ..SEQUENCE", "6 ...NULL"}));
    EXPECT_EQ(walk("04 04 04 02 05 01"_hex, {.open_strings = true}),
              (lines_t{"0 OCTET STRING opened", "2 .OCTET STRING"}));
}

TEST(DerWalker, LeavesStringsAtTheDepthLimitClosed) {
    EXPECT_EQ(walk("04 02 05 00"_hex, {.max_depth = 1, .open_strings = true}), lines_t{"0 OCTET STRING"});
}

struct string_row_t {
    const char* name;
    bytes_t string;
    bool holds;
};

class DerInString : public testing::TestWithParam<string_row_t> {};

TEST_P(DerInString, IsTakenOnlyWhenItIsPlausibleFromEndToEnd) {
    tool::der_header_t header;
    ASSERT_TRUE(tool::read_der_header(GetParam().string, header));
    EXPECT_EQ(!tool::der_in_string(header).empty(), GetParam().holds);
}

const string_row_t strings_rows[] = {
    {"Sequence", "04 05 30 03 02 01 05"_hex, true},
    {"TwoElements", "04 04 05 00 05 00"_hex, true},
    {"ContextTag", "04 03 80 01 41"_hex, true},
    {"BitString", "03 03 00 30 00"_hex, true},
    {"HighTag", "04 04 9F 81 00 00"_hex, true},
    {"Empty", "04 00"_hex, false},
    {"EmptyBitString", "03 00"_hex, false},
    {"BitStringOfNothing", "03 01 00"_hex, false},
    {"UnusedBits", "03 03 01 30 00"_hex, false},
    {"ByteLeftOver", "04 03 05 00 05"_hex, false},
    {"ContentsPastTheEnd", "04 02 05 01"_hex, false},
    {"FaultInside", "04 04 30 02 02 01"_hex, false},
    {"NullWithContents", "04 03 05 01 00"_hex, false},
    {"EmptyInteger", "04 02 02 00"_hex, false},
    {"EmptyOid", "04 02 06 00"_hex, false},
    {"LongBoolean", "04 04 01 02 00 00"_hex, false},
    {"EndOfContents", "04 02 00 00"_hex, false},
    {"PrimitiveSequence", "04 02 10 00"_hex, false},
    {"ConstructedInteger", "04 02 22 00"_hex, false},
    {"NineUnusedBits", "04 03 03 01 09"_hex, false},
    {"NotAString", "0C 02 05 00"_hex, false},
};
INSTANTIATE_TEST_SUITE_P(Strings, DerInString, testing::ValuesIn(strings_rows),
                         [](const auto& row) { return row.param.name; });

struct tag_row_t {
    const char* name;
    bytes_t element;
    const char* tag;
};

class DerTagName : public testing::TestWithParam<tag_row_t> {};

TEST_P(DerTagName, IsTheOneOfTheStandard) {
    tool::der_header_t header;
    ASSERT_TRUE(tool::read_der_header(GetParam().element, header));
    EXPECT_EQ(tool::tag_name(header), GetParam().tag);
}

const tag_row_t tags_rows[] = {
    {"EndOfContents", "00 00"_hex, "[UNIVERSAL 0]"},
    {"Boolean", "01 01 00"_hex, "BOOLEAN"},
    {"Oid", "06 00"_hex, "OBJECT IDENTIFIER"},
    {"Utf8", "0C 00"_hex, "UTF8String"},
    {"Reserved", "0F 00"_hex, "[UNIVERSAL 15]"},
    {"Sequence", "30 00"_hex, "SEQUENCE"},
    {"PrimitiveSet", "11 00"_hex, "SET (primitive)"},
    {"ConstructedOctets", "24 00"_hex, "OCTET STRING (constructed)"},
    {"Bmp", "1E 00"_hex, "BMPString"},
    {"HighUniversal", "1F 22 00"_hex, "[UNIVERSAL 34]"},
    {"Application", "43 00"_hex, "[APPLICATION 3]"},
    {"Context", "A0 00"_hex, "[0]"},
    {"Private", "C1 00"_hex, "[PRIVATE 1]"},
};
INSTANTIATE_TEST_SUITE_P(Tags, DerTagName, testing::ValuesIn(tags_rows),
                         [](const auto& row) { return row.param.name; });

TEST(DerTypeName, IsReadInASentence) {
    EXPECT_EQ(tool::type_of(asn_tag_t::SEQUENCE), "a SEQUENCE");
    EXPECT_EQ(tool::type_of(asn_tag_t::SET), "a SET");
    EXPECT_EQ(tool::type_of(tool::integer_tag), "an INTEGER");
    EXPECT_EQ(tool::type_of(tool::oid_tag), "an OBJECT IDENTIFIER");
    EXPECT_EQ(tool::type_of(tool::octet_string_tag), "an OCTET STRING");
    EXPECT_EQ(tool::type_of(tool::utc_time_tag), "a UTCTime");
    EXPECT_EQ(tool::type_of(asn_tag_t::CONTEXT_0), "[0]");
    EXPECT_EQ(tool::type_of(0x80), "[0], primitive");
}

} // namespace
