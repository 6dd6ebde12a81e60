// Lengths that the library's writers do not keep: from 65,536 on the header can lose zero bytes, and the result reads
// as something else.
#pragma once

#include <string>

namespace tool {

/// Throws data_fault_t when an element that the library wrote has, at any level, 65,536 or more content bytes. `what`
/// it is: "the name".
void check_faithful_lengths(const std::string& der, const std::string& what);

} // namespace tool
