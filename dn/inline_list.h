// A list of plain records that needs no heap for the first few: nearly every Name has less than a dozen attributes.
#pragma once

#include <cstddef>
#include <memory>
#include <type_traits>

namespace pkider {

/// @tparam InlineSize  Number of records before the heap is used.
template <typename Record, std::size_t InlineSize>
class inline_list_t {
    static_assert(std::is_trivially_copyable_v<Record> && std::is_trivially_destructible_v<Record>);

  public:
    inline_list_t() = default;
    inline_list_t(const inline_list_t&) = delete;
    inline_list_t& operator=(const inline_list_t&) = delete;
    ~inline_list_t() {
        if (on_heap()) std::allocator<Record>().deallocate(m_begin, m_capacity);
    }

    /// @return  A new record at the end, without a value.
    /// @throws  std::bad_alloc; the list is then as it was.
    Record& append() {
        if (m_size == m_capacity) grow(2 * m_capacity);
        return *::new (m_begin + m_size++) Record;
    }

    /// @throws std::bad_alloc; the list is then as it was.
    void reserve(std::size_t capacity) {
        if (capacity > m_capacity) grow(capacity);
    }

    std::size_t size() const { return m_size; }
    const Record& operator[](std::size_t index) const { return m_begin[index]; }
    const Record* begin() const { return m_begin; }
    const Record* end() const { return m_begin + m_size; }

  private:
    Record* inline_records() { return reinterpret_cast<Record*>(m_inline_storage); }
    bool on_heap() { return m_begin != inline_records(); }

    void grow(std::size_t capacity) {
        Record* const grown = std::allocator<Record>().allocate(capacity);
        std::uninitialized_copy_n(m_begin, m_size, grown);
        if (on_heap()) std::allocator<Record>().deallocate(m_begin, m_capacity);
        m_begin = grown;
        m_capacity = capacity;
    }

    alignas(Record) std::byte m_inline_storage[InlineSize * sizeof(Record)];
    Record* m_begin = inline_records();
    std::size_t m_size = 0;
    std::size_t m_capacity = InlineSize;
};

} // namespace pkider
