#include "tests/support/alloc_failure.h"

#include <gtest/gtest.h>

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <new>
#include <utility>

namespace {

// The allocator knows the sizes. A header of our own in front of each block would not do: on Windows a block of a DLL's
// operator new may be released here, and one from here in the DLL.
std::size_t size_of_block(void* block) {
#ifdef _WIN32
    return _msize(block);
#else
    return malloc_usable_size(block);
#endif
}

struct counters_t {
    bool counting = false;
    bool failing = false;
    std::size_t fail_at = 0;
    std::size_t num_allocations = 0;
    std::ptrdiff_t live_blocks = 0;
    std::ptrdiff_t live_bytes = 0;
    std::ptrdiff_t peak_bytes = 0;
    const std::function<void()>* look = nullptr;
};
thread_local counters_t counters;

void* allocate(std::size_t size) {
    if (const auto* const look = std::exchange(counters.look, nullptr)) {
        (*look)();
        counters.look = look;
    }
    if (counters.counting) {
        ++counters.num_allocations;
        if (counters.failing && counters.num_allocations == counters.fail_at) throw std::bad_alloc();
    }
    void* const block = std::malloc(std::max<std::size_t>(size, 1));
    if (block == nullptr) throw std::bad_alloc();
    if (counters.counting) {
        ++counters.live_blocks;
        counters.live_bytes += static_cast<std::ptrdiff_t>(size_of_block(block));
        counters.peak_bytes = std::max(counters.peak_bytes, counters.live_bytes);
    }
    return block;
}

void release(void* block) noexcept {
    if (block == nullptr) return;
    if (counters.counting) {
        --counters.live_blocks;
        counters.live_bytes -= static_cast<std::ptrdiff_t>(size_of_block(block));
    }
    std::free(block);
}

} // namespace

void* operator new(std::size_t size) {
    return allocate(size);
}
void* operator new[](std::size_t size) {
    return allocate(size);
}
void operator delete(void* block) noexcept {
    release(block);
}
void operator delete[](void* block) noexcept {
    release(block);
}
void operator delete(void* block, std::size_t) noexcept {
    release(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    release(block);
}

namespace pkider_test {

std::size_t for_each_failing_allocation(const std::function<void()>& call, const std::function<void()>& after_failure) {
    for (std::size_t n = 1;; ++n) {
        bool failed = false;
        counters = {};
        counters.failing = true;
        counters.fail_at = n;
        counters.counting = true;
        try {
            call();
        } catch (const std::bad_alloc&) {
            failed = true;
        }
        counters.counting = false;
        const counters_t seen = counters;
        if (!failed) {
            EXPECT_LT(seen.num_allocations, n) << "a failed allocation was swallowed";
            return n - 1;
        }
        EXPECT_EQ(seen.live_blocks, 0) << "leaked when allocation " << n << " failed";
        after_failure();
    }
}

std::size_t count_allocations(const std::function<void()>& call) {
    counters = {};
    counters.counting = true;
    call();
    counters.counting = false;
    return counters.num_allocations;
}

std::size_t peak_allocated_bytes(const std::function<void()>& call) {
    counters = {};
    counters.counting = true;
    call();
    counters.counting = false;
    return static_cast<std::size_t>(counters.peak_bytes);
}

void at_each_allocation(const std::function<void()>& call, const std::function<void()>& look) {
    counters = {};
    counters.look = &look;
    call();
    counters.look = nullptr;
}

} // namespace pkider_test
