#include "tools/pkider/io/locked_memory.h"

#include <sys/mman.h>
#include <sys/resource.h>

#include <algorithm>

namespace tool {
namespace {

/// As much as may be locked without taking more than half of the limit.
std::size_t lockable_size(std::size_t max_size) {
    rlimit limit = {};
    if (getrlimit(RLIMIT_MEMLOCK, &limit) != 0) return 0;
    return static_cast<std::size_t>(std::min<rlim_t>(limit.rlim_cur / 2, max_size));
}

} // namespace

locked_memory_t take_locked_memory(std::size_t max_size) {
    const std::size_t size = lockable_size(max_size);
    if (size == 0) return {};
    void* const memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) return {};
    if (mlock(memory, size) != 0) {
        munmap(memory, size);
        return {};
    }
    madvise(memory, size, MADV_DONTDUMP);
    return {static_cast<unsigned char*>(memory), size};
}

} // namespace tool
