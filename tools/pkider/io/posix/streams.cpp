#include "tools/pkider/io/streams.h"

#include <unistd.h>

#include <cstdlib>

namespace tool {

void prepare_standard_streams() noexcept {}

bool is_terminal(std::FILE* stream) {
    return isatty(fileno(stream)) == 1;
}

bool shows_colours(std::FILE* stream) {
    if (!is_terminal(stream)) return false;
    const char* const terminal = std::getenv("TERM");
    return terminal != nullptr && std::string_view(terminal) != "dumb";
}

bool write_to(std::FILE* stream, std::string_view bytes) {
    return std::fwrite(bytes.data(), 1, bytes.size(), stream) == bytes.size();
}

} // namespace tool
