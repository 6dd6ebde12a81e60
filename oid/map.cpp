#include "oid/map.h"

#include "der/checked_size.h"

#include <memory>

namespace pkider {

void oid_map_t::assign(std::string_view text) {
    const auto* const added = new oid_map_entries_t(text);
    clear();
    m_added = added;
}

void oid_map_t::clear() noexcept {
    delete m_added;
    m_added = nullptr;
}

void oid_map_t::destroy(const oid_map_t* map) noexcept {
    if (map == nullptr || map->m_has_builtin) return; // those with built-in rows are not on the heap
    delete map->m_added;
    delete map;
}

const OIDdescr_t* oid_map_t::find_asn_anywhere(const uint8_t* asn, uint64_t length) const {
    const OIDdescr_t* const row = m_has_builtin ? builtin_by_contents.find(asn, length) : nullptr;
    return row != nullptr || m_added == nullptr ? row : m_added->find_asn(asn, length);
}

} // namespace pkider

oid_map_handle_t oid_map_parse(const char* text, uint64_t length) {
    auto map = std::make_unique<pkider::oid_map_t>(pkider::oid_map_start_t::EMPTY);
    map->assign({text, pkider::checked_size(length)});
    return {map.release()};
}

void oid_map_release(oid_map_handle_t map) {
    pkider::oid_map_t::destroy(map.map);
}

const OIDdescr_t* oid_map_find_asn(oid_map_handle_t map, const uint8_t* asn, uint64_t length) {
    return map.map == nullptr ? nullptr : map.map->find_asn(asn, length);
}

const OIDdescr_t* oid_map_find_str(oid_map_handle_t map, const char* str, uint64_t length) {
    return map.map == nullptr ? nullptr : map.map->find_str(str, length);
}

const OIDdescr_t* oid_map_find_sn(oid_map_handle_t map, const char* sn, uint64_t length) {
    return map.map == nullptr ? nullptr : map.map->find_sn(sn, length);
}
