#include "bench/support/inputs.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <set>
#include <string_view>

namespace pkider_bench {
namespace {

constexpr uint8_t sha256_prefix[] = {0x30, 0x31, 0x30, 0x0D, 0x06, 0x09, 0x60, 0x86, 0x48, 0x01,
                                     0x65, 0x03, 0x04, 0x02, 0x01, 0x05, 0x00, 0x04, 0x20};
constexpr uint8_t rsa_encryption[] = {0x2A, 0x86, 0x48, 0x86, 0xF7, 0x0D, 0x01, 0x01, 0x01};

int base64_value(char c) {
    constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    const std::size_t at = alphabet.find(c);
    return at == std::string_view::npos ? -1 : static_cast<int>(at);
}

bytes_t from_base64(std::string_view text) {
    bytes_t out;
    uint32_t bits = 0;
    int num_bits = 0;
    for (const char c : text) {
        const int value = base64_value(c);
        if (value < 0) continue;
        bits = bits << 6 | static_cast<uint32_t>(value);
        num_bits += 6;
        if (num_bits < 8) continue;
        num_bits -= 8;
        out.push_back(static_cast<uint8_t>(bits >> num_bits));
    }
    return out;
}

std::vector<bytes_t> read_bundle() {
    const char* const named = std::getenv("PKIDER_BENCH_BUNDLE");
    const std::string path = named != nullptr ? named : "/etc/ssl/certs/ca-certificates.crt";
    std::ifstream file(path, std::ios::binary);
    const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    std::vector<bytes_t> out;
    constexpr std::string_view begin = "-----BEGIN CERTIFICATE-----";
    for (std::size_t at = text.find(begin); at != std::string::npos; at = text.find(begin, at + 1)) {
        const std::size_t body = at + begin.size();
        out.push_back(from_base64(std::string_view(text).substr(body, text.find("-----END", body) - body)));
    }
    if (out.empty()) {
        std::fprintf(stderr, "no certificates in %s\n", path.c_str());
        std::exit(1);
    }
    return out;
}

struct parts_t {
    std::vector<bytes_t> names, public_keys, signature_algorithms;
};

// Certificate ::= SEQUENCE { tbsCertificate, ... }; the children of tbsCertificate are known by their place.
parts_t split(const bytes_t& certificate, parts_t out) {
    const uint8_t* const end = certificate.data() + certificate.size();
    uint8_t tag = 0;
    std::size_t length = 0;
    const uint8_t* at = read_header(certificate.data(), end, &tag, &length);
    at = read_header(at, end, &tag, &length);
    std::vector<bytes_t> children;
    for (const uint8_t* const tbs_end = at + length; at < tbs_end;) {
        const uint8_t* const content = read_header(at, end, &tag, &length);
        children.emplace_back(at, content + length);
        at = content + length;
    }
    const std::size_t first = children[0][0] == 0xA0 ? 1 : 0; // version
    out.signature_algorithms.push_back(children[first + 1]);
    out.names.push_back(children[first + 2]);
    out.names.push_back(children[first + 4]);
    out.public_keys.push_back(children[first + 5]);
    return out;
}

const parts_t& parts() {
    static const parts_t all = [] {
        parts_t out;
        for (const bytes_t& certificate : certificates()) out = split(certificate, std::move(out));
        return out;
    }();
    return all;
}

std::vector<bytes_t> oids_of(const bytes_t& der) {
    std::vector<bytes_t> out;
    walk(der, [&](uint8_t tag, const uint8_t*, const uint8_t* content, std::size_t length) {
        if (tag == 0x06) out.emplace_back(content, content + length);
    });
    return out;
}

std::string dotted(const bytes_t& contents) {
    std::string out;
    uint32_t value = 0;
    for (const uint8_t byte : contents) {
        value = value << 7 | (byte & 0x7F);
        if ((byte & 0x80) != 0) continue;
        if (out.empty()) {
            const uint32_t first = std::min<uint32_t>(value / 40, 2);
            out = std::to_string(first) + '.' + std::to_string(value - 40 * first);
        } else {
            out += '.' + std::to_string(value);
        }
        value = 0;
    }
    return out;
}

// Country, organisation and the like: the types that every peer prints and reads by the same short name.
const char* common_short_name(const uint8_t* oid, std::size_t length) {
    if (length != 3 || oid[0] != 0x55 || oid[1] != 0x04) return nullptr;
    switch (oid[2]) {
    case 3:
        return "CN";
    case 6:
        return "C";
    case 7:
        return "L";
    case 8:
        return "ST";
    case 10:
        return "O";
    case 11:
        return "OU";
    default:
        return nullptr;
    }
}

bool is_plain(const std::string& value) {
    constexpr std::string_view special = "\"#+,;<=>\\/*";
    const auto plain = [&](char c) { return c >= ' ' && c <= '~' && special.find(c) == std::string_view::npos; };
    return !value.empty() && value.front() != ' ' && value.back() != ' ' && std::ranges::all_of(value, plain);
}

// Empty when the name is not a plain one.
std::string plain_line(const bytes_t& name) {
    std::string line;
    bool plain = true;
    const char* type = nullptr;
    std::set<std::string_view> types; // some peers keep one value of each type
    walk(name, [&](uint8_t tag, const uint8_t*, const uint8_t* content, std::size_t length) {
        if (tag == 0x06) {
            type = common_short_name(content, length);
            if (type == nullptr || !types.insert(type).second) plain = false;
            return;
        }
        if ((tag & 0x20) != 0 || !plain) return;
        const std::string value(content, content + length);
        plain = (tag == 0x13 || tag == 0x0C) && is_plain(value);
        if (!plain) return;
        if (!line.empty()) line += ',';
        line += type;
        line += '=' + value;
    });
    return plain ? line : "";
}

} // namespace

const uint8_t* read_header(const uint8_t* at, const uint8_t* end, uint8_t* tag, std::size_t* length) {
    if (at == nullptr || end - at < 2) return nullptr;
    *tag = at[0];
    *length = at[1];
    at += 2;
    if (*length >= 0x80) {
        std::size_t num_octets = *length & 0x7F;
        for (*length = 0; num_octets > 0 && at < end; --num_octets) *length = *length << 8 | *at++;
    }
    return static_cast<std::size_t>(end - at) >= *length ? at : nullptr;
}

const std::vector<bytes_t>& certificates() {
    static const std::vector<bytes_t> all = read_bundle();
    return all;
}

const std::vector<bytes_t>& names() {
    return parts().names;
}
const std::vector<bytes_t>& signature_algorithms() {
    return parts().signature_algorithms;
}

const plain_names_t& plain_names() {
    static const plain_names_t all = [] {
        plain_names_t out;
        for (const bytes_t& name : names()) {
            std::string line = plain_line(name);
            if (line.empty()) continue;
            out.der.push_back(name);
            out.lines.push_back(std::move(line));
        }
        return out;
    }();
    return all;
}

const std::vector<bytes_t>& rsa_public_keys() {
    static const std::vector<bytes_t> all = [] {
        std::vector<bytes_t> out;
        for (const bytes_t& key : parts().public_keys) {
            if (oids_of(key).front() == bytes_t(std::begin(rsa_encryption), std::end(rsa_encryption)))
                out.push_back(key);
        }
        return out;
    }();
    return all;
}

const std::vector<bytes_t>& oids() {
    static const std::vector<bytes_t> all = [] {
        std::set<std::string> found;
        for (const bytes_t& certificate : certificates()) {
            for (const bytes_t& oid : oids_of(certificate)) found.emplace(oid.begin(), oid.end());
        }
        std::vector<bytes_t> out;
        for (const std::string& oid : found) out.emplace_back(oid.begin(), oid.end());
        return out;
    }();
    return all;
}

const std::vector<std::string>& dotted_oids() {
    static const std::vector<std::string> all = [] {
        std::vector<std::string> out;
        for (const bytes_t& oid : oids()) out.push_back(dotted(oid));
        return out;
    }();
    return all;
}

const std::vector<bytes_t>& attribute_types() {
    static const std::vector<bytes_t> all = [] {
        std::vector<bytes_t> out;
        for (const bytes_t& name : names()) {
            for (bytes_t& oid : oids_of(name)) out.push_back(std::move(oid));
        }
        return out;
    }();
    return all;
}

const std::vector<bytes_t>& signature_oids() {
    static const std::vector<bytes_t> all = [] {
        std::vector<bytes_t> out;
        for (const bytes_t& algorithm : signature_algorithms()) out.push_back(oids_of(algorithm).front());
        return out;
    }();
    return all;
}

bytes_t made_bytes(std::size_t size, uint32_t seed) {
    std::mt19937 random(seed);
    bytes_t out(size);
    for (uint8_t& byte : out) byte = static_cast<uint8_t>(random());
    return out;
}

bytes_t element(uint8_t tag, const bytes_t& contents) {
    bytes_t out = {tag};
    if (contents.size() >= 0x80) {
        unsigned num_octets = 1;
        while (contents.size() >> 8 * num_octets != 0) ++num_octets;
        out.push_back(static_cast<uint8_t>(0x80 | num_octets));
        for (unsigned n = num_octets - 1; n > 0; --n) out.push_back(static_cast<uint8_t>(contents.size() >> 8 * n));
    }
    out.push_back(static_cast<uint8_t>(contents.size()));
    out.insert(out.end(), contents.begin(), contents.end());
    return out;
}

std::vector<bytes_t> oid_elements(const std::vector<bytes_t>& contents) {
    std::vector<bytes_t> out;
    for (const bytes_t& oid : contents) out.push_back(element(0x06, oid));
    return out;
}

const std::vector<bytes_t>& dsa_values() {
    static const std::vector<bytes_t> all = [] {
        std::vector<bytes_t> out;
        for (uint32_t seed = 0; seed < 100; ++seed) {
            bytes_t contents;
            for (const uint32_t half : {0u, 1u}) {
                bytes_t number = made_bytes(seed % 2 == 0 ? 20 : 32, 2 * seed + half);
                number[0] &= 0x7F;
                const bytes_t integer = element(0x02, number);
                contents.insert(contents.end(), integer.begin(), integer.end());
            }
            out.push_back(element(0x30, contents));
        }
        return out;
    }();
    return all;
}

const std::vector<std::string>& digests() {
    static const std::vector<std::string> all = [] {
        std::vector<std::string> out;
        for (uint32_t seed = 0; seed < 100; ++seed) {
            const bytes_t digest = made_bytes(32, seed);
            out.emplace_back(digest.begin(), digest.end());
        }
        return out;
    }();
    return all;
}

const std::vector<std::string>& digest_infos() {
    static const std::vector<std::string> all = [] {
        std::vector<std::string> out;
        for (const std::string& digest : digests()) {
            out.push_back(std::string(std::begin(sha256_prefix), std::end(sha256_prefix)) + digest);
        }
        return out;
    }();
    return all;
}

std::string long_name_line(std::size_t num_rdns, bool as_one_set) {
    constexpr const char* types[] = {"CN", "O", "OU", "L"};
    std::string line;
    for (std::size_t i = 0; i < num_rdns; ++i) {
        if (i != 0) line += as_one_set ? '+' : ',';
        line += types[i % 4];
        line += "=Example Unit " + std::to_string(i % 1000);
    }
    return line;
}

bytes_t long_name(std::size_t num_rdns, bool as_one_set) {
    constexpr uint8_t types[] = {3, 10, 11, 7};
    bytes_t rdns, set;
    for (std::size_t i = 0; i < num_rdns; ++i) {
        const std::string value = "Example Unit " + std::to_string(i % 1000);
        bytes_t pair = {0x06, 0x03, 0x55, 0x04, types[i % 4]};
        const bytes_t text = element(0x13, bytes_t(value.begin(), value.end()));
        pair.insert(pair.end(), text.begin(), text.end());
        const bytes_t sequence = element(0x30, pair);
        if (as_one_set) {
            set.insert(set.end(), sequence.begin(), sequence.end());
            continue;
        }
        const bytes_t rdn = element(0x31, sequence);
        rdns.insert(rdns.end(), rdn.begin(), rdn.end());
    }
    return element(0x30, as_one_set ? element(0x31, set) : rdns);
}

} // namespace pkider_bench
