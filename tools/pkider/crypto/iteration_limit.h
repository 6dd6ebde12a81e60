// How much key derivation the program asks for, and how much a file may ask of it.
#pragma once

#include <cstdint>
#include <string>

namespace tool {

/// For keys and files that are written.
inline constexpr uint32_t default_iterations = 600'000;

/// For all keys of a file that is read.
inline constexpr uint64_t default_max_iterations = 10'000'000;

/// "4294967295 iterations of key derivation; the limit is 10000000 for all keys of a file (--max-iterations)"
std::string too_many_iterations_text(uint64_t asked, uint64_t limit);

} // namespace tool
