#include "oid/map_index.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <stdexcept>

namespace pkider {

void oid_map_slots_t::build(std::span<const OIDdescr_t* const> entries, compare_t compare) {
    if (entries.size() > std::numeric_limits<uint32_t>::max()) throw std::length_error("pkider: OID map too long");
    const std::size_t num_buckets = std::max<std::size_t>(2, std::bit_ceil(entries.size()));
    m_entries = entries;
    m_shift = 32 - std::countr_zero(num_buckets);
    m_first.assign(num_buckets + 1, 0);

    std::vector<slot_t> slots = spread();
    m_slots.clear();
    for (std::size_t bucket = 0; bucket < num_buckets; ++bucket) {
        const std::span<slot_t> candidates(slots.data() + m_first[bucket], slots.data() + m_first[bucket + 1]);
        m_first[bucket] = static_cast<uint32_t>(m_slots.size());
        keep_first_of_each_key(candidates, compare);
    }
    m_first[num_buckets] = static_cast<uint32_t>(m_slots.size());
}

// The slots grouped by bucket; m_first then says where each bucket begins.
std::vector<oid_map_slots_t::slot_t> oid_map_slots_t::spread() {
    for (const slot_t& slot : m_slots) ++m_first[slot.hash >> m_shift];
    uint32_t end = 0;
    for (uint32_t& first : m_first) first = end += first;

    std::vector<slot_t> slots(m_slots.size());
    for (std::size_t i = slots.size(); i-- > 0;) slots[--m_first[m_slots[i].hash >> m_shift]] = m_slots[i];
    return slots;
}

void oid_map_slots_t::keep_first_of_each_key(std::span<slot_t> candidates, compare_t compare) {
    const auto order_of = [&](const slot_t& a, const slot_t& b) {
        if (a.hash != b.hash) return a.hash < b.hash ? -1 : 1;
        return compare(*entry(a), *entry(b));
    };
    std::sort(candidates.begin(), candidates.end(), [&](const slot_t& a, const slot_t& b) {
        const int order = order_of(a, b);
        return order != 0 ? order < 0 : a.number < b.number;
    });
    const std::size_t first = m_slots.size();
    for (const slot_t& slot : candidates) {
        const bool repeated = m_slots.size() != first && order_of(m_slots.back(), slot) == 0;
        if (!repeated) m_slots.push_back(slot);
    }
}

} // namespace pkider
