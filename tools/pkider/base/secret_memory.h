// Memory for secrets: locked, so that it is never written to a swap device, left out of core dumps, and wiped when it
// is given back.
//
// There is one small pool of it, taken at the first use and locked with half of what RLIMIT_MEMLOCK allows at most:
// the other half is left for libgcrypt. What does not fit comes from the heap, unlocked, and so does everything where
// nothing may be locked: a large file cannot be locked anyway, and a program that fails for that reason protects
// nobody. That memory is wiped, too.
#pragma once

#include <cstddef>
#include <cstring>

namespace tool {

/// Overwrites `size` bytes, in a way that the optimiser keeps although nobody reads them again.
inline void wipe(void* data, std::size_t size) noexcept {
    if (size == 0) return;
    std::memset(data, 0, size);
    asm volatile("" : : "r"(data) : "memory"); // the memory counts as read here, so the stores above must happen
}

/// Defined in io/secret_memory.cpp, with the calls of the operating system. @throws std::bad_alloc
void* allocate_secret(std::size_t size);

/// Wipes the memory. `size` is that of the allocation.
void release_secret(void* memory, std::size_t size) noexcept;

} // namespace tool
