// What a file says, a fact a line: its name and a text.
#pragma once

#include <string>
#include <vector>

namespace tool {

/// A fact has two names, so that a better word on the screen breaks no script.
struct fact_name_t {
    const char* member; ///< In JSON; never changes.
    const char* label;  ///< On the screen.
};

struct fact_t {
    fact_name_t name;
    std::string text; ///< May hold any bytes that the file holds.
};

using facts_t = std::vector<fact_t>;

} // namespace tool
