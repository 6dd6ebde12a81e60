// Which entries of a map text are found, and what hides the others: for every key the first entry of the text wins.
#pragma once

#include "tools/pkider/explain/map_lines.h"

#include <map>
#include <string>
#include <vector>

namespace tool {

class map_reach_t {
  public:
    /// The entries among the lines, in the order of the text. The lines must live as long as this.
    void add(const std::vector<map_line_t>& lines);

    /// The entry that owns a key of this entry: itself, or an earlier one.
    const map_line_t& owner_of_oid(const map_line_t& entry) const { return *m_by_contents.at(entry.contents); }
    const map_line_t& owner_of_dotted(const map_line_t& entry) const { return *m_by_dotted.at(std::string(entry.oid)); }
    const map_line_t& owner_of_short_name(const map_line_t& entry) const {
        return *m_by_short_name.at(entry.short_name);
    }

    /// Whether another entry owns one of its keys.
    bool is_shadowed(const map_line_t& entry) const;

    /// What hides the entry, and what still reaches it, in words.
    std::vector<std::string> explain(const map_line_t& entry) const;

  private:
    std::map<std::string, const map_line_t*> m_by_contents;
    std::map<std::string, const map_line_t*> m_by_dotted;
    std::map<std::string, const map_line_t*> m_by_short_name;
};

} // namespace tool
