// The three keys of an OID map's entry: where each is, when two are equal, and how they spread over an index.
#pragma once

#include "platform/ascii.h"

#include <pkider/oid.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace pkider {

/// One step of a hash, good in its high bits. It keeps nobody from choosing keys that collide; the index bears them.
constexpr uint64_t hash_step(uint64_t hash, uint64_t word) {
    const uint64_t product = (hash ^ word) * 0x9E3779B97F4A7C15;
    return product ^ product >> 32;
}

/// Eight bytes a step. Bench: oid/parse_map.
inline uint64_t hash_bytes(std::string_view key) {
    uint64_t hash = hash_step(0, key.size());
    for (; key.size() >= sizeof(uint64_t); key.remove_prefix(sizeof(uint64_t))) {
        uint64_t word = 0;
        std::memcpy(&word, key.data(), sizeof(word));
        hash = hash_step(hash, word);
    }
    uint64_t rest = 0;
    for (const char c : key) rest = rest << 8 | static_cast<uint8_t>(c);
    return hash_step(hash, rest) * 0xD1342543DE82EF95;
}

/// Shorter keys come first, then bytes decide.
inline int compare_bytes(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return a.size() < b.size() ? -1 : 1;
    return a.compare(b);
}

struct by_contents_t {
    static std::string_view key(const OIDdescr_t& entry) {
        return {reinterpret_cast<const char*>(entry.asn), static_cast<std::size_t>(entry.asn_len)};
    }
    static uint64_t hash(std::string_view key) { return hash_bytes(key); }
    static int compare(std::string_view a, std::string_view b) { return compare_bytes(a, b); }
};

struct by_dotted_text_t {
    static std::string_view key(const OIDdescr_t& entry) {
        return {entry.str, static_cast<std::size_t>(entry.str_len)};
    }
    static uint64_t hash(std::string_view key) { return hash_bytes(key); }
    static int compare(std::string_view a, std::string_view b) { return compare_bytes(a, b); }
};

struct by_short_name_t {
    static std::string_view key(const OIDdescr_t& entry) { return {entry.sn, static_cast<std::size_t>(entry.sn_len)}; }
    static uint64_t hash(std::string_view key) {
        uint64_t hash = key.size();
        for (const char c : key) hash = hash_step(hash, static_cast<uint8_t>(ascii_upper(c)));
        return hash * 0xD1342543DE82EF95;
    }
    static int compare(std::string_view a, std::string_view b) {
        if (a.size() != b.size()) return a.size() < b.size() ? -1 : 1;
        return ascii_compare_ignoring_case(a.data(), b.data(), a.size());
    }
};

} // namespace pkider
