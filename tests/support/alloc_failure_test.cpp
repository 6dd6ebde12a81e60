// The tests that make allocations fail lean on this: both forms of operator new are counted, fail and are found leaked.
#include "tests/support/alloc_failure.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <new>
#include <vector>

using namespace pkider_test;

namespace {

/// Memory by a plain call: that of a new-expression may be optimised away.
struct taken_t {
    explicit taken_t(std::size_t size) : block(::operator new(size)) {}
    taken_t(const taken_t&) = delete;
    taken_t& operator=(const taken_t&) = delete;
    ~taken_t() { ::operator delete(block); }
    void* block;
};

TEST(AllocFailure, FailsEachAllocationAloneAndWithAllAfterIt) {
    std::vector<int> reached;
    int stage = 0;
    const auto take_two = [&] {
        stage = 0;
        const taken_t first(1);
        stage = 1;
        const taken_t second(2);
        stage = 2;
    };
    EXPECT_EQ(for_each_failing_allocation(take_two, [&] { reached.push_back(stage); }), 2u);
    EXPECT_EQ(reached, (std::vector<int>{0, 0, 1, 1}));
    EXPECT_EQ(stage, 2);
}

TEST(AllocFailure, LeavesNoMemoryForASecondTry) {
    std::vector<bool> second_try_failed;
    bool failed_again = false;
    const auto try_twice = [&] {
        failed_again = false;
        try {
            const taken_t first(1);
        } catch (const std::bad_alloc&) {
            try {
                const taken_t second(1);
            } catch (const std::bad_alloc&) {
                failed_again = true;
            }
            throw;
        }
    };
    for_each_failing_allocation(try_twice, [&] { second_try_failed.push_back(failed_again); });
    EXPECT_EQ(second_try_failed, (std::vector<bool>{false, true}));
}

TEST(AllocFailure, SeesAlignedMemory) {
    constexpr std::align_val_t alignment{64};
    const auto take = [] { ::operator delete(::operator new(100, alignment), alignment); };
    EXPECT_EQ(count_allocations(take), 1u);
#ifndef _WIN32 // the size of an aligned block is not known there
    EXPECT_GE(peak_allocated_bytes(take), 100u);
#endif
    EXPECT_EQ(for_each_failing_allocation(take, [] {}), 1u);
}

} // namespace
