// Finding a built-in row. Four bytes of a key (its first, its last two, its length) tell all keys of the table apart,
// and a multiplier found at compile time turns them into one of 128 slots without a collision: a find is one
// multiplication, one look and one comparison. Of two rows with the same key the first has the slot.
#pragma once

#include "oid/builtin_rows.h"
#include "platform/ascii.h"
#include "platform/short_bytes.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace pkider {

/// Keys compared byte for byte: contents and dotted text.
struct exact_key_t {
    static constexpr uint8_t fold(uint8_t byte) { return byte; }
    static bool equal(const void* a, const void* b, uint64_t size) { return equal_short(a, b, size); }
};

/// Short names, which a row has in upper case.
struct folded_key_t {
    static constexpr uint8_t fold(uint8_t byte) { return byte & 0xDF; } // letters lose their case; the rest may collide
    static bool equal(const char* upper, const char* key, uint64_t size) {
        for (uint64_t i = 0; i < size; ++i) {
            if (ascii_upper(key[i]) != upper[i]) return false;
        }
        return true;
    }
};

/// @tparam Bytes   The field of a row that is the key.
/// @tparam Length  The field that holds its length.
template <auto Bytes, auto Length, typename Key>
class builtin_index_t {
  public:
    consteval builtin_index_t() {
        while (!fill()) m_multiplier *= 0xD1342543DE82EF95; // odd stays odd
    }

    template <typename Byte>
    const OIDdescr_t* find(const Byte* key, uint64_t length) const {
        if (length == 0) return nullptr;
        const uint8_t row = m_slots[slot(key, length)];
        if (row == no_row) return nullptr;
        const OIDdescr_t& found = builtin_rows[row];
        return found.*Length == length && Key::equal(found.*Bytes, key, length) ? &found : nullptr;
    }

  private:
    static constexpr uint8_t no_row = 0xFF;
    static constexpr int slot_bits = 7;

    template <typename Byte>
    constexpr std::size_t slot(const Byte* key, uint64_t length) const {
        const uint64_t digest = uint64_t{Key::fold(static_cast<uint8_t>(key[0]))} |
                                uint64_t{Key::fold(static_cast<uint8_t>(key[length - 1]))} << 8 |
                                uint64_t{Key::fold(static_cast<uint8_t>(key[length - 1 - (length > 1)]))} << 16 |
                                length << 24;
        return digest * m_multiplier >> (64 - slot_bits);
    }

    // False when two keys want one slot.
    consteval bool fill() {
        std::fill(std::begin(m_slots), std::end(m_slots), no_row);
        uint8_t number = 0;
        for (const OIDdescr_t& row : builtin_rows) {
            uint8_t& place = m_slots[slot(row.*Bytes, row.*Length)];
            if (place == no_row) {
                place = number;
            } else if (!same_key(builtin_rows[place], row)) {
                return false;
            }
            ++number;
        }
        return true;
    }
    static consteval bool same_key(const OIDdescr_t& a, const OIDdescr_t& b) {
        return std::equal(a.*Bytes, a.*Bytes + a.*Length, b.*Bytes, b.*Bytes + b.*Length);
    }

    uint64_t m_multiplier = 0x9E3779B97F4A7C15;
    uint8_t m_slots[std::size_t{1} << slot_bits] = {};
};

inline constexpr builtin_index_t<&OIDdescr_t::asn, &OIDdescr_t::asn_len, exact_key_t> builtin_by_contents;
inline constexpr builtin_index_t<&OIDdescr_t::str, &OIDdescr_t::str_len, exact_key_t> builtin_by_dotted_text;
inline constexpr builtin_index_t<&OIDdescr_t::sn, &OIDdescr_t::sn_len, folded_key_t> builtin_by_short_name;

} // namespace pkider
