#include "tools/pkider/io/locked_memory.h"

#include <windows.h>

#include <algorithm>

namespace tool {

locked_memory_t take_locked_memory(std::size_t max_size) {
    constexpr std::size_t usual_quota = 64 * 1024; // a process may lock little more unless it asks for it
    const std::size_t size = std::min(max_size, usual_quota);
    void* const memory = VirtualAlloc(nullptr, size, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
    if (memory == nullptr) return {};
    if (VirtualLock(memory, size) == 0) {
        VirtualFree(memory, 0, MEM_RELEASE);
        return {};
    }
    return {static_cast<unsigned char*>(memory), size};
}

} // namespace tool
