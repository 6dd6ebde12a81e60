// The bytes of a large file without reading them all: only the pages that are looked at are ever in memory.
//
// When another program cuts a mapped file short, the pages after its new end raise SIGBUS: the view then has zeros
// there, and the next check fails with the reason. So the output before that is kept, and no exception leaves a signal
// handler. Zeros between the new end and the end of its page raise no signal; a thorough check finds them. Windows lets
// nobody cut a mapped file, and the checks find nothing there.
#pragma once

#include "tools/pkider/formats/der_cursor.h"

#include <cstddef>
#include <memory>
#include <string>

namespace tool {

/// In one piece, and until the end of its life.
class file_mapping_t {
  public:
    virtual ~file_mapping_t() = default;
    file_mapping_t(const file_mapping_t&) = delete;
    file_mapping_t& operator=(const file_mapping_t&) = delete;

    bytes_t bytes() const { return m_bytes; }

  protected:
    explicit file_mapping_t(bytes_t bytes) : m_bytes(bytes) {}

  private:
    bytes_t m_bytes;
};

/// The first `size` bytes of an open file, which stays open as long as they are mapped; messages call it `name`. Null
/// where they cannot be mapped.
std::unique_ptr<file_mapping_t> map_file(int descriptor, std::size_t size, const std::string& name);

inline constexpr const char* became_shorter =
    "became shorter while it was read; try again when no program writes to it";

enum class view_check_t {
    quick,   ///< Was a page missing? It costs next to nothing.
    thorough ///< Is each file as long as it was, too? Pages are longer than files, so not every cut is a missing page.
};

/// @throws file_trouble_t  A mapped file became shorter while it was looked at. It is reported once.
void check_file_views(view_check_t check);

} // namespace tool
