// What a file says, a fact a line: its name and a text.
#pragma once

#include "tools/pkider/text/terminal_text.h"

#include <string>
#include <vector>

namespace tool {

/// A fact has two names, so that a better word on the screen breaks no script.
struct fact_name_t {
    const char* member;   ///< In JSON; never changes.
    const char* label;    ///< On the screen.
    bool is_name = false; ///< The text is a name as one line.
};

struct fact_t {
    fact_name_t name;
    std::string text; ///< May hold any bytes that the file holds.
};

using facts_t = std::vector<fact_t>;

/// The text of a fact, safe to show.
inline std::string printable(const fact_t& fact) {
    return fact.name.is_name ? printable_name(fact.text) : printable(fact.text);
}

} // namespace tool
