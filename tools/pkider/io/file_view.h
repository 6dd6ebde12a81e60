// The bytes of a file, of whatever size, in little memory.
//
// A small file is read: what happens to it afterwards does not matter. A large one is mapped, so that only the pages
// that are looked at are ever in memory. When another program cuts a mapped file short, the pages after its new end
// raise SIGBUS: the view then has zeros there, and the next print or flush_output fails with the reason instead of
// giving out what was made of them. So the output before that is kept, and no exception leaves a signal handler.
// Zeros between the new end and the end of its page raise no signal; flush_output finds them at the latest.
#pragma once

#include "tools/pkider/base/secret.h"
#include "tools/pkider/formats/der_cursor.h"
#include "tools/pkider/io/file_input.h"

#include <csignal>
#include <cstddef>
#include <optional>
#include <string>

namespace tool {

/// A file's bytes: read up to this size, and when it cannot be mapped (standard input, a pipe); mapped above.
inline constexpr std::size_t largest_read_file = std::size_t{1} << 20;

class file_view_t {
  public:
    /// @throws file_trouble_t  It cannot be read, or becomes shorter meanwhile.
    explicit file_view_t(const std::string& path);
    ~file_view_t();
    file_view_t(const file_view_t&) = delete;
    file_view_t& operator=(const file_view_t&) = delete;

    bytes_t bytes() const { return m_view; }

  private:
    friend class mapped_files_t; // knows all that live, and those that were cut short

    bool map();
    bool is_shorter() const;

    std::string m_path;
    std::optional<open_file_t> m_file;
    bytes_t m_view;
    void* m_mapping = nullptr;
    secret_t m_copy;

    volatile std::sig_atomic_t m_has_zeros = 0; // set by the signal handler
    bool m_is_reported = false;
    file_view_t* m_next = nullptr;
};

enum class view_check_t {
    quick,   ///< Was a page missing? It costs next to nothing.
    thorough ///< Is each file as long as it was, too? Pages are longer than files, so not every cut is a missing page.
};

/// @throws file_trouble_t  A mapped file became shorter while it was looked at. It is reported once.
void check_file_views(view_check_t check);

} // namespace tool
