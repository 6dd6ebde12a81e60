#include "der/element_steps.h"

#include "tests/support/guarded.h"
#include "tests/support/hex.h"

#include <gtest/gtest.h>

using namespace pkider;
using namespace pkider_test;

namespace {

constexpr const char* without_octet_string[] = {"", "04", "05 00", "04 02 AA", "04 80 00 00"};

// Both widths of the stored length.
template <typename Length>
class AsnElementSteps : public testing::Test {
  protected:
    const uint8_t m_somewhere = 0;
    Length m_len = 77;
    const uint8_t* m_span = &m_somewhere;
};

using lengths_t = testing::Types<uint32_t, uint64_t>;
TYPED_TEST_SUITE(AsnElementSteps, lengths_t);

TYPED_TEST(AsnElementSteps, StoreContentsOrTheWholeElement) {
    for_guarded("04 02 AA BB"_hex, [this](const uint8_t* der, std::size_t size) {
        const asn_element_t element{der, der + 2, size - 2};
        asn_store_contents(element, this->m_len, this->m_span);
        EXPECT_EQ(this->m_len, 2u);
        EXPECT_EQ(this->m_span, der + 2);
        asn_store_element(element, this->m_len, this->m_span);
        EXPECT_EQ(this->m_len, 4u);
        EXPECT_EQ(this->m_span, der);
    });
}

TYPED_TEST(AsnElementSteps, NextStoresContentsAndSteps) {
    for (const auto next : {asn_next_contents<TypeParam>, asn_next_contents_or_null<TypeParam>}) {
        for_guarded("04 02 AA BB 05 00"_hex, [&](const uint8_t* der, std::size_t size) {
            asn_element_t parent = asn_contents(der, size);
            EXPECT_TRUE(next(asn_tag_t::OCTET_STRING, parent, this->m_len, this->m_span));
            EXPECT_EQ(this->m_len, 2u);
            EXPECT_EQ(this->m_span, der + 2);
            EXPECT_EQ(parent.content, der + 4);
            EXPECT_EQ(parent.length, 2u);
        });
    }
}

TYPED_TEST(AsnElementSteps, NextLeavesEverythingWhenRefused) {
    for (const char* const input : without_octet_string) {
        for_guarded(from_hex(input), [&](const uint8_t* der, std::size_t size) {
            asn_element_t parent = asn_contents(der, size);
            EXPECT_FALSE(asn_next_contents(asn_tag_t::OCTET_STRING, parent, this->m_len, this->m_span)) << input;
            EXPECT_EQ(this->m_len, 77u) << input;
            EXPECT_EQ(this->m_span, &this->m_somewhere) << input;
            EXPECT_EQ(parent.content, der) << input;
            EXPECT_EQ(parent.length, size) << input;
        });
    }
}

TYPED_TEST(AsnElementSteps, NextOrNullStoresNullWhenRefused) {
    for (const char* const input : without_octet_string) {
        for_guarded(from_hex(input), [&](const uint8_t* der, std::size_t size) {
            asn_element_t parent = asn_contents(der, size);
            this->m_len = 77;
            this->m_span = &this->m_somewhere;
            EXPECT_FALSE(asn_next_contents_or_null(asn_tag_t::OCTET_STRING, parent, this->m_len, this->m_span))
                << input;
            EXPECT_EQ(this->m_len, 0u) << input;
            EXPECT_EQ(this->m_span, nullptr) << input;
            EXPECT_EQ(parent.content, der) << input;
            EXPECT_EQ(parent.length, size) << input;
        });
    }
}

TEST(AsnIsNext, LooksAtOneByteOfWhatIsLeft) {
    for_guarded("02"_hex, [](const uint8_t* data, std::size_t size) {
        EXPECT_TRUE(asn_is_next(asn_tag_t::INTEGER, asn_contents(data, size)));
        EXPECT_FALSE(asn_is_next(asn_tag_t::SEQUENCE, asn_contents(data, size)));
        EXPECT_FALSE(asn_is_next(asn_tag_t::INTEGER, asn_contents(data + 1, 0)));
    });
    EXPECT_FALSE(asn_is_next(asn_tag_t::INTEGER, asn_contents(nullptr, 0)));
}

TEST(AsnFromPlace, GoesOnInTheInput) {
    const bytes_t input(10, 0x5A);
    const asn_element_t rest = asn_from_place(asn_contents(input.data(), input.size()), input.data() + 7);
    EXPECT_EQ(rest.content, input.data() + 7);
    EXPECT_EQ(rest.length, 3u);
}

// As far as a caller with addresses of 32 bits can get. The places are only compared, never read.
TEST(AsnFromPlace, GoesOnFartherThanASignedDifferenceReaches) {
    const auto* const begin = reinterpret_cast<const uint8_t*>(uintptr_t{0x1000});
    const auto* const place = reinterpret_cast<const uint8_t*>(uintptr_t{0xC0001000});
    EXPECT_EQ(asn_from_place(asn_contents(begin, 0xC0000010), place).length, 0x10u);
}

} // namespace
