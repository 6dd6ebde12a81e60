// From an algorithm to the first row of a table that has it, whatever else the rows hold.
#pragma once

#include "alg/perfect_hash.h"

#include <pkider/alg.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <span>

namespace pkider {

/// Slots for a table: about eight times its rows, where a multiplier is found after a handful of tries.
constexpr std::size_t num_value_slots(std::size_t num_rows) {
    return std::bit_ceil(8 * num_rows);
}

/// The first rows with their value, as a hash from the value to the row's number.
template <const auto& Rows>
constexpr auto index_first_rows() {
    constexpr std::size_t num_rows = std::size(Rows);
    std::array<uint64_t, num_rows> keys{};
    std::array<uint8_t, num_rows> row_numbers{};
    std::size_t num_keys = 0;
    for (std::size_t i = 0; i < num_rows; ++i) {
        const auto first = std::ranges::find(keys.begin(), keys.begin() + num_keys, uint64_t{Rows[i].alg});
        if (first != keys.begin() + num_keys) continue;
        keys[num_keys] = Rows[i].alg;
        row_numbers[num_keys++] = static_cast<uint8_t>(i);
    }
    auto index = make_perfect_hash<num_value_slots(num_rows)>(std::span(keys).first(num_keys));
    for (uint8_t& number : index.numbers) number = row_numbers[number];
    return index;
}

template <const auto& Rows>
inline constexpr auto first_row_index = index_first_rows<Rows>();

/// The first row of `Rows` with that value, or null.
template <const auto& Rows>
constexpr auto find_row(pki_alg_t alg) -> decltype(&Rows[0]) {
    const auto& row = Rows[first_row_index<Rows>.number_of(alg)];
    return row.alg == alg ? &row : nullptr;
}

} // namespace pkider
