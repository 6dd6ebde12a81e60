// The writer of MacData; its reader, asn_read_pkcs12_MacData, is in pkider/pkcs12.h.
#pragma once

#include <pkider/pkcs12.h>

#include "der/asn_block.h"
#include "der/uint32_content.h"

#include <cstdint>
#include <string>

namespace pkider {

/// MacData with digest, salt and iteration count of a record, its sizes counted when it is made.
class mac_data_writer_t {
  public:
    /// @param mac  Kept by reference, and what it points at.
    /// @throws     std::length_error.
    explicit mac_data_writer_t(const pkcs12_mac_t& mac);

    uint64_t size() const { return m_size; }

    /// Appends size() bytes to `out`.
    void append_to(std::string& out) const;

  private:
    const pkcs12_mac_t& m_mac;
    uint8_t m_count[asn_max_uint32_content_size];
    uint64_t m_count_size;
    uint64_t m_digest_info_size;
    uint64_t m_content_size;
    uint64_t m_size;
};

} // namespace pkider
