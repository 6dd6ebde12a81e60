// The cost of loading the library, compared with an empty one, and the allocations during the load.
//
// Prints one JSON object. The median of many dlopen/dlclose pairs; the C++ runtime is in the process already.
#include <dlfcn.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

constexpr int num_loads = 301;
std::size_t num_allocations = 0;

double microseconds_to_load(const char* path) {
    std::vector<double> all;
    for (int i = 0; i < num_loads; ++i) {
        const auto begin = std::chrono::steady_clock::now();
        void* const library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
        const auto end = std::chrono::steady_clock::now();
        if (library == nullptr) {
            std::fprintf(stderr, "%s\n", dlerror());
            std::exit(1);
        }
        dlclose(library);
        all.push_back(std::chrono::duration<double, std::micro>(end - begin).count());
    }
    std::nth_element(all.begin(), all.begin() + num_loads / 2, all.end());
    return all[num_loads / 2];
}

} // namespace

// The loader itself takes malloc; operator new is what a library's own constructors would use.
void* operator new(std::size_t size) {
    ++num_allocations;
    void* const block = std::malloc(size);
    if (block == nullptr) std::abort();
    return block;
}
void operator delete(void* at) noexcept {
    std::free(at);
}
void operator delete(void* at, std::size_t) noexcept {
    std::free(at);
}

int main() {
    const double empty = microseconds_to_load(PKIDER_EMPTY_LIBRARY);
    const double library = microseconds_to_load(PKIDER_LIBRARY);

    num_allocations = 0;
    dlopen(PKIDER_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    const std::size_t allocations = num_allocations;

    std::printf("{\"library_us\": %.2f, \"empty_us\": %.2f, \"allocations\": %zu}\n", library, empty, allocations);
    return 0;
}
