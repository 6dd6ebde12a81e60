// Files that are written whole or not at all: into a temporary file, which takes the name only when all of it is on the
// disk, has been read again, and says what it should say. What an interrupt leaves is in the temporary_file.cpp of each
// system.
//
//     check_output_file(path, force);                            // before a long computation
//     write_file({path, file_mode_t::secret, force}, bytes, [&](std::span<const uint8_t> on_disk) { ... });
#pragma once

#include "tools/pkider/io/temporary_file.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace tool {

struct output_file_t {
    std::string path;
    file_mode_t mode = file_mode_t::ordinary;
    bool force = false; ///< Replace a file that is there.
};

/// Looks at what was read back, and throws a failure_t when it is not what was meant.
using read_back_t = std::function<void(std::span<const uint8_t> on_disk)>;

/// @throws file_trouble_t  `path` is there and may not be replaced, or is no regular file.
void check_output_file(const std::string& path, bool force);

/// Writes the file, reads it back, lets the caller check it, and gives it its name. Tests choose the place.
/// @throws file_trouble_t, and what `read_back` throws. There is no new file then, and an old one is unchanged.
void write_file(const output_file_t& file, std::string_view bytes, const read_back_t& read_back,
                temporary_place_t place = temporary_place_t::nameless);

} // namespace tool
