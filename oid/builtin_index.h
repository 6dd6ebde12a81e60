// Finding a built-in row by its contents, its dotted text or its short name: of two rows with the same key the first.
//
// Contents and short names are asked for by the dozen for each Name. A few bytes of such a key, put together to a
// digest, distinguish all keys of the table, and a multiplier found at compile time turns digests into one of 128 slots
// without a collision: a find is one multiplication, one load and one comparison. Bench: oid/find_by_contents,
// oid/find_by_short_name.
#pragma once

#include "oid/builtin_rows.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>

namespace pkider {

inline constexpr uint8_t no_builtin_row = 0xFF;

using builtin_digests_t = std::array<uint64_t, std::size(builtin_rows)>; // by row

template <typename Digest>
constexpr builtin_digests_t builtin_digests(Digest digest) {
    builtin_digests_t out{};
    std::transform(std::begin(builtin_rows), std::end(builtin_rows), out.begin(), digest);
    return out;
}

/// Row numbers by digest.
class builtin_slots_t {
  public:
    constexpr explicit builtin_slots_t(const builtin_digests_t& digests) {
        while (!fill(digests)) m_multiplier *= 0xD1342543DE82EF95; // odd stays odd
    }

    /// The only row that can have this digest, or no_builtin_row.
    uint8_t row(uint64_t digest) const { return m_rows[slot(digest)]; }

  private:
    static constexpr int slot_bits = 7;

    constexpr std::size_t slot(uint64_t digest) const {
        return static_cast<std::size_t>(digest * m_multiplier >> (64 - slot_bits));
    }

    // False when two digests need one slot.
    constexpr bool fill(const builtin_digests_t& digests) {
        std::fill(std::begin(m_rows), std::end(m_rows), no_builtin_row);
        for (std::size_t row = 0; row < digests.size(); ++row) {
            uint8_t& place = m_rows[slot(digests[row])];
            if (place == no_builtin_row) {
                place = static_cast<uint8_t>(row);
            } else if (digests[place] != digests[row]) {
                return false;
            }
        }
        return true;
    }

    uint64_t m_multiplier = 0x9E3779B97F4A7C15;
    uint8_t m_rows[std::size_t{1} << slot_bits] = {};
};

/// The first byte of a key, its last two and its length, which is not 0.
constexpr uint64_t contents_digest(const uint8_t* key, uint64_t length) {
    return uint64_t{key[0]} | uint64_t{key[length - 1]} << 8 | uint64_t{key[length - 1 - (length > 1)]} << 16 |
           length << 24;
}

class builtin_contents_index_t {
  public:
    const OIDdescr_t* find(const uint8_t* key, uint64_t length) const {
        if (length == 0) return nullptr;
        const uint8_t row = m_slots.row(contents_digest(key, length));
        if (row == no_builtin_row) return nullptr;
        const OIDdescr_t& found = builtin_rows[row];
        return found.asn_len == length && std::memcmp(found.asn, key, static_cast<std::size_t>(length)) == 0 ? &found
                                                                                                             : nullptr;
    }

  private:
    builtin_slots_t m_slots{
        builtin_digests([](const OIDdescr_t& row) { return contents_digest(row.asn, row.asn_len); })};
};

inline const OIDdescr_t* find_builtin_dotted_text(const char* text, uint64_t length) {
    for (const OIDdescr_t& row : builtin_rows) {
        if (row.str_len != length) continue;
        if (std::memcmp(row.str, text, static_cast<std::size_t>(length)) == 0) return &row;
    }
    return nullptr;
}

static_assert(max_builtin_short_name < sizeof(uint64_t), "a digest holds a short name and its length");

/// All of a short name and its length. A byte becomes an upper-case letter by losing the bit of the case only
/// if it is a letter: names that have the digest of a row are equal to its name but for case.
///
/// @param length  At most max_builtin_short_name.
constexpr uint64_t short_name_digest(const char* name, uint64_t length) {
    uint64_t digest = length;
    for (const char* at = name; at != name + length; ++at) digest = digest << 8 | (static_cast<uint8_t>(*at) & 0xDF);
    return digest;
}

class builtin_short_name_index_t {
  public:
    const OIDdescr_t* find(const char* name, uint64_t length) const {
        if (length > max_builtin_short_name) return nullptr;
        const uint64_t digest = short_name_digest(name, length);
        const uint8_t row = m_slots.row(digest);
        return row != no_builtin_row && digests[row] == digest ? &builtin_rows[row] : nullptr;
    }

  private:
    static constexpr builtin_digests_t digests =
        builtin_digests([](const OIDdescr_t& row) { return short_name_digest(row.sn, row.sn_len); });

    builtin_slots_t m_slots{digests};
};

/// Contents 55 04 n, an attribute type of X.520: most that occur. The one byte that differs gives the row.
/// Bench: oid/find_by_contents.
class builtin_x520_index_t {
  public:
    constexpr builtin_x520_index_t() {
        std::fill(std::begin(m_rows), std::end(m_rows), no_builtin_row);
        for (uint8_t row = std::size(builtin_rows); row-- > 0;) { // downwards: of two rows the first one stays
            const OIDdescr_t& entry = builtin_rows[row];
            if (is_x520(entry.asn, entry.asn_len)) m_rows[entry.asn[2]] = row;
        }
    }

    const OIDdescr_t* find(const uint8_t* key, uint64_t length) const {
        if (!is_x520(key, length)) return nullptr;
        const uint8_t row = m_rows[key[2]];
        return row == no_builtin_row ? nullptr : &builtin_rows[row];
    }

  private:
    static constexpr bool is_x520(const uint8_t* key, uint64_t length) {
        return length == 3 && key[0] == 0x55 && key[1] == 0x04;
    }

    uint8_t m_rows[256] = {};
};

inline constexpr builtin_contents_index_t builtin_by_contents;
inline constexpr builtin_short_name_index_t builtin_by_short_name;
inline constexpr builtin_x520_index_t builtin_by_x520_contents;

} // namespace pkider
