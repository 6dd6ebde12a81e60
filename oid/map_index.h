// One index of an OID map, built once over all entries: for each key the first entry that has it.
// Wanted: OidMap.RequiredFirstEntryOfAKeyWins.
//
// Slots stand sorted by (hash, key), and a directory of the high bits of the hash says where to look. A find is two
// steps for keys that spread; keys chosen to collide make it a binary search, and building never costs more than a
// sort.
#pragma once

#include <pkider/oid.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace pkider {

/// @tparam Key  One of by_contents_t, by_dotted_text_t, by_short_name_t.
template <typename Key>
class oid_map_index_t {
  public:
    /// Takes the next entry of the text, for build(). Its key is in the caches then, and later no more.
    ///
    /// @throws std::bad_alloc.
    void add(const OIDdescr_t& entry) {
        m_slots.push_back({hash_of(Key::key(entry)), static_cast<uint32_t>(m_slots.size())});
    }

    /// Indexes the entries that were added; once.
    ///
    /// @param entries  All of them, in their order. The list must stay where it is, and so must they.
    /// @throws         std::bad_alloc, std::length_error (2^32 entries).
    void build(std::span<const OIDdescr_t* const> entries) {
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
            keep_first_of_each_key(candidates);
        }
        m_first[num_buckets] = static_cast<uint32_t>(m_slots.size());
    }

    const OIDdescr_t* find(std::string_view key) const {
        if (m_slots.empty()) return nullptr;
        const uint32_t hash = hash_of(key);
        const std::size_t bucket = hash >> m_shift;
        std::size_t low = m_first[bucket];
        std::size_t high = m_first[bucket + 1];
        while (low < high) {
            const std::size_t middle = low + (high - low) / 2;
            const slot_t& slot = m_slots[middle];
            const int order = slot.hash != hash ? (slot.hash < hash ? -1 : 1) : Key::compare(key_of(slot), key);
            if (order == 0) return m_entries[slot.number];
            if (order < 0) {
                low = middle + 1;
            } else {
                high = middle;
            }
        }
        return nullptr;
    }

  private:
    // Eight bytes, and an entry is only looked at where the hashes do not decide: what many entries cost is memory that
    // the caches do not hold. With twice the size and a look at each entry, 100,000 lines took twice as long.
    struct slot_t {
        uint32_t hash;
        uint32_t number; // of the entry in the text
    };

    static uint32_t hash_of(std::string_view key) { return static_cast<uint32_t>(Key::hash(key) >> 32); }
    std::string_view key_of(const slot_t& slot) const { return Key::key(*m_entries[slot.number]); }

    int compare_keys(const slot_t& a, const slot_t& b) const {
        if (a.hash != b.hash) return a.hash < b.hash ? -1 : 1;
        return Key::compare(key_of(a), key_of(b));
    }

    // The slots grouped by bucket; m_first then says where each bucket begins.
    std::vector<slot_t> spread() {
        for (const slot_t& slot : m_slots) ++m_first[slot.hash >> m_shift];
        uint32_t end = 0;
        for (uint32_t& first : m_first) first = end += first;

        std::vector<slot_t> slots(m_slots.size());
        for (std::size_t i = slots.size(); i-- > 0;) slots[--m_first[m_slots[i].hash >> m_shift]] = m_slots[i];
        return slots;
    }

    void keep_first_of_each_key(std::span<slot_t> candidates) {
        std::sort(candidates.begin(), candidates.end(), [this](const slot_t& a, const slot_t& b) {
            const int order = compare_keys(a, b);
            return order != 0 ? order < 0 : a.number < b.number;
        });
        const std::size_t first = m_slots.size();
        for (const slot_t& slot : candidates) {
            const bool repeated = m_slots.size() != first && compare_keys(m_slots.back(), slot) == 0;
            if (!repeated) m_slots.push_back(slot);
        }
    }

    int m_shift = 31;
    std::span<const OIDdescr_t* const> m_entries;
    std::vector<uint32_t> m_first; // by bucket; one more at the end
    std::vector<slot_t> m_slots;   // until build() as they were added
};

} // namespace pkider
