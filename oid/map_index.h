// One index of an OID map, built once over all entries. Of those with one key it finds the first.
// Required: OidMap.RequiredFirstEntryOfAKeyWins.
//
// Slots are in buckets, by the high bits of their hashes; when hashes spread, a find examines a handful of
// slots. Keys can be chosen to collide: a bucket that grew large is sorted, and searched in halves. So a find is never
// slow, and building never costs more than a sort.
#pragma once

#include <pkider/oid.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace pkider {

/// What does not depend on the kind of key.
class oid_map_slots_t {
  public:
    /// The order of the keys of two entries: below 0, 0 or above 0.
    using compare_t = int (*)(const OIDdescr_t& a, const OIDdescr_t& b);

    /// Eight bytes, and an entry is read only where the hashes do not decide: the cost of many entries is memory
    /// that does not fit the caches. Bench: oid/parse_map.
    struct slot_t {
        uint32_t hash;
        uint32_t number; // of the entry in the text
    };

    /// Buckets of at most this many slots are in the order of the text, larger ones in that of hash, key and text.
    /// Nearly all have one or two slots or none, and are not worth a sort. Bench: oid/parse_map.
    static constexpr std::size_t max_unsorted = 16;

    void add(uint32_t hash) { m_slots.push_back({hash, static_cast<uint32_t>(m_slots.size())}); }
    void build(std::span<const OIDdescr_t* const> entries, compare_t compare);

    /// The bucket of the slots with this hash, if there are any.
    std::span<const slot_t> bucket(uint32_t hash) const {
        if (m_slots.empty()) return {};
        const std::size_t number = hash >> m_shift;
        return {m_slots.data() + m_first[number], m_slots.data() + m_first[number + 1]};
    }
    const OIDdescr_t& entry(const slot_t& slot) const { return *m_entries[slot.number]; }

  private:
    std::size_t bucket_of(const slot_t& slot) const { return slot.hash >> m_shift; }
    void spread();
    void sort_large_buckets(compare_t compare);

    int m_shift = 31;
    std::span<const OIDdescr_t* const> m_entries;
    std::vector<uint32_t> m_first; // by bucket; one more at the end
    std::vector<slot_t> m_slots;   // until build() as they were added
};

/// @tparam Key  One of by_contents_t, by_dotted_text_t, by_short_name_t.
template <typename Key>
class oid_map_index_t {
  public:
    /// Takes the next entry of the text, for build(). Its key is in the caches then, and later no more.
    ///
    /// @throws std::bad_alloc.
    void add(const OIDdescr_t& entry) { m_slots.add(hash_of(Key::key(entry))); }

    /// Indexes the entries that were added; once.
    ///
    /// @param entries  All of them, in their order. The list must stay where it is, and so must they.
    /// @throws         std::bad_alloc, std::length_error (2^32 entries).
    void build(std::span<const OIDdescr_t* const> entries) {
        m_slots.build(entries,
                      [](const OIDdescr_t& a, const OIDdescr_t& b) { return Key::compare(Key::key(a), Key::key(b)); });
    }

    const OIDdescr_t* find(std::string_view key) const {
        const uint32_t hash = hash_of(key);
        std::span<const slot_t> slots = m_slots.bucket(hash);
        if (slots.size() > oid_map_slots_t::max_unsorted) slots = first_not_below(slots, hash, key);
        for (const slot_t& slot : slots)
            if (order(slot, hash, key) == 0) return &m_slots.entry(slot);
        return nullptr;
    }

  private:
    using slot_t = oid_map_slots_t::slot_t;

    static uint32_t hash_of(std::string_view key) { return static_cast<uint32_t>(Key::hash(key) >> 32); }

    int order(const slot_t& slot, uint32_t hash, std::string_view key) const {
        if (slot.hash != hash) return slot.hash < hash ? -1 : 1;
        return Key::compare(Key::key(m_slots.entry(slot)), key);
    }

    // Of sorted slots the first that is not before the key, or none.
    std::span<const slot_t> first_not_below(std::span<const slot_t> slots, uint32_t hash, std::string_view key) const {
        std::size_t below = 0;
        std::size_t end = slots.size();
        while (below != end) {
            const std::size_t middle = below + (end - below) / 2;
            if (order(slots[middle], hash, key) < 0) {
                below = middle + 1;
            } else {
                end = middle;
            }
        }
        return slots.subspan(below, below != slots.size());
    }

    oid_map_slots_t m_slots;
};

} // namespace pkider
