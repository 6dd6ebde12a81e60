#include "pkcs12/mac_data.h"

#include "der/asn_block.h"
#include "der/asn_constant.h"
#include "der/element_steps.h"
#include "pkcs12/identifiers.h"

// MacData ::= SEQUENCE {                                                                              (RFC 7292 4)
//     mac         SEQUENCE { digestAlgorithm SEQUENCE { OBJECT IDENTIFIER, ANY OPTIONAL }, digest OCTET STRING },
//     macSalt     OCTET STRING,
//     iterations  INTEGER DEFAULT 1 }

bool asn_read_pkcs12_MacData(const uint8_t* data, uint64_t size, pkcs12_mac_t& mac) {
    using namespace pkider;

    asn_element_t mac_data = asn_contents(data, size);
    asn_element_t digest_info;
    if (!asn_next_element(asn_tag_t::SEQUENCE, mac_data, digest_info)) return false;
    if (!asn_next_contents(asn_tag_t::SEQUENCE, digest_info, mac.digest_alg_len, mac.digest_alg)) return false;
    if (!asn_next_contents(asn_tag_t::OCTET_STRING, digest_info, mac.digest_len, mac.digest)) return false;
    if (!asn_next_contents(asn_tag_t::OCTET_STRING, mac_data, mac.salt_len, mac.salt)) return false;

    mac.iterations = 1;
    if (!asn_is_next(asn_tag_t::INTEGER, mac_data)) return true;
    asn_element_t count;
    if (!asn_next_element(asn_tag_t::INTEGER, mac_data, count)) return false;
    // Required: MacData.RequiredFiveByteCountLosesItsHighByte.
    return asn_read_uint32(count.content, count.length, &mac.iterations);
}

namespace pkider {
namespace {

// Whatever digest_alg says. Required: MacDataWriter.RequiredDigestAlgorithmIsAlwaysThatOf1994.
constexpr auto digest_algorithm = asn_constant_sequence(pkcs12_oid::gost_3411_94, asn_null);

} // namespace

// Required: MacDataWriter.RequiredZeroBytesOfTheCountAreDropped.
mac_data_writer_t::mac_data_writer_t(const pkcs12_mac_t& mac)
    : m_mac(mac),
      m_count_size(static_cast<uint64_t>(asn_put_uint32_content(m_count, mac.iterations) - m_count)),
      m_digest_info_size(digest_algorithm.size() + asn_checked_element_size(mac.digest_len)),
      m_content_size(asn_checked_element_size(m_digest_info_size) + asn_checked_element_size(mac.salt_len) +
                     asn_element_size(m_count_size)),
      m_size(asn_checked_element_size(m_content_size)) {}

void mac_data_writer_t::append_to(std::string& out) const {
    uint8_t* at = asn_append_room(out, m_size);
    at = asn_put_header(at, asn_tag_t::SEQUENCE, m_content_size);
    at = asn_put_header(at, asn_tag_t::SEQUENCE, m_digest_info_size);
    at = asn_put_constant(at, digest_algorithm);
    at = asn_put_header(at, asn_tag_t::OCTET_STRING, m_mac.digest_len);
    at = asn_put_bytes(at, m_mac.digest, m_mac.digest_len);
    at = asn_put_header(at, asn_tag_t::OCTET_STRING, m_mac.salt_len);
    at = asn_put_bytes(at, m_mac.salt, m_mac.salt_len);
    at = asn_put_header(at, asn_tag_t::INTEGER, m_count_size);
    asn_put_bytes(at, m_count, m_count_size);
}

} // namespace pkider
