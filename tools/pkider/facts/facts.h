// What a file says, in lines of a label and a text.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace tool {

using facts_t = std::vector<std::pair<std::string, std::string>>;

} // namespace tool
