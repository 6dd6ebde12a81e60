#include "tools/pkider/io/file_mapping.h"

#include "tools/pkider/base/failure.h"
#include "tools/pkider/io/descriptor.h"

#include <sys/mman.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <utility>

namespace tool {
namespace {

std::uintptr_t page_size() {
    static const auto size = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    return size;
}

volatile std::sig_atomic_t has_zeros = 0; // some mapping has

} // namespace

class posix_mapping_t final : public file_mapping_t {
  public:
    posix_mapping_t(int descriptor, bytes_t bytes, std::string name);
    ~posix_mapping_t() override;

  private:
    friend class mapped_files_t; // knows all that live, and those that were cut short

    void* address() const { return const_cast<std::uint8_t*>(bytes().data()); }
    bool is_shorter() const { return regular_size(m_descriptor) < static_cast<std::int64_t>(bytes().size()); }

    int m_descriptor;
    std::string m_name;
    volatile std::sig_atomic_t m_has_zeros = 0; // set by the signal handler
    bool m_is_reported = false;
    posix_mapping_t* m_next = nullptr;
};

// ---- The mappings that live --------------------------------------------------------------------------------------

class mapped_files_t {
  public:
    static void add(posix_mapping_t& mapping) {
        catch_missing_pages();
        mapping.m_next = first;
        first = &mapping;
    }

    static void remove(posix_mapping_t& mapping) {
        posix_mapping_t** place = &first;
        while (*place != &mapping) place = &(*place)->m_next;
        *place = mapping.m_next;
        if (!mapping.m_is_reported && is_cut(mapping, view_check_t::thorough)) cut_file = std::move(mapping.m_name);
    }

    static void check(view_check_t check) {
        if (check == view_check_t::quick && has_zeros == 0 && cut_file.empty()) return;
        for (posix_mapping_t* mapping = first; mapping != nullptr; mapping = mapping->m_next) {
            if (mapping->m_is_reported || !is_cut(*mapping, check)) continue;
            mapping->m_is_reported = true;
            throw file_trouble_t(mapping->m_name, became_shorter);
        }
        if (!cut_file.empty()) throw file_trouble_t(std::exchange(cut_file, {}), became_shorter);
    }

  private:
    static bool is_cut(const posix_mapping_t& mapping, view_check_t check) {
        return mapping.m_has_zeros != 0 || (check == view_check_t::thorough && mapping.is_shorter());
    }

    static void catch_missing_pages() {
        static const bool installed = [] {
            page_size(); // sysconf need not be safe in the handler
            struct sigaction action = {};
            action.sa_sigaction = on_missing_page;
            action.sa_flags = SA_SIGINFO;
            sigemptyset(&action.sa_mask);
            return sigaction(SIGBUS, &action, &previous_action) == 0;
        }();
        static_cast<void>(installed);
    }

    /// Puts zeros in the place of all pages of the file from the missing one on. The instruction that met it then runs
    /// again. A SIGBUS from elsewhere takes its usual course.
    static void on_missing_page(int /*signal*/, siginfo_t* info, void* /*context*/) {
        const bool is_fault = info->si_code > 0; // another process can send the signal, too
        const auto address = is_fault ? reinterpret_cast<std::uintptr_t>(info->si_addr) : 0;
        for (posix_mapping_t* mapping = first; mapping != nullptr; mapping = mapping->m_next) {
            const auto begin = reinterpret_cast<std::uintptr_t>(mapping->address());
            const std::uintptr_t end = begin + mapping->bytes().size();
            if (address < begin || address >= end) continue;
            void* const page = static_cast<char*>(mapping->address()) + (address - begin) / page_size() * page_size();
            const std::size_t size = end - reinterpret_cast<std::uintptr_t>(page);
            if (mmap(page, size, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0) == MAP_FAILED) break;
            mapping->m_has_zeros = 1;
            has_zeros = 1;
            return;
        }
        sigaction(SIGBUS, &previous_action, nullptr);
        raise(SIGBUS);
    }

    inline static posix_mapping_t* first = nullptr;
    inline static std::string cut_file; // the latest that is gone and was not reported
    inline static struct sigaction previous_action = {};
};

void check_file_views(view_check_t check) {
    mapped_files_t::check(check);
}

// ---- One mapping -------------------------------------------------------------------------------------------------

posix_mapping_t::posix_mapping_t(int descriptor, bytes_t bytes, std::string name)
    : file_mapping_t(bytes), m_descriptor(descriptor), m_name(std::move(name)) {
    mapped_files_t::add(*this);
}

posix_mapping_t::~posix_mapping_t() {
    mapped_files_t::remove(*this);
    munmap(address(), bytes().size());
}

std::unique_ptr<file_mapping_t> map_file(int descriptor, std::size_t size, const std::string& name) {
    void* const mapping = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, descriptor, 0);
    if (mapping == MAP_FAILED) return nullptr;
    return std::make_unique<posix_mapping_t>(descriptor, bytes_t(static_cast<const std::uint8_t*>(mapping), size),
                                             name);
}

} // namespace tool
