#include "tests/support/guarded.h"

#include "tests/support/der_builder.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace pkider_test {
namespace {

// Some pages with access between two without.
class guard_pages_t {
  public:
    explicit guard_pages_t(std::size_t size) {
        const std::size_t page = page_size();
        m_inner_size = std::max<std::size_t>(1, (size + page - 1) / page) * page;
        m_total_size = m_inner_size + 2 * page;
        m_base = map(m_total_size);
        m_inner = m_base + page;
        protect(m_base, page);
        protect(m_inner + m_inner_size, page);
    }
    ~guard_pages_t() { unmap(m_base, m_total_size); }
    guard_pages_t(const guard_pages_t&) = delete;
    guard_pages_t& operator=(const guard_pages_t&) = delete;

    uint8_t* begin() const { return m_inner; }
    uint8_t* end() const { return m_inner + m_inner_size; }

  private:
#ifdef _WIN32
    static std::size_t page_size() {
        SYSTEM_INFO info;
        GetSystemInfo(&info);
        return info.dwPageSize;
    }
    static uint8_t* map(std::size_t size) {
        void* const base = VirtualAlloc(nullptr, size, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE);
        if (base == nullptr) std::abort();
        return static_cast<uint8_t*>(base);
    }
    static void protect(uint8_t* at, std::size_t size) {
        DWORD old = 0;
        if (!VirtualProtect(at, size, PAGE_NOACCESS, &old)) std::abort();
    }
    static void unmap(uint8_t* base, std::size_t) {
        VirtualFree(base, 0, MEM_RELEASE);
    }
#else
    static std::size_t page_size() {
        return static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    }
    static uint8_t* map(std::size_t size) {
        void* const base = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (base == MAP_FAILED) std::abort();
        return static_cast<uint8_t*>(base);
    }
    static void protect(uint8_t* at, std::size_t size) {
        if (mprotect(at, size, PROT_NONE) != 0) std::abort();
    }
    static void unmap(uint8_t* base, std::size_t size) {
        munmap(base, size);
    }
#endif

    std::size_t m_inner_size = 0;
    std::size_t m_total_size = 0;
    uint8_t* m_base = nullptr;
    uint8_t* m_inner = nullptr;
};

void copy(std::span<const uint8_t> bytes, uint8_t* to) {
    if (!bytes.empty()) std::memcpy(to, bytes.data(), bytes.size());
}

struct header_t {
    std::size_t size = 0;
    std::size_t content_size = 0;
};

// The samples that junk is put into are small and well formed; anything else is a slip in the test.
header_t read_header(std::span<const uint8_t> bytes) {
    if (bytes.size() < 2) std::abort();
    if (bytes[1] < 0x80) return {2, bytes[1]};
    const std::size_t num_octets = bytes[1] & 0x7F;
    header_t header{2 + num_octets, 0};
    if (bytes.size() < header.size) std::abort();
    for (std::size_t i = 0; i < num_octets; ++i) header.content_size = header.content_size << 8 | bytes[2 + i];
    return header;
}

// Copies the elements in `bytes`; the constructed one for which `countdown` reaches 0 gets the junk.
bytes_t with_junk(std::span<const uint8_t> bytes, std::span<const uint8_t> junk, int& countdown) {
    bytes_t out;
    while (!bytes.empty()) {
        const header_t header = read_header(bytes);
        const std::span<const uint8_t> contents = bytes.subspan(header.size, header.content_size);
        const bool constructed = (bytes[0] & 0x20) != 0;
        bytes_t changed(contents.begin(), contents.end());
        if (constructed) {
            const bool here = countdown-- == 0;
            changed = with_junk(contents, junk, countdown);
            if (here) changed.insert(changed.end(), junk.begin(), junk.end());
        }
        const bytes_t element = der(bytes[0], changed);
        out.insert(out.end(), element.begin(), element.end());
        bytes = bytes.subspan(header.size + header.content_size);
    }
    return out;
}

} // namespace

void for_guarded(std::span<const uint8_t> bytes, const bytes_visitor_t& visit) {
    const std::unique_ptr<uint8_t[]> exact(new uint8_t[bytes.size()]);
    copy(bytes, exact.get());
    visit(exact.get(), bytes.size());

    const guard_pages_t pages(bytes.size());
    uint8_t* const at_end = pages.end() - bytes.size();
    copy(bytes, at_end);
    visit(at_end, bytes.size());

    copy(bytes, pages.begin());
    visit(pages.begin(), bytes.size());
}

void for_guarded_line(std::string_view line, const std::function<void(char* line)>& visit) {
    bytes_t bytes = to_bytes(line);
    bytes.push_back(0);
    for_guarded(bytes, [&visit](const uint8_t* data, std::size_t) {
        visit(const_cast<char*>(reinterpret_cast<const char*>(data))); // the copy is ours
    });
}

void for_every_prefix(std::span<const uint8_t> bytes, const bytes_visitor_t& visit) {
    for (std::size_t size = 0; size < bytes.size(); ++size) for_guarded(bytes.first(size), visit);
}

void for_junk_in_each_constructed(std::span<const uint8_t> bytes, std::span<const uint8_t> junk,
                                  const bytes_visitor_t& visit) {
    for (int wanted = 0;; ++wanted) {
        int countdown = wanted;
        const bytes_t changed = with_junk(bytes, junk, countdown);
        if (countdown >= 0) return; // fewer constructed elements than that
        for_guarded(changed, visit);
    }
}

} // namespace pkider_test
