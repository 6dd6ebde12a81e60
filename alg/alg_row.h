// A row of the catalogue: an algorithm and its object identifier, written as dotted text and encoded by the compiler.
//
//     constexpr alg_row_t rows[] = {{PKI_ALG_SHA1, oid<"1.3.14.3.2.26">}};
#pragma once

#include "der/oid_contents.h"

#include <pkider/alg.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace pkider {

struct alg_row_t {
    pki_alg_t alg;
    PKI_OID oid;
};

/// The result of every lookup of a record that finds none.
inline constexpr PKI_OID empty_oid{};

/// A record that points at a constant.
template <std::size_t Size>
constexpr PKI_OID record_of(const std::array<uint8_t, Size>& bytes) {
    return {bytes.data(), static_cast<uint32_t>(Size)};
}

/// The contents octets of an object identifier.
template <literal_t Dotted>
inline constexpr PKI_OID oid = record_of(oid_contents<Dotted>);

/// The first row of a table with that value, or null.
template <typename Row, std::size_t Size>
constexpr const Row* find_row(const Row (&rows)[Size], pki_alg_t alg) {
    for (const Row& row : rows)
        if (row.alg == alg) return &row;
    return nullptr;
}

} // namespace pkider
