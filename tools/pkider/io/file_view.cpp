#include "tools/pkider/io/file_view.h"

#include "tools/pkider/base/failure.h"

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <utility>

namespace tool {
namespace {

constexpr const char* became_shorter = "became shorter while it was read; try again when no program writes to it";

std::uintptr_t page_size() {
    static const auto size = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    return size;
}

/// Negative when the file is no regular file.
off_t regular_size(const open_file_t& file) {
    struct stat status = {};
    if (fstat(file.descriptor(), &status) != 0 || !S_ISREG(status.st_mode)) return -1;
    return status.st_size;
}

volatile std::sig_atomic_t has_zeros = 0; // some view has

} // namespace

// ---- The views that live -----------------------------------------------------------------------------------------

class mapped_files_t {
  public:
    static void add(file_view_t& view) {
        catch_missing_pages();
        view.m_next = first;
        first = &view;
    }

    static void remove(file_view_t& view) {
        file_view_t** place = &first;
        while (*place != &view) place = &(*place)->m_next;
        *place = view.m_next;
        if (!view.m_is_reported && is_cut(view, view_check_t::thorough)) cut_file = std::move(view.m_path);
    }

    static void check(view_check_t check) {
        if (check == view_check_t::quick && has_zeros == 0 && cut_file.empty()) return;
        for (file_view_t* view = first; view != nullptr; view = view->m_next) {
            if (view->m_is_reported || !is_cut(*view, check)) continue;
            view->m_is_reported = true;
            throw file_trouble_t(view->m_path, became_shorter);
        }
        if (!cut_file.empty()) throw file_trouble_t(std::exchange(cut_file, {}), became_shorter);
    }

  private:
    static bool is_cut(const file_view_t& view, view_check_t check) {
        return view.m_has_zeros != 0 || (check == view_check_t::thorough && view.is_shorter());
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

    /// Puts zeros in the place of all pages of the view from the missing one on. The instruction that met it then runs
    /// again. A SIGBUS from elsewhere takes its usual course.
    static void on_missing_page(int /*signal*/, siginfo_t* info, void* /*context*/) {
        const bool is_fault = info->si_code > 0; // another process can send the signal, too
        const auto address = is_fault ? reinterpret_cast<std::uintptr_t>(info->si_addr) : 0;
        for (file_view_t* view = first; view != nullptr; view = view->m_next) {
            const auto begin = reinterpret_cast<std::uintptr_t>(view->m_mapping);
            const std::uintptr_t end = begin + view->m_view.size();
            if (address < begin || address >= end) continue;
            void* const page = static_cast<char*>(view->m_mapping) + (address - begin) / page_size() * page_size();
            const std::size_t size = end - reinterpret_cast<std::uintptr_t>(page);
            if (mmap(page, size, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0) == MAP_FAILED) break;
            view->m_has_zeros = 1;
            has_zeros = 1;
            return;
        }
        sigaction(SIGBUS, &previous_action, nullptr);
        raise(SIGBUS);
    }

    inline static file_view_t* first = nullptr;
    inline static std::string cut_file; // the latest that is gone and was not reported
    inline static struct sigaction previous_action = {};
};

void check_file_views(view_check_t check) {
    mapped_files_t::check(check);
}

// ---- One view ----------------------------------------------------------------------------------------------------

file_view_t::file_view_t(const std::string& path) : m_path(path) {
    if (path == "-") {
        m_copy = read_file(path);
        m_view = m_copy.view();
        return;
    }
    m_file.emplace(path); // once: a named pipe would lose its writer in between
    if (map()) return;
    const off_t size = regular_size(*m_file);
    m_copy = read_all(m_file->descriptor(), path);
    m_view = m_copy.view();
    if (static_cast<off_t>(m_view.size()) < size) throw file_trouble_t(path, became_shorter);
    m_file.reset();
}

file_view_t::~file_view_t() {
    if (m_mapping == nullptr) return;
    mapped_files_t::remove(*this);
    munmap(m_mapping, m_view.size());
}

/// False for a file to be read.
bool file_view_t::map() {
    const off_t size = regular_size(*m_file);
    if (size <= static_cast<off_t>(largest_read_file)) return false;
    void* const mapping =
        mmap(nullptr, static_cast<std::size_t>(size), PROT_READ, MAP_PRIVATE, m_file->descriptor(), 0);
    if (mapping == MAP_FAILED) return false;
    m_mapping = mapping;
    m_view = {static_cast<const std::uint8_t*>(mapping), static_cast<std::size_t>(size)};
    mapped_files_t::add(*this);
    return true;
}

bool file_view_t::is_shorter() const {
    return regular_size(*m_file) < static_cast<off_t>(m_view.size());
}

} // namespace tool
