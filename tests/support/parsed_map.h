// A host's OID map, released at the end:
//
//     const parsed_map_t map("1.2.3 = MINE");
//     asn_dn_to_printable(der, length, out, order, map);
#pragma once

#include <pkider/oid.h>

#include <string_view>

namespace pkider_test {

class parsed_map_t {
  public:
    explicit parsed_map_t(std::string_view text) : m_handle(oid_map_parse(text.data(), text.size())) {}
    ~parsed_map_t() { oid_map_release(m_handle); }
    parsed_map_t(const parsed_map_t&) = delete;
    parsed_map_t& operator=(const parsed_map_t&) = delete;

    operator oid_map_handle_t() const { return m_handle; }

  private:
    oid_map_handle_t m_handle;
};

} // namespace pkider_test
