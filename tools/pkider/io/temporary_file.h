// A file that is written before it has its name, and of which nothing is left when it never gets it.
//
//     const auto file = make_temporary_file("key.pem", file_mode_t::secret);
//     file->write(bytes);
//     check(file->read_again());
//     if (!file->take_name(false)) ...;    // there is a key.pem already
#pragma once

#include "tools/pkider/base/secret.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace tool {

enum class file_mode_t {
    ordinary, ///< As the umask says; on Windows as the folder says.
    secret,   ///< For its owner alone (0600) from its first moment: for private keys.
};

/// Where a file is before it has its name. Tests choose; the program takes the first that is possible.
enum class temporary_place_t : std::uint8_t {
    nameless, ///< Nowhere, or in a folder of its own where the file system cannot do that.
    folder,   ///< In a folder of its own. There are none on Windows.
};

class temporary_file_t {
  public:
    virtual ~temporary_file_t() = default;
    temporary_file_t(const temporary_file_t&) = delete;
    temporary_file_t& operator=(const temporary_file_t&) = delete;

    /// Writes all contents. They are on the disk when it returns. @throws file_trouble_t  It names the target, as all
    /// that follow.
    virtual void write(std::string_view bytes) = 0;

    /// All that is in the file.
    virtual secret_t read_again() const = 0;

    /// Gives the file its name. @return  False, without `replace`, when there is something of that name.
    virtual bool take_name(bool replace) = 0;

  protected:
    temporary_file_t() = default;
};

/// An empty file. @throws file_trouble_t  It names `target`.
std::unique_ptr<temporary_file_t> make_temporary_file(std::string target, file_mode_t mode,
                                                      temporary_place_t place = temporary_place_t::nameless);

} // namespace tool
