// Passwords and keys: bytes that are overwritten when they are dropped, on every path out of a function, and that are
// in locked memory as far as there is any (secret_memory.h).
//
//     secret_t key(32);
//     derive(key.data(), key.size());   // an exception from here on leaves no copy of the key
#pragma once

#include "tools/pkider/base/secret_memory.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace tool {

/// Overwrites the whole capacity of `text`, because erased text is still there, and leaves it empty.
inline void wipe(std::string& text) noexcept {
    text.resize(text.capacity());
    wipe(text.data(), text.size());
    text.clear();
}

/// Bytes that are wiped at the end of their life. Moved, never copied: there is only ever one of them.
class secret_t {
  public:
    secret_t() = default;
    explicit secret_t(std::size_t size) { resize(size); }
    explicit secret_t(std::string_view text) { assign(text.data(), text.size()); }
    explicit secret_t(std::span<const uint8_t> bytes) { assign(bytes.data(), bytes.size()); }

    secret_t(secret_t&& other) noexcept { swap(other); }
    secret_t& operator=(secret_t&& other) noexcept {
        secret_t(std::move(other)).swap(*this); // the old bytes are wiped with the temporary
        return *this;
    }
    secret_t(const secret_t&) = delete;
    secret_t& operator=(const secret_t&) = delete;
    ~secret_t() { release_secret(m_data, m_capacity); }

    /// Cuts the end off, or appends zeros. What is cut off, or left at the old place when all move, is wiped.
    void resize(std::size_t size) {
        if (size > m_capacity) move_to(std::max(size, 2 * m_size));
        if (size > m_size) std::memset(m_data + m_size, 0, size - m_size);
        if (size < m_size) wipe(m_data + size, m_size - size);
        m_size = size;
    }

    uint8_t* data() { return m_data; }
    const uint8_t* data() const { return m_data; }
    std::size_t size() const { return m_size; }
    bool empty() const { return m_size == 0; }

    std::span<const uint8_t> view() const { return {m_data, m_size}; }
    std::string_view text() const { return {reinterpret_cast<const char*>(m_data), m_size}; }

  private:
    void swap(secret_t& other) noexcept {
        std::swap(m_data, other.m_data);
        std::swap(m_size, other.m_size);
        std::swap(m_capacity, other.m_capacity);
    }

    void assign(const void* bytes, std::size_t size) {
        if (size == 0) return;
        move_to(size);
        std::memcpy(m_data, bytes, size);
        m_size = size;
    }

    void move_to(std::size_t capacity) {
        auto* const larger = static_cast<uint8_t*>(allocate_secret(capacity));
        if (m_size != 0) std::memcpy(larger, m_data, m_size);
        release_secret(m_data, m_capacity);
        m_data = larger;
        m_capacity = capacity;
    }

    uint8_t* m_data = nullptr;
    std::size_t m_size = 0, m_capacity = 0;
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
