#include "dn/front_sink.h"

#include "tests/support/alloc_failure.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <new>
#include <string>

using namespace pkider;
using namespace pkider_test;

namespace {

void put(front_sink_t& sink, std::string_view text) {
    std::copy(text.begin(), text.end(), sink.room(text.size()));
    sink.take(text.size());
}

TEST(FrontSink, PutsPiecesInFront) {
    front_sink_t sink(0);
    EXPECT_EQ(sink.text(), "");
    put(sink, "56");
    put(sink, "");
    put(sink, "4");
    sink.room(100); // none of it is taken
    put(sink, "123");
    EXPECT_EQ(sink.text(), "123456");
}

TEST(FrontSink, PiecesOfEverySizeMeetTheBeginOfTheBlock) {
    for (std::size_t first = front_sink_t::block_size - 3; first <= front_sink_t::block_size; ++first) {
        for (std::size_t second : {0u, 1u, 2u, 3u, 4u, 511u, 512u, 513u, 2'000u}) {
            front_sink_t sink(0);
            put(sink, std::string(first, 'a'));
            put(sink, std::string(second, 'b'));
            put(sink, "c");
            EXPECT_EQ(sink.text(), "c" + std::string(second, 'b') + std::string(first, 'a'));
        }
    }
}

TEST(FrontSink, TakesTheHeapOnlyForWhatOutgrowsTheBlock) {
    const auto fill = [](std::size_t size, std::size_t expected_size) {
        return count_allocations([=] {
            front_sink_t sink(expected_size);
            for (std::size_t i = 0; i < size; ++i) put(sink, "a");
            EXPECT_EQ(sink.text().size(), size);
        });
    };
    EXPECT_EQ(fill(512, 512), 0u);
    EXPECT_EQ(fill(5'000, 5'000), 1u);
}

TEST(FrontSink, StaysAsItWasWhenAllocationFails) {
    const std::size_t num_failures = for_each_failing_allocation(
        [] {
            front_sink_t sink(0);
            std::size_t size = 0;
            try {
                for (; size < 2'000; ++size) put(sink, "a");
            } catch (const std::bad_alloc&) {
                EXPECT_EQ(sink.text().size(), size);
                EXPECT_EQ(sink.text().find_first_not_of('a'), std::string_view::npos);
                throw;
            }
        },
        [] {});
    EXPECT_EQ(num_failures, 2u); // at 512 and 1,024 characters
}

} // namespace
