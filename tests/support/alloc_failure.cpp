#include "tests/support/alloc_failure.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

// Each block carries its size in front, so that a release can be counted too.
constexpr std::size_t header_size = alignof(std::max_align_t);

struct counters_t {
    bool counting = false;
    bool failing = false;
    std::size_t fail_at = 0;
    std::size_t num_allocations = 0;
    std::ptrdiff_t live_blocks = 0;
    std::ptrdiff_t live_bytes = 0;
    std::ptrdiff_t peak_bytes = 0;
};
thread_local counters_t counters;

void* allocate(std::size_t size) {
    if (counters.counting) {
        ++counters.num_allocations;
        if (counters.failing && counters.num_allocations == counters.fail_at) throw std::bad_alloc();
    }
    void* const block = std::malloc(size + header_size);
    if (block == nullptr) throw std::bad_alloc();
    *static_cast<std::size_t*>(block) = size;
    if (counters.counting) {
        ++counters.live_blocks;
        counters.live_bytes += static_cast<std::ptrdiff_t>(size);
        counters.peak_bytes = std::max(counters.peak_bytes, counters.live_bytes);
    }
    return static_cast<char*>(block) + header_size;
}

void release(void* at) noexcept {
    if (at == nullptr) return;
    void* const block = static_cast<char*>(at) - header_size;
    if (counters.counting) {
        --counters.live_blocks;
        counters.live_bytes -= static_cast<std::ptrdiff_t>(*static_cast<std::size_t*>(block));
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
void operator delete(void* at) noexcept {
    release(at);
}
void operator delete[](void* at) noexcept {
    release(at);
}
void operator delete(void* at, std::size_t) noexcept {
    release(at);
}
void operator delete[](void* at, std::size_t) noexcept {
    release(at);
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

} // namespace pkider_test
