#include "tools/pkider/crypto/iteration_limit.h"

namespace tool {

std::string too_many_iterations_text(uint64_t asked, uint64_t limit) {
    return std::to_string(asked) + " iterations of key derivation; the limit is " + std::to_string(limit) +
           " for all keys of a file (--max-iterations)";
}

} // namespace tool
