#include "tools/pkider/explain/map_reach.h"

namespace tool {
namespace {

std::string place_of(const map_line_t& entry) {
    return " (" + entry.source + ":" + std::to_string(entry.number) + ")";
}

} // namespace

void map_reach_t::add(const std::vector<map_line_t>& lines) {
    for (const map_line_t& line : lines) {
        if (line.kind != map_line_kind_t::entry) continue;
        m_by_contents.emplace(line.contents, &line);
        m_by_dotted.emplace(line.oid, &line);
        m_by_short_name.emplace(line.short_name, &line);
    }
}

bool map_reach_t::is_shadowed(const map_line_t& entry) const {
    return &owner_of_oid(entry) != &entry || &owner_of_dotted(entry) != &entry || &owner_of_short_name(entry) != &entry;
}

std::vector<std::string> map_reach_t::explain(const map_line_t& entry) const {
    const std::string oid(entry.oid);
    const map_line_t& oid_owner = owner_of_oid(entry);
    const map_line_t& dotted_owner = owner_of_dotted(entry);
    const map_line_t& name_owner = owner_of_short_name(entry);
    const bool owns_oid = &oid_owner == &entry;
    const bool owns_dotted = &dotted_owner == &entry;
    const bool owns_name = &name_owner == &entry;
    std::vector<std::string> words;

    if (!owns_oid) words.push_back(oid + " is printed as " + oid_owner.short_name + place_of(oid_owner));
    if (!owns_name) {
        words.push_back(entry.short_name + " is read as " + std::string(name_owner.oid) + place_of(name_owner));
    }
    if (owns_oid && !owns_name && name_owner.contents != entry.contents) {
        words.push_back(oid + " is still printed as " + entry.short_name + ", which reads back as another OID");
    } else if (owns_oid) {
        words.push_back(oid + " is still printed as " + entry.short_name);
    }
    if (owns_name) words.push_back(entry.short_name + " is still read as " + oid);
    if (owns_dotted && !owns_oid) words.push_back("the text " + oid + " still finds it");
    if (!owns_oid && !owns_dotted && !owns_name) words.push_back("nothing reaches it");
    return words;
}

} // namespace tool
