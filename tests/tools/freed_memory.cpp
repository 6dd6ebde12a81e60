#include "tests/tools/freed_memory.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

thread_local std::string_view watched;
thread_local std::size_t num_found = 0;

void* allocate(std::size_t size) {
    void* const block = std::malloc(std::max<std::size_t>(size, 1));
    if (block == nullptr) throw std::bad_alloc();
    if (!watched.empty()) std::memset(block, 0, malloc_usable_size(block)); // what earlier owners left is not counted
    return block;
}

void release(void* block) noexcept {
    if (block != nullptr && !watched.empty()) {
        const std::string_view contents(static_cast<const char*>(block), malloc_usable_size(block));
        if (contents.find(watched) != std::string_view::npos) ++num_found;
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

std::size_t count_freed_with(std::string_view bytes, const std::function<void()>& call) {
    num_found = 0;
    watched = bytes;
    call();
    watched = {};
    return num_found;
}

} // namespace pkider_test
