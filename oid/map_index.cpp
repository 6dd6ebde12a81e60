#include "oid/map_index.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <stdexcept>
#include <utility>

namespace pkider {

void oid_map_slots_t::build(std::span<const OIDdescr_t* const> entries, compare_t compare) {
    if (entries.size() > std::numeric_limits<uint32_t>::max()) throw std::length_error("pkider: OID map too long");
    const std::size_t num_buckets = std::max<std::size_t>(2, std::bit_ceil(entries.size() / 2));
    m_entries = entries;
    m_shift = 32 - std::countr_zero(num_buckets);
    m_first.assign(num_buckets + 1, 0);
    spread();
    sort_large_buckets(compare);
}

// Groups the slots by bucket, each bucket in the order of the text; m_first then says where each one begins.
void oid_map_slots_t::spread() {
    for (const slot_t& slot : m_slots) ++m_first[bucket_of(slot)];
    uint32_t end = 0;
    for (uint32_t& first : m_first) first = end += first;

    std::vector<slot_t> slots(m_slots.size());
    for (std::size_t i = slots.size(); i-- > 0;) slots[--m_first[bucket_of(m_slots[i])]] = m_slots[i];
    m_slots = std::move(slots);
}

void oid_map_slots_t::sort_large_buckets(compare_t compare) {
    const auto stands_before = [&](const slot_t& a, const slot_t& b) {
        if (a.hash != b.hash) return a.hash < b.hash;
        const int order = compare(entry(a), entry(b));
        return order != 0 ? order < 0 : a.number < b.number;
    };
    for (std::size_t bucket = 0; bucket + 1 < m_first.size(); ++bucket) {
        const std::span<slot_t> slots(m_slots.data() + m_first[bucket], m_slots.data() + m_first[bucket + 1]);
        if (slots.size() > max_unsorted) std::sort(slots.begin(), slots.end(), stands_before);
    }
}

} // namespace pkider
