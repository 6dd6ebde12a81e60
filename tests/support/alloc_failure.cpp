#include "tests/support/alloc_failure.h"

#include <gtest/gtest.h>

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <new>
#include <optional>
#include <utility>

namespace {

// The allocator knows the sizes. A header of our own before each block would not do: on Windows a block of a DLL's
// operator new may be released here, and one from here in the DLL.
struct plain_memory_t {
    static void* take(std::size_t size) { return std::malloc(size); }
    static void give_back(void* block) { std::free(block); }
#ifdef _WIN32
    static std::size_t size_of(void* block) {
        return _msize(block);
    }
#else
    static std::size_t size_of(void* block) {
        return malloc_usable_size(block);
    }
#endif
};

struct aligned_memory_t {
    std::size_t alignment;
#ifdef _WIN32
    void* take(std::size_t size) const {
        return _aligned_malloc(size, alignment);
    }
    void give_back(void* block) const {
        _aligned_free(block);
    }
    static std::size_t size_of(void*) {
        return 0; // msvcrt does not report it
    }
#else
    void* take(std::size_t size) const {
        void* block = nullptr;
        return posix_memalign(&block, std::max(alignment, sizeof(void*)), size) == 0 ? block : nullptr;
    }
    void give_back(void* block) const {
        std::free(block);
    }
    std::size_t size_of(void* block) const {
        return malloc_usable_size(block);
    }
#endif
};

struct counters_t {
    bool counting = false;
    std::size_t first_failure = 0; // number of an allocation, from 1; 0: none fails
    std::size_t last_failure = 0;
    std::size_t num_allocations = 0;
    std::ptrdiff_t live_blocks = 0;
    std::ptrdiff_t live_bytes = 0;
    std::ptrdiff_t peak_bytes = 0;
    const std::function<void()>* look = nullptr;
};
thread_local counters_t counters;

template <typename Memory>
void* allocate(const Memory& memory, std::size_t size) {
    if (const auto* const look = std::exchange(counters.look, nullptr)) {
        (*look)();
        counters.look = look;
    }
    if (counters.counting) {
        const std::size_t number = ++counters.num_allocations;
        if (number >= counters.first_failure && number <= counters.last_failure) throw std::bad_alloc();
    }
    void* const block = memory.take(std::max<std::size_t>(size, 1));
    if (block == nullptr) throw std::bad_alloc();
    if (counters.counting) {
        ++counters.live_blocks;
        counters.live_bytes += static_cast<std::ptrdiff_t>(memory.size_of(block));
        counters.peak_bytes = std::max(counters.peak_bytes, counters.live_bytes);
    }
    return block;
}

template <typename Memory>
void release(const Memory& memory, void* block) noexcept {
    if (block == nullptr) return;
    if (counters.counting) {
        --counters.live_blocks;
        counters.live_bytes -= static_cast<std::ptrdiff_t>(memory.size_of(block));
    }
    memory.give_back(block);
}

constexpr plain_memory_t plain_memory;

constexpr aligned_memory_t aligned_memory(std::align_val_t alignment) {
    return {static_cast<std::size_t>(alignment)};
}

/// Counts the allocations of `call`, of which those from the first to the last number fail.
///
/// @return  What was counted; nothing when std::bad_alloc did not arrive here.
std::optional<counters_t> counters_after_failure(const std::function<void()>& call, std::size_t first,
                                                 std::size_t last) {
    counters = {.counting = true, .first_failure = first, .last_failure = last};
    bool failed = false;
    try {
        call();
    } catch (const std::bad_alloc&) {
        failed = true;
    }
    counters.counting = false;
    if (failed) return counters;
    EXPECT_LT(counters.num_allocations, first) << "a failed allocation was swallowed";
    return std::nullopt;
}

} // namespace

void* operator new(std::size_t size) {
    return allocate(plain_memory, size);
}
void* operator new[](std::size_t size) {
    return allocate(plain_memory, size);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
    return allocate(aligned_memory(alignment), size);
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
    return allocate(aligned_memory(alignment), size);
}
void operator delete(void* block) noexcept {
    release(plain_memory, block);
}
void operator delete[](void* block) noexcept {
    release(plain_memory, block);
}
void operator delete(void* block, std::size_t) noexcept {
    release(plain_memory, block);
}
void operator delete[](void* block, std::size_t) noexcept {
    release(plain_memory, block);
}
void operator delete(void* block, std::align_val_t alignment) noexcept {
    release(aligned_memory(alignment), block);
}
void operator delete[](void* block, std::align_val_t alignment) noexcept {
    release(aligned_memory(alignment), block);
}
void operator delete(void* block, std::size_t, std::align_val_t alignment) noexcept {
    release(aligned_memory(alignment), block);
}
void operator delete[](void* block, std::size_t, std::align_val_t alignment) noexcept {
    release(aligned_memory(alignment), block);
}

namespace pkider_test {

std::size_t for_each_failing_allocation(const std::function<void()>& call, const std::function<void()>& after_failure) {
    for (std::size_t n = 1;; ++n) {
        for (const std::size_t last : {n, std::numeric_limits<std::size_t>::max()}) {
            const std::optional<counters_t> seen = counters_after_failure(call, n, last);
            if (!seen) return n - 1;
            EXPECT_EQ(seen->live_blocks, 0)
                << "leaked when allocation " << n << " failed" << (last == n ? "" : " and all after it");
            after_failure();
        }
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
