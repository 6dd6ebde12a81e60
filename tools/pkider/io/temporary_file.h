// A file that is written before it has its name, and of which nothing is left when it never gets it.
//
//     temporary_file_t file("key.pem");
//     write(file.descriptor(), ...);      // and look at it again, through the descriptor
//     if (!file.take_name(false)) ...;    // there is a key.pem already
//
// Where the file system can make a file without a name (O_TMPFILE), there is nothing to remove, not even after SIGKILL
// or a loss of power. Replacing a file is the exception, because Linux gives a nameless file only a name that is free:
// between two system calls it has a name in a folder of its own (see below), and signals are held meanwhile. SIGKILL
// between these two leaves that folder.
//
// Elsewhere the file is in a folder of its own, `.pkider-<16 hex digits>` beside the target, from the beginning, and
// signals are held as long as it is there. Only SIGKILL and a loss of power leave it.
//
// The folder is open to its owner alone, and the program goes through its descriptor: nobody else can put another file
// in the place of the one that was checked.
#pragma once

#include "tools/pkider/io/descriptor.h"
#include "tools/pkider/io/held_signals.h"

#include <cstdint>
#include <optional>
#include <string>

namespace tool {

/// Where a file is before it has its name. Tests choose; the program takes the first that is possible.
enum class temporary_place_t : std::uint8_t {
    nameless, ///< Nowhere, or in a folder of its own where the file system cannot do that.
    folder,   ///< In a folder of its own.
};

/// A folder `.pkider-<16 hex digits>` for one file, `file`. Both are removed at the end, if they are still there.
class private_folder_t {
  public:
    /// Inside the folder that is open as `parent`. @throws file_trouble_t  It names `target`.
    private_folder_t(int parent, const std::string& target);
    ~private_folder_t();
    private_folder_t(const private_folder_t&) = delete;
    private_folder_t& operator=(const private_folder_t&) = delete;

    static constexpr const char* file_name = "file";
    int descriptor() const { return m_folder.number(); }
    /// Whether the folder belongs to the owner of an open file.
    bool has_owner_of(int file) const;

  private:
    int m_parent;
    std::string m_name;
    descriptor_t m_folder;
};

class temporary_file_t {
  public:
    /// Empty, for reading and writing, with mode 0600. @throws file_trouble_t  It names `target`, as all that follow.
    explicit temporary_file_t(std::string target, temporary_place_t place = temporary_place_t::nameless);

    int descriptor() const { return m_file->number(); }

    /// Gives the file its name. @return  False, without `replace`, when there is something of that name.
    bool take_name(bool replace);

  private:
    void open_in_folder();
    void check_folder(const private_folder_t& folder) const;
    bool link_into(int folder, const char* name);
    void move_from(const private_folder_t& from);
    bool move_to_free_name();
    [[noreturn]] void fail() const;

    std::string m_target, m_name; // as given; without its folder
    descriptor_t m_folder;        // of the target
    std::optional<held_signals_t> m_held;
    std::optional<private_folder_t> m_private; // empty: the file has no name
    std::optional<descriptor_t> m_file;
};

} // namespace tool
