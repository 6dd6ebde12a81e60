// The bytes of a file without a copy of them: a file is mapped, so that only the pages that are looked at are ever
// read.
#pragma once

#include "tools/pkider/base/secret.h"
#include "tools/pkider/formats/der_cursor.h"

#include <string>

namespace tool {

/// A file's bytes: mapped, or read when it cannot be mapped (standard input, a pipe). Throws file_trouble_t.
class file_view_t {
  public:
    explicit file_view_t(const std::string& path);
    ~file_view_t();
    file_view_t(const file_view_t&) = delete;
    file_view_t& operator=(const file_view_t&) = delete;

    bytes_t bytes() const { return m_view; }

  private:
    bytes_t m_view;
    void* m_mapping = nullptr;
    secret_t m_copy;
};

} // namespace tool
