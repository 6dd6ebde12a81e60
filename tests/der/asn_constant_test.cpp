#include "der/asn_constant.h"

#include "tests/support/guarded.h"
#include "tests/support/hex.h"

#include <gtest/gtest.h>

using namespace pkider;
using namespace pkider_test;

namespace {

template <std::size_t Size>
std::string hex_of(const std::array<uint8_t, Size>& bytes) {
    return to_hex(bytes);
}

TEST(AsnConstant, LengthsAreCounted) {
    constexpr auto oid = asn_oid<"1.2.643">;
    EXPECT_EQ(hex_of(oid), "06 03 2A 85 03");
    EXPECT_EQ(hex_of(asn_empty_oid), "06 00");
    EXPECT_EQ(hex_of(asn_version(0)), "02 01 00");
    EXPECT_EQ(hex_of(asn_version(3)), "02 01 03");
    EXPECT_EQ(hex_of(asn_constant_join(oid, asn_null)), "06 03 2A 85 03 05 00");
    EXPECT_EQ(hex_of(asn_constant_sequence(oid, asn_constant_sequence(asn_null))), "30 09 06 03 2A 85 03 30 02 05 00");
    EXPECT_EQ(hex_of(asn_constant_sequence()), "30 00");
    EXPECT_EQ(hex_of(asn_constant_element(asn_tag_t::CONTEXT_0, asn_null)), "A0 02 05 00");
}

TEST(AsnConstant, IdentifiersAreComparedByContents) {
    constexpr auto oid = asn_oid<"1.2.643">;
    const auto is_oid = [&](const char* contents) {
        bool result = false;
        for_guarded(from_hex(contents),
                    [&](const uint8_t* data, std::size_t size) { result = asn_is_oid(asn_contents(data, size), oid); });
        return result;
    };
    EXPECT_TRUE(is_oid("2A 85 03"));
    EXPECT_FALSE(is_oid("2A 85 04"));
    EXPECT_FALSE(is_oid("2B 85 03"));
    EXPECT_FALSE(is_oid("2A 85"));
    EXPECT_FALSE(is_oid("2A 85 03 01"));
    EXPECT_FALSE(is_oid(""));
}

TEST(AsnConstant, IsSteppedOverWhereItIsNext) {
    constexpr auto oid = asn_oid<"1.2.643">;
    const auto bytes_left = [&](const char* contents) {
        uint64_t left = 0;
        for_guarded(from_hex(contents), [&](const uint8_t* data, std::size_t size) {
            asn_element_t parent = asn_contents(data, size);
            const bool skipped = asn_skip_constant(parent, oid);
            EXPECT_EQ(parent.content, data + (skipped ? oid.size() : 0)) << contents;
            left = parent.length;
        });
        return left;
    };
    EXPECT_EQ(bytes_left("06 03 2A 85 03"), 0u);
    EXPECT_EQ(bytes_left("06 03 2A 85 03 05 00"), 2u);
    EXPECT_EQ(bytes_left("06 03 2A 85 04"), 5u);
    EXPECT_EQ(bytes_left("05 03 2A 85 03"), 5u);
    EXPECT_EQ(bytes_left("06 03 2A 85"), 4u);
    EXPECT_EQ(bytes_left(""), 0u);
}

} // namespace
