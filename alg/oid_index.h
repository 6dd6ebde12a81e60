// From the contents octets of an object identifier to its algorithms as a hash, as a public key and
// as a certificate signature: one index over the three tables, built by the compiler.
#pragma once

#include "alg/cert_sign_rows.h"
#include "alg/hash_rows.h"
#include "alg/key_rows.h"
#include "alg/perfect_hash.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <span>

namespace pkider {

/// Contents octets as two words, the first and the last bytes, which overlap: equal words and an equal length are equal
/// octets, and no loop and no call compares them. Bench: alg/from_oid.
struct oid_words_t {
    static constexpr uint32_t min_len = 4;
    static constexpr uint32_t max_len = 16;

    uint64_t head = 0;
    uint64_t tail = 0;
    uint32_t len = 0;

    bool operator==(const oid_words_t&) const = default;
};

template <typename Word>
constexpr uint64_t load_word(const uint8_t* at) {
    std::array<uint8_t, sizeof(Word)> bytes{};
    std::copy_n(at, bytes.size(), bytes.begin());
    return std::bit_cast<Word>(bytes);
}

/// @param len  From min_len to max_len.
constexpr oid_words_t load_oid(const uint8_t* oid, uint32_t len) {
    if (len >= sizeof(uint64_t)) [[likely]]
        return {load_word<uint64_t>(oid), load_word<uint64_t>(oid + len - 8), len};
    return {load_word<uint32_t>(oid), load_word<uint32_t>(oid + len - 4), len};
}

/// The algorithms of an object identifier: in each table the first row that has it, or PKI_ALG_NONE.
struct known_oid_t {
    oid_words_t words;
    pki_alg_t hash = PKI_ALG_NONE;
    pki_alg_t key = PKI_ALG_NONE;
    pki_alg_t cert_sign = PKI_ALG_NONE;
    pki_alg_t first = PKI_ALG_NONE; ///< Of the three above the first that is one. Bench: alg/from_oid.
};

class oid_index_t {
  public:
    constexpr oid_index_t() {
        add(hash_rows, &known_oid_t::hash);
        add(key_rows, &known_oid_t::key);
        add(cert_sign_rows, &known_oid_t::cert_sign);
        std::array<uint64_t, max_oids> keys{};
        const auto key_of = [](const known_oid_t& known) { return known.words.tail; };
        std::transform(m_oids.begin(), m_oids.end(), keys.begin(), key_of);
        m_hash = make_perfect_hash<num_slots>(std::span(keys).first(m_num_oids));
    }

    /// The entry of an object identifier, or null.
    constexpr const known_oid_t* find(const uint8_t* oid, uint32_t len) const {
        if (len - oid_words_t::min_len > oid_words_t::max_len - oid_words_t::min_len) return nullptr; // 0 wraps
        const oid_words_t words = load_oid(oid, len);
        const known_oid_t& known = m_oids[m_hash.number_of(words.tail)];
        return known.words == words ? &known : nullptr;
    }

  private:
    static constexpr std::size_t max_oids = std::size(hash_rows) + std::size(key_rows) + std::size(cert_sign_rows);
    static constexpr std::size_t num_slots = 256;

    constexpr void add(std::span<const alg_row_t> rows, pki_alg_t known_oid_t::*kind) {
        for (const alg_row_t& row : rows) {
            if (row.oid.len < oid_words_t::min_len || row.oid.len > oid_words_t::max_len)
                throw "does not fit two words";
            known_oid_t& known = entry(load_oid(row.oid.data, row.oid.len));
            if (known.*kind == PKI_ALG_NONE) known.*kind = row.alg; // the first row wins
            if (known.first == PKI_ALG_NONE) known.first = row.alg; // and the first table
        }
    }

    constexpr known_oid_t& entry(const oid_words_t& words) {
        for (std::size_t i = 0; i < m_num_oids; ++i)
            if (m_oids[i].words == words) return m_oids[i];
        m_oids[m_num_oids].words = words;
        return m_oids[m_num_oids++];
    }

    std::size_t m_num_oids = 0;
    std::array<known_oid_t, max_oids> m_oids{};
    perfect_hash_t<num_slots> m_hash{};
};

inline constexpr oid_index_t oid_index;

/// The algorithm of one kind for an object identifier, or PKI_ALG_NONE.
inline pki_alg_t find_alg(const uint8_t* oid, uint32_t len, pki_alg_t known_oid_t::*kind) {
    const known_oid_t* const known = oid_index.find(oid, len);
    return known != nullptr ? known->*kind : PKI_ALG_NONE;
}

} // namespace pkider
