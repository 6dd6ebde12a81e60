#include "der/element_steps.h"

#include "tests/support/guarded.h"
#include "tests/support/hex.h"

#include <gtest/gtest.h>

using namespace pkider;
using namespace pkider_test;

namespace {

TEST(AsnNextSpan, StoresContentsAndSteps) {
    for_guarded("04 02 AA BB 05 00"_hex, [](const uint8_t* data, std::size_t size) {
        asn_element_t parent{nullptr, data, size};
        uint64_t len = 77;
        const uint8_t* span = nullptr;
        EXPECT_TRUE(asn_next_span(asn_tag_t::OCTET_STRING, parent, len, span));
        EXPECT_EQ(len, 2u);
        EXPECT_EQ(span, data + 2);
        EXPECT_EQ(parent.content, data + 4);
        EXPECT_EQ(parent.length, 2u);
    });
}

TEST(AsnNextSpan, LeavesEverythingWhenRefused) {
    for (const char* const der : {"", "04", "05 00", "04 02 AA", "04 80 00 00"}) {
        for_guarded(from_hex(der), [&](const uint8_t* data, std::size_t size) {
            asn_element_t parent{nullptr, data, size};
            uint64_t len = 77;
            const uint8_t somewhere = 0;
            const uint8_t* span = &somewhere;
            EXPECT_FALSE(asn_next_span(asn_tag_t::OCTET_STRING, parent, len, span)) << der;
            EXPECT_EQ(len, 77u);
            EXPECT_EQ(span, &somewhere);
            EXPECT_EQ(parent.content, data);
            EXPECT_EQ(parent.length, size);
        });
    }
}

TEST(AsnNextIs, LooksAtOneByteOfWhatIsLeft) {
    for_guarded("02"_hex, [](const uint8_t* data, std::size_t size) {
        EXPECT_TRUE(asn_next_is(asn_tag_t::INTEGER, {nullptr, data, size}));
        EXPECT_FALSE(asn_next_is(asn_tag_t::SEQUENCE, {nullptr, data, size}));
        EXPECT_FALSE(asn_next_is(asn_tag_t::INTEGER, {nullptr, data + 1, 0}));
    });
    EXPECT_FALSE(asn_next_is(asn_tag_t::INTEGER, {nullptr, nullptr, 0}));
}

} // namespace
