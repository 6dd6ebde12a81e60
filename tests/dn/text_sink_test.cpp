#include "dn/text_sink.h"
#include "dn/value_escape.h"

#include "tests/dn/char_sets.h"
#include "tests/support/alloc_failure.h"
#include "tests/support/hex.h"

#include <gtest/gtest.h>

#include <new>
#include <string>

using namespace pkider;
using namespace pkider_test;

namespace {

std::string escaped(const bytes_t& bytes) {
    text_sink_t sink;
    dn_value_escape(bytes.data(), bytes.size(), sink);
    return std::string(sink.text());
}

std::string in_hex(const bytes_t& bytes) {
    text_sink_t sink;
    dn_append_hex(bytes.data(), bytes.size(), sink);
    return std::string(sink.text());
}

TEST(TextSink, KeepsPiecesInOrder) {
    text_sink_t sink;
    EXPECT_EQ(sink.text(), "");
    sink.put('1');
    sink.put("23", 2);
    sink.put(nullptr, 0);
    EXPECT_EQ(sink.text(), "123");
    EXPECT_EQ(sink.size(), 3u);
    sink.room(2)[0] = '4'; // not all of the room is taken
    sink.take(1);
    sink.put('5');
    EXPECT_EQ(sink.size(), 5u);
    EXPECT_EQ(sink.text(), "12345");
    sink.put('6');
    EXPECT_EQ(sink.text(), "123456");
}

TEST(TextSink, DropsWhatIsCutOff) {
    text_sink_t sink;
    sink.put(std::string(2'000, 'a').data(), 2'000);
    sink.cut(0);
    EXPECT_EQ(sink.text(), "");
    sink.put('b');
    EXPECT_EQ(sink.text(), "b");
}

TEST(TextSink, StaysAsItWasWhenAllocationFails) {
    const std::size_t num_failures = for_each_failing_allocation(
        [] {
            text_sink_t sink;
            std::size_t size = 0;
            try {
                for (; size < 2'000; ++size) sink.put('a');
            } catch (const std::bad_alloc&) {
                EXPECT_EQ(sink.text().size(), size);
                EXPECT_EQ(sink.text().find_first_not_of('a'), std::string_view::npos);
                throw;
            }
        },
        [] {});
    EXPECT_EQ(num_failures, 2u); // at 512 and 1,024 characters
}

TEST(TextSink, PiecesOfEverySizeMeetTheEndOfTheBlock) {
    for (std::size_t first = text_sink_t::block_size - 3; first <= text_sink_t::block_size; ++first) {
        for (std::size_t second : {0u, 1u, 2u, 3u, 4u, 511u, 512u, 513u, 2'000u}) {
            text_sink_t sink;
            sink.put(std::string(first, 'a').data(), first);
            sink.put(std::string(second, 'b').data(), second);
            sink.put('c');
            EXPECT_EQ(sink.size(), first + second + 1);
            EXPECT_EQ(sink.text(), std::string(first, 'a') + std::string(second, 'b') + "c");
        }
    }
}

TEST(TextSink, TakesTheHeapOnlyForWhatOutgrowsTheBlock) {
    const auto fill = [](std::size_t size, std::size_t expected_size) {
        return count_allocations([=] {
            text_sink_t sink(expected_size);
            for (std::size_t i = 0; i < size; ++i) sink.put('a');
            EXPECT_EQ(sink.text().size(), size);
        });
    };
    EXPECT_EQ(fill(512, 512), 0u);
    EXPECT_EQ(fill(5'000, 5'000), 1u);
}

TEST(DnValueEscape, EveryByteOnItsOwn) {
    for (int c = 0; c < 256; ++c) {
        const auto character = static_cast<char>(c);
        EXPECT_EQ(escaped({static_cast<uint8_t>(c)}), (is_special_char(c) ? "\\" : "") + std::string(1, character))
            << c;
    }
}

TEST(DnValueEscape, EveryPairOfBytes) {
    for (int first = 0; first < 256; ++first) {
        for (int second = 0; second < 256; ++second) {
            const bytes_t pair{static_cast<uint8_t>(first), static_cast<uint8_t>(second)};
            ASSERT_EQ(escaped(pair), escaped({pair[0]}) + escaped({pair[1]}));
        }
    }
}

TEST(DnValueEscape, CopiesBlanksAtBothEnds) {
    EXPECT_EQ(escaped(to_bytes("  a  ")), "  a  ");
}

TEST(DnAppendHex, EveryByteIsTwoUpperCaseDigits) {
    for (int c = 0; c < 256; ++c) {
        const bytes_t byte{static_cast<uint8_t>(c)};
        EXPECT_EQ(in_hex(byte), to_hex(byte));
    }
    EXPECT_EQ(in_hex("00 9A BC DE F1"_hex), "009ABCDEF1");
    EXPECT_EQ(in_hex({}), "");
}

} // namespace
