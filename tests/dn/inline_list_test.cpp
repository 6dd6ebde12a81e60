#include "dn/inline_list.h"

#include "tests/support/alloc_failure.h"

#include <gtest/gtest.h>

#include <new>

using namespace pkider;
using namespace pkider_test;

namespace {

struct record_t {
    int number = -1;
    bool odd = false;
};
using list_t = inline_list_t<record_t, 4>;

void fill(list_t& list, int size) {
    for (int i = 0; i < size; ++i) list.append() = {i, i % 2 != 0};
}

void expect_filled(const list_t& list, int size) {
    ASSERT_EQ(list.size(), static_cast<std::size_t>(size));
    EXPECT_EQ(list.end() - list.begin(), size);
    for (int i = 0; i < size; ++i) {
        EXPECT_EQ(list[static_cast<std::size_t>(i)].number, i);
        EXPECT_EQ(list[static_cast<std::size_t>(i)].odd, i % 2 != 0);
    }
}

TEST(InlineList, KeepsItsRecordsAcrossEveryGrowth) {
    for (int size = 0; size <= 40; ++size) {
        list_t list;
        fill(list, size);
        expect_filled(list, size);
    }
}

TEST(InlineList, TakesTheHeapOnlyBehindItsInlineRecords) {
    EXPECT_EQ(count_allocations([] {
                  list_t list;
                  fill(list, 4);
              }),
              0u);
    EXPECT_EQ(count_allocations([] {
                  list_t list;
                  fill(list, 5);
              }),
              1u);
}

TEST(InlineList, StaysAsItWasWhenAllocationFails) {
    const std::size_t num_failures = for_each_failing_allocation(
        [] {
            list_t list;
            int size = 0;
            try {
                for (; size < 20; ++size) list.append() = {size, size % 2 != 0};
            } catch (const std::bad_alloc&) {
                expect_filled(list, size);
                throw;
            }
        },
        [] {});
    EXPECT_EQ(num_failures, 3u); // at 4, 8 and 16 records
}

} // namespace
