#include "der/element_span.h"

#include "tests/support/guarded.h"
#include "tests/support/hex.h"

#include <gtest/gtest.h>

using namespace pkider;
using namespace pkider_test;

namespace {

class AsnElementSpan : public testing::Test {
  protected:
    const uint8_t m_somewhere = 0;
    uint32_t m_len = 77;
    const uint8_t* m_data = &m_somewhere;
};

TEST_F(AsnElementSpan, StoresContentsOrTheWholeElement) {
    for_guarded("04 02 AA BB"_hex, [&](const uint8_t* der, std::size_t size) {
        const asn_element_t element{der, der + 2, size - 2};
        asn_store_contents(element, m_len, m_data);
        EXPECT_EQ(m_len, 2u);
        EXPECT_EQ(m_data, der + 2);
        asn_store_element(element, m_len, m_data);
        EXPECT_EQ(m_len, 4u);
        EXPECT_EQ(m_data, der);
    });
}

TEST_F(AsnElementSpan, ReadsContentsAndSteps) {
    for_guarded("04 02 AA BB 05 00"_hex, [&](const uint8_t* der, std::size_t size) {
        asn_element_t parent{nullptr, der, size};
        EXPECT_TRUE(asn_read_contents(asn_tag_t::OCTET_STRING, parent, m_len, m_data));
        EXPECT_EQ(m_len, 2u);
        EXPECT_EQ(m_data, der + 2);
        EXPECT_EQ(parent.content, der + 4);
        EXPECT_EQ(parent.length, 2u);
    });
}

constexpr const char* without_octet_string[] = {"", "04", "05 00", "04 02 AA", "04 80 00 00"};

TEST_F(AsnElementSpan, KeepsItsValueWhereTheElementIsNot) {
    for (const char* const input : without_octet_string) {
        for_guarded(from_hex(input), [&](const uint8_t* der, std::size_t size) {
            asn_element_t parent{nullptr, der, size};
            EXPECT_FALSE(asn_read_contents(asn_tag_t::OCTET_STRING, parent, m_len, m_data)) << input;
            EXPECT_EQ(m_len, 77u) << input;
            EXPECT_EQ(m_data, &m_somewhere) << input;
            EXPECT_EQ(parent.content, der) << input;
            EXPECT_EQ(parent.length, size) << input;
        });
    }
}

TEST_F(AsnElementSpan, BecomesNullWhereTheElementIsNotAndThatIsAskedFor) {
    for (const char* const input : without_octet_string) {
        for_guarded(from_hex(input), [&](const uint8_t* der, std::size_t size) {
            asn_element_t parent{nullptr, der, size};
            m_len = 77;
            m_data = &m_somewhere;
            EXPECT_FALSE(asn_read_contents_or_null(asn_tag_t::OCTET_STRING, parent, m_len, m_data)) << input;
            EXPECT_EQ(m_len, 0u) << input;
            EXPECT_EQ(m_data, nullptr) << input;
            EXPECT_EQ(parent.content, der) << input;
            EXPECT_EQ(parent.length, size) << input;
        });
    }
}

TEST_F(AsnElementSpan, GoesOnInTheInputFromAPlace) {
    const bytes_t input(10, 0x5A);
    const asn_element_t rest = asn_from_place({nullptr, input.data(), input.size()}, input.data() + 7);
    EXPECT_EQ(rest.content, input.data() + 7);
    EXPECT_EQ(rest.length, 3u);
}

} // namespace
