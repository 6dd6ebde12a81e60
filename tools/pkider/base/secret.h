// Passwords and keys: bytes that are overwritten when they are dropped, on every path out of a function.
//
//     secret_t key(32);
//     derive(key.data(), key.size());   // an exception from here on leaves no key behind
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tool {

/// Overwrites `size` bytes, in a way that the optimiser keeps although nobody reads them again.
inline void wipe(void* data, std::size_t size) noexcept {
    if (size == 0) return;
    std::memset(data, 0, size);
    asm volatile("" : : "r"(data) : "memory"); // the memory counts as read here, so the stores above must happen
}

/// Overwrites all that `text` has room for, because what was erased from it still stands there, and leaves it empty.
inline void wipe(std::string& text) noexcept {
    text.resize(text.capacity());
    wipe(text.data(), text.size());
    text.clear();
}

/// Bytes that are wiped at the end of their life. Moved, never copied: there is only ever one of them.
class secret_t {
  public:
    secret_t() = default;
    explicit secret_t(std::size_t size) : m_bytes(size) {}
    explicit secret_t(std::string_view text) : m_bytes(text.begin(), text.end()) {}
    explicit secret_t(std::span<const uint8_t> bytes) : m_bytes(bytes.begin(), bytes.end()) {}

    secret_t(secret_t&& other) noexcept : m_bytes(std::exchange(other.m_bytes, {})) {}
    secret_t& operator=(secret_t&& other) noexcept {
        m_bytes.swap(other.m_bytes); // the old bytes are wiped with `other`
        return *this;
    }
    secret_t(const secret_t&) = delete;
    secret_t& operator=(const secret_t&) = delete;
    ~secret_t() { wipe(m_bytes.data(), m_bytes.size()); }

    /// Cuts the end off, or puts zeros behind it. What is cut off, or left at the old place when all move, is wiped.
    void resize(std::size_t size) {
        if (size > m_bytes.capacity()) {
            secret_t larger;
            larger.m_bytes.reserve(std::max(size, 2 * m_bytes.size()));
            larger.m_bytes.assign(m_bytes.begin(), m_bytes.end());
            m_bytes.swap(larger.m_bytes);
        } else if (size < m_bytes.size()) {
            wipe(m_bytes.data() + size, m_bytes.size() - size);
        }
        m_bytes.resize(size);
    }

    uint8_t* data() { return m_bytes.data(); }
    const uint8_t* data() const { return m_bytes.data(); }
    std::size_t size() const { return m_bytes.size(); }
    bool empty() const { return m_bytes.empty(); }

    std::span<const uint8_t> view() const { return m_bytes; }
    std::string_view text() const { return {reinterpret_cast<const char*>(m_bytes.data()), m_bytes.size()}; }

  private:
    std::vector<uint8_t> m_bytes;
};

/// Wipes a string that somebody else fills (a plaintext handed out in a std::string) when the scope is left.
class wipe_guard_t {
  public:
    explicit wipe_guard_t(std::string& text) : m_text(text) {}
    wipe_guard_t(const wipe_guard_t&) = delete;
    wipe_guard_t& operator=(const wipe_guard_t&) = delete;
    ~wipe_guard_t() { wipe(m_text); }

  private:
    std::string& m_text;
};

} // namespace tool
