#include "der/asn_writer.h"

#include "tests/support/alloc_failure.h"
#include "tests/support/hex.h"

#include <gtest/gtest.h>

#include <type_traits>

using namespace pkider;
using namespace pkider_test;

namespace {

static_assert(!std::is_copy_constructible_v<asn_writer_t<16>> && !std::is_move_constructible_v<asn_writer_t<16>>);
static_assert(!std::is_copy_assignable_v<asn_writer_t<16>> && !std::is_move_assignable_v<asn_writer_t<16>>);

template <std::size_t InlineSize>
bytes_t encoded(const asn_writer_t<InlineSize>& writer) {
    return {writer.data(), writer.data() + writer.size()};
}

template <std::size_t InlineSize>
bool is_inline(const asn_writer_t<InlineSize>& writer) {
    return writer.buffer == writer.inline_storage;
}

const bytes_t letters(300, 'a');

TEST(AsnWriter, FreshIsAnEmptyElement) {
    const asn_writer_t<16> writer(0x30);
    EXPECT_EQ(encoded(writer), "30 00"_hex);
    EXPECT_EQ(writer.tag, 0x30);
    EXPECT_EQ(writer.encoded_size, 2u);
    EXPECT_EQ(writer.content_size, 0u);
    EXPECT_EQ(writer.capacity, 16u);
    EXPECT_TRUE(is_inline(writer));
    EXPECT_EQ(writer.buffer[4], 0x30); // the header ends at byte 5 of the storage
    EXPECT_EQ(writer.buffer[5], 0x00);
}

TEST(AsnWriter, HeaderStepsToTheLongFormAt128) {
    asn_writer_t<16> writer(0x04);
    writer.append(letters.data(), 127);
    EXPECT_EQ(writer.size(), 129u);
    EXPECT_EQ(writer.data()[1], 0x7F);

    writer.append(letters.data(), 1);
    EXPECT_EQ(writer.encoded_size, 131u);
    EXPECT_EQ(writer.data()[0], 0x04);
    EXPECT_EQ(writer.data()[1], 0x81);
    EXPECT_EQ(writer.data()[2], 0x80);
    EXPECT_EQ(writer.data()[3], 'a');
}

TEST(AsnWriter, HeaderOf256BytesHasTwoLengthOctets) {
    asn_writer_t<16> writer(0x30);
    writer.append(letters.data(), 256);
    const bytes_t der = encoded(writer);
    EXPECT_EQ(bytes_t(der.begin(), der.begin() + 4), "30 82 01 00"_hex);
    EXPECT_EQ(der.size(), 260u);
}

TEST(AsnWriter, HeaderOfFourLengthOctets) {
    constexpr uint64_t size = 0x01010101;
    asn_writer_t<16> writer(0x30);
    writer.append(nullptr, size);
    EXPECT_EQ(writer.encoded_size, size + 6);
    EXPECT_EQ(bytes_t(writer.data(), writer.data() + 6), "30 84 01 01 01 01"_hex);
}

TEST(AsnWriter, RequiredLength0x10000IsWrittenAs8100) {
    asn_writer_t<16> writer(0x30);
    writer.append(nullptr, 0x10000);
    EXPECT_EQ(writer.encoded_size, 0x10003u);
    EXPECT_EQ(bytes_t(writer.data(), writer.data() + 4), "30 81 00 00"_hex);
}

TEST(AsnWriter, StaysInlineWhileTheHeaderAreaFits) {
    asn_writer_t<16> writer(0x04);
    writer.append(letters.data(), 10);
    EXPECT_EQ(writer.capacity, 16u);
    EXPECT_TRUE(is_inline(writer));
}

TEST(AsnWriter, GrowsToTheNeedAnd22Bytes) {
    asn_writer_t<16> writer(0x04);
    writer.append(letters.data(), 11);
    EXPECT_EQ(writer.capacity, 33u);
    EXPECT_FALSE(is_inline(writer));

    writer.append(letters.data(), 16); // 11 + 16 + 6 = 33: still fits
    EXPECT_EQ(writer.capacity, 33u);
    writer.append(letters.data(), 1);
    EXPECT_EQ(writer.capacity, 50u);
    EXPECT_EQ(encoded(writer).size(), 30u);
}

TEST(AsnWriter, EveryGrowthKeepsTheContents) {
    asn_writer_t<16> writer(0x04);
    bytes_t expected;
    for (int i = 0; i < 1000; ++i) {
        const auto byte = static_cast<uint8_t>(i * 7);
        writer.append(&byte, 1);
        expected.push_back(byte);
        ASSERT_EQ(bytes_t(writer.data() + writer.size() - expected.size(), writer.data() + writer.size()), expected);
    }
}

TEST(AsnWriter, NullElementOfFourInlineBytesGrowsWithFinish) {
    asn_writer_t<4> writer(0x05);
    EXPECT_EQ(encoded(writer), "05 00"_hex);
    EXPECT_EQ(writer.capacity, 4u);
    writer.finish();
    EXPECT_EQ(encoded(writer), "05 00"_hex);
    EXPECT_EQ(writer.capacity, 22u);
    EXPECT_FALSE(is_inline(writer));
}

TEST(AsnWriter, FinishKeepsTheContents) {
    asn_writer_t<32> writer(0x04);
    writer.append(letters.data(), 3);
    writer.finish();
    EXPECT_EQ(encoded(writer), "04 03 61 61 61"_hex);
    EXPECT_EQ(writer.capacity, 32u);
}

TEST(AsnWriter, NullBytesAreCountedAndWrittenAsZeros) {
    asn_writer_t<16> writer(0x30);
    writer.append(nullptr, 3);
    EXPECT_EQ(encoded(writer), "30 03 00 00 00"_hex);
}

TEST(AsnWriter, NullBytesAreZerosAlsoBehindAGrowth) {
    asn_writer_t<16> writer(0x30);
    writer.append(letters.data(), 20);
    writer.append(nullptr, 3);
    const bytes_t der = encoded(writer);
    EXPECT_EQ(bytes_t(der.end() - 4, der.end()), "61 00 00 00"_hex);
}

TEST(AsnWriter, NothingIsAppendedByACountOfZero) {
    asn_writer_t<16> writer(0x30);
    writer.append(nullptr, 0);
    writer.append(letters.data(), 0);
    EXPECT_EQ(encoded(writer), "30 00"_hex);
}

TEST(AsnWriter, NestsChildren) {
    asn_writer_t<16> oid(0x06);
    const bytes_t contents = "55 04 03"_hex;
    oid.append(contents.data(), contents.size());
    asn_writer_t<4> null(0x05);
    null.finish();
    asn_writer_t<32> sequence(0x30);
    sequence.append(oid);
    sequence.append(null);
    EXPECT_EQ(encoded(sequence), "30 07 06 03 55 04 03 05 00"_hex);
}

TEST(AsnWriter, TooLongContentsAreRefusedBeforeAnythingChanges) {
    asn_writer_t<16> writer(0x30);
    writer.append(letters.data(), 2);
    EXPECT_THROW(writer.append(nullptr, UINT64_MAX), std::length_error);
    EXPECT_THROW(writer.append(nullptr, 0xFFFFFFFF), std::length_error);
    EXPECT_THROW(writer.append(nullptr, 0xFFFFFFFE), std::length_error);
    EXPECT_EQ(encoded(writer), "30 02 61 61"_hex);
    EXPECT_EQ(writer.capacity, 16u);
}

TEST(AsnWriter, ContentsThatMemoryCannotHoldAreRefusedBeforeAnythingChanges) {
    if (fits_memory(0xFFFFFFFF)) GTEST_SKIP() << "takes 4 GiB where memory has them";
    for (uint64_t count = 0xFFFFFFFF; count > 0xFFFFFFFF - 100; --count) {
        asn_writer_t<16> writer(0x30);
        EXPECT_THROW(writer.append(nullptr, count), std::length_error) << count;
        EXPECT_EQ(encoded(writer), "30 00"_hex);
    }
}

TEST(AsnWriter, AFailedAllocationLeavesTheWriterAsItWas) {
    const auto append = [] {
        asn_writer_t<16> writer(0x30);
        writer.append(letters.data(), 5);
        try {
            writer.append(letters.data(), 100);
        } catch (const std::bad_alloc&) {
            EXPECT_EQ(encoded(writer), "30 05 61 61 61 61 61"_hex);
            EXPECT_EQ(writer.capacity, 16u);
            throw;
        }
    };
    EXPECT_EQ(for_each_failing_allocation(append, [] {}), 1u);
}

} // namespace
