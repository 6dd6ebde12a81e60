// A search without a search: the compiler finds a multiplier under which every key of a table falls into a slot of its
// own, so that a lookup is one multiplication and one comparison. Built from the table itself, it cannot drift from it.
//
// Why not a scan: an unknown object identifier would be compared with every row. Bench: alg/from_oid.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>

namespace pkider {

/// @tparam NumSlots  A power of two; the emptier the table, the sooner a multiplier is found.
template <std::size_t NumSlots>
struct perfect_hash_t {
    static_assert(std::has_single_bit(NumSlots));

    uint64_t multiplier = 0;
    std::array<uint8_t, NumSlots> numbers{}; ///< By slot: the number of the key in it; 0 in an unused slot.

    /// The number that `key` has if it is one of the keys, and any of the numbers if it is not: the caller compares.
    constexpr uint8_t number_of(uint64_t key) const { return numbers[slot_of(key, multiplier)]; }

    static constexpr std::size_t slot_of(uint64_t key, uint64_t multiplier) {
        return static_cast<std::size_t>(key * multiplier >> (64 - std::countr_zero(NumSlots)));
    }
};

/// Tries one multiplier after the other. No compilation succeeds without one; equal keys have none.
template <std::size_t NumSlots>
constexpr perfect_hash_t<NumSlots> make_perfect_hash(std::span<const uint64_t> keys) {
    if (keys.size() > 256) throw "numbers are kept in a byte";
    uint64_t multiplier = 0x9E3779B97F4A7C15;
    std::array<uint16_t, NumSlots> taken_in_round{};
    for (uint16_t round = 1; round < 10'000; ++round) {
        multiplier = multiplier * 6364136223846793005 + 1442695040888963407;
        const bool free_for_all = std::all_of(keys.begin(), keys.end(), [&](uint64_t key) {
            uint16_t& taken = taken_in_round[perfect_hash_t<NumSlots>::slot_of(key, multiplier)];
            if (taken == round) return false;
            taken = round;
            return true;
        });
        if (!free_for_all) continue;

        perfect_hash_t<NumSlots> found{multiplier};
        for (std::size_t i = 0; i < keys.size(); ++i)
            found.numbers[found.slot_of(keys[i], multiplier)] = static_cast<uint8_t>(i);
        return found;
    }
    throw "no multiplier: more slots are needed, or two keys are equal";
}

} // namespace pkider
