// A folder `.pkider-<16 hex digits>` for one file, `file`. Both are removed at the end, if they are still there.
//
// It is open to its owner alone, and the program goes through its descriptor: nobody else can put another file in the
// place of the one that was checked.
#pragma once

#include "tools/pkider/io/descriptor.h"

#include <string>

namespace tool {

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

} // namespace tool
