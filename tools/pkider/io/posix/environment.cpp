#include "tools/pkider/io/environment.h"

#include <cstdlib>

namespace tool {

std::optional<secret_t> secret_variable(const char* name) {
    const char* const value = std::getenv(name);
    if (value == nullptr) return std::nullopt;
    return secret_t(std::string_view(value));
}

} // namespace tool
