// SafeContents written from a list of items (RFC 7292 4.2).
#pragma once

#include <pkider/pkcs12.h>

#include <cstdint>
#include <list>
#include <string>

namespace pkider {

/// An OCTET STRING around the SafeContents of a list, its size counted when it is made.
class safe_contents_writer_t {
  public:
    /// @param items  Kept by reference; must not change before append_to.
    /// @throws       std::length_error.
    explicit safe_contents_writer_t(const std::list<pkcs12_item_t>& items);

    uint64_t size() const { return m_size; }

    /// Appends size() bytes to `out`.
    void append_to(std::string& out) const;

  private:
    const std::list<pkcs12_item_t>& m_items;
    uint64_t m_bags_size;
    uint64_t m_safe_size;
    uint64_t m_size;
};

} // namespace pkider
