#include "tools/pkider/base/secret_memory.h"

#include "tools/pkider/io/locked_memory.h"

#include <algorithm>
#include <bitset>
#include <functional>
#include <new>

namespace tool {
namespace {

constexpr std::size_t unit_size = 256;
constexpr std::size_t max_units = 1024;
constexpr std::size_t max_pool_size = unit_size * max_units;

/// Memory that is handed out in units; first fit, because only a handful of secrets lives at a time.
class pool_t {
  public:
    pool_t() {
        const locked_memory_t memory = take_locked_memory(max_pool_size);
        m_memory = memory.begin;
        m_num_units = m_num_free = memory.size / unit_size;
    }

    /// Null when there is no room.
    void* allocate(std::size_t size) {
        const std::size_t wanted = units_of(size);
        if (wanted > m_num_free) return nullptr;
        std::size_t run = 0;
        for (std::size_t unit = 0; unit < m_num_units; ++unit) {
            run = m_used[unit] ? 0 : run + 1;
            if (run < wanted) continue;
            const std::size_t first = unit + 1 - wanted;
            mark(first, wanted, true);
            m_num_free -= wanted;
            return m_memory + first * unit_size;
        }
        return nullptr;
    }

    bool owns(const void* memory) const {
        const std::less<const void*> before; // a total order, also of pointers into different objects
        return m_num_units != 0 && !before(memory, m_memory) && before(memory, m_memory + m_num_units * unit_size);
    }

    void release(void* memory, std::size_t size) {
        const auto offset = static_cast<std::size_t>(static_cast<unsigned char*>(memory) - m_memory);
        mark(offset / unit_size, units_of(size), false);
        m_num_free += units_of(size);
    }

  private:
    static std::size_t units_of(std::size_t size) { return size / unit_size + (size % unit_size != 0 ? 1 : 0); }

    void mark(std::size_t first, std::size_t count, bool used) {
        for (std::size_t unit = first; unit < first + count; ++unit) m_used[unit] = used;
    }

    unsigned char* m_memory = nullptr;
    std::size_t m_num_units = 0, m_num_free = 0;
    std::bitset<max_units> m_used;
};

/// Never destroyed: secrets may live as long as the program.
pool_t& pool() {
    static pool_t& the_pool = *new pool_t;
    return the_pool;
}

} // namespace

void* allocate_secret(std::size_t size) {
    if (size == 0) size = 1;
    void* const memory = pool().allocate(size);
    return memory != nullptr ? memory : ::operator new(size);
}

void release_secret(void* memory, std::size_t size) noexcept {
    if (memory == nullptr) return;
    wipe(memory, size);
    if (pool().owns(memory)) {
        pool().release(memory, std::max<std::size_t>(size, 1));
    } else {
        ::operator delete(memory);
    }
}

} // namespace tool
