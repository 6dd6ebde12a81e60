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
#include <string_view>
#include <vector>

namespace pkider {

/// @tparam Key  One of by_contents_t, by_dotted_text_t, by_short_name_t.
template <typename Key>
class oid_map_index_t {
  public:
    /// Replaces what was indexed. The entries must stay where they are.
    void build(const std::vector<const OIDdescr_t*>& entries) {
        const std::size_t num_buckets = std::max<std::size_t>(2, std::bit_ceil(entries.size()));
        m_shift = 64 - std::countr_zero(num_buckets);
        m_first.assign(num_buckets + 1, 0);
        m_slots.clear();
        m_slots.reserve(entries.size());

        std::vector<candidate_t> candidates = spread(entries);
        for (std::size_t bucket = 0; bucket < num_buckets; ++bucket) {
            const auto begin = candidates.begin() + static_cast<std::ptrdiff_t>(m_first[bucket]);
            const auto end = candidates.begin() + static_cast<std::ptrdiff_t>(m_first[bucket + 1]);
            m_first[bucket] = m_slots.size();
            keep_first_of_each_key(begin, end);
        }
        m_first[num_buckets] = m_slots.size();
    }

    const OIDdescr_t* find(std::string_view key) const {
        if (m_slots.empty()) return nullptr;
        const uint64_t hash = Key::hash(key);
        const std::size_t bucket = hash >> m_shift;
        std::size_t low = m_first[bucket];
        std::size_t high = m_first[bucket + 1];
        while (low < high) {
            const std::size_t middle = low + (high - low) / 2;
            const int order = compare(m_slots[middle], hash, key);
            if (order == 0) return m_slots[middle].entry;
            if (order < 0) {
                low = middle + 1;
            } else {
                high = middle;
            }
        }
        return nullptr;
    }

  private:
    struct slot_t {
        uint64_t hash;
        const OIDdescr_t* entry;
    };
    struct candidate_t {
        slot_t slot;
        std::size_t position; // in the text
    };
    using candidate_iterator_t = typename std::vector<candidate_t>::iterator;

    static int compare(const slot_t& slot, uint64_t hash, std::string_view key) {
        if (slot.hash != hash) return slot.hash < hash ? -1 : 1;
        return Key::compare(Key::key(*slot.entry), key);
    }

    // Groups the entries by bucket; m_first then says where each bucket begins.
    std::vector<candidate_t> spread(const std::vector<const OIDdescr_t*>& entries) {
        std::vector<uint64_t> hashes;
        hashes.reserve(entries.size());
        for (const OIDdescr_t* entry : entries) {
            hashes.push_back(Key::hash(Key::key(*entry)));
            ++m_first[hashes.back() >> m_shift];
        }
        std::size_t end = 0;
        for (std::size_t& first : m_first) first = end += first;

        std::vector<candidate_t> candidates(entries.size());
        for (std::size_t i = entries.size(); i-- > 0;) {
            candidates[--m_first[hashes[i] >> m_shift]] = {{hashes[i], entries[i]}, i};
        }
        return candidates;
    }

    void keep_first_of_each_key(candidate_iterator_t begin, candidate_iterator_t end) {
        std::sort(begin, end, [](const candidate_t& a, const candidate_t& b) {
            const int order = compare(a.slot, b.slot.hash, Key::key(*b.slot.entry));
            return order != 0 ? order < 0 : a.position < b.position;
        });
        const std::size_t first = m_slots.size();
        for (; begin != end; ++begin) {
            const slot_t& slot = begin->slot;
            const bool repeated =
                m_slots.size() != first && compare(m_slots.back(), slot.hash, Key::key(*slot.entry)) == 0;
            if (!repeated) m_slots.push_back(slot);
        }
    }

    int m_shift = 63;
    std::vector<std::size_t> m_first; // by bucket; one more at the end
    std::vector<slot_t> m_slots;
};

} // namespace pkider
