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
    explicit secret_t(std::size_t size) : bytes_(size) {}
    explicit secret_t(std::string_view text) : bytes_(text.begin(), text.end()) {}
    explicit secret_t(std::span<const uint8_t> bytes) : bytes_(bytes.begin(), bytes.end()) {}

    secret_t(secret_t&& other) noexcept : bytes_(std::exchange(other.bytes_, {})) {}
    secret_t& operator=(secret_t&& other) noexcept {
        bytes_.swap(other.bytes_); // the old bytes are wiped with `other`
        return *this;
    }
    secret_t(const secret_t&) = delete;
    secret_t& operator=(const secret_t&) = delete;
    ~secret_t() { wipe(bytes_.data(), bytes_.size()); }

    /// Cuts the end off, or puts zeros behind it. What is cut off, or left at the old place when all move, is wiped.
    void resize(std::size_t size) {
        if (size > bytes_.capacity()) {
            secret_t larger;
            larger.bytes_.reserve(std::max(size, 2 * bytes_.size()));
            larger.bytes_.assign(bytes_.begin(), bytes_.end());
            bytes_.swap(larger.bytes_);
        } else if (size < bytes_.size()) {
            wipe(bytes_.data() + size, bytes_.size() - size);
        }
        bytes_.resize(size);
    }

    uint8_t* data() { return bytes_.data(); }
    const uint8_t* data() const { return bytes_.data(); }
    std::size_t size() const { return bytes_.size(); }
    bool empty() const { return bytes_.empty(); }

    std::span<const uint8_t> view() const { return bytes_; }
    std::string_view text() const { return {reinterpret_cast<const char*>(bytes_.data()), bytes_.size()}; }

  private:
    std::vector<uint8_t> bytes_;
};

/// Wipes a string that somebody else fills (a plaintext handed out in a std::string) when the scope is left.
class wipe_guard_t {
  public:
    explicit wipe_guard_t(std::string& text) : text_(text) {}
    wipe_guard_t(const wipe_guard_t&) = delete;
    wipe_guard_t& operator=(const wipe_guard_t&) = delete;
    ~wipe_guard_t() { wipe(text_); }

  private:
    std::string& text_;
};

} // namespace tool
