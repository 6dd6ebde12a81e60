#include <pkider/pkcs12.h>

#include "der/asn_block.h"
#include "der/asn_constant.h"
#include "pkcs12/identifiers.h"
#include "pkcs12/mac_data.h"
#include "pkcs12/safe_contents_writer.h"
#include "pkcs12/tags.h"
#include "pkcs8/encrypted_gost_key.h"
#include "platform/compiler.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace pkider {
namespace {

// ContentInfo ::= SEQUENCE { contentType OBJECT IDENTIFIER, content [0] }                              (RFC 2315 7)
//
// Its head is all before the content: everything but the content element itself.
using content_type_t = decltype(pkcs12_oid::data);

uint64_t content_info_size(uint64_t element_size) {
    return asn_checked_element_size(std::tuple_size_v<content_type_t> + asn_checked_element_size(element_size));
}

uint8_t* put_content_info_head(uint8_t* at, const content_type_t& type, uint64_t element_size) {
    at = asn_put_header(at, asn_tag_t::SEQUENCE, type.size() + asn_element_size(element_size));
    at = asn_put_constant(at, type);
    return asn_put_header(at, asn_tag_t::CONTEXT_0, element_size);
}

void append_content_info_head(const content_type_t& type, uint64_t element_size, std::string& out) {
    put_content_info_head(asn_append_room(out, content_info_size(element_size) - element_size), type, element_size);
}

// Overwrites a plaintext before its block is given to the caller as the output, or freed.
void wipe(std::string& plain) {
    overwrite(plain.data(), plain.size());
    plain.clear();
}

// EncryptedData ::= SEQUENCE { version 0, SEQUENCE { data, algorithm, [0] IMPLICIT OCTET STRING } }    (RFC 2315 13)
class encrypted_data_writer_t {
  public:
    // Lets the host's pbe_crypto_t encrypt the SafeContents. The result is ignored.
    // Required: Pkcs12Writer.RequiredResultOfEncryptIsIgnored.
    //
    // `block` is empty before and after; in between it contains the plaintext.
    encrypted_data_writer_t(const safe_contents_writer_t& safe, pbe_crypto_t& crypto, std::string& block) {
        safe.append_to(block);
        pkcs8_encrypted_pki_gost_t params;
        crypto.encrypt(reinterpret_cast<const uint8_t*>(block.data()), block.size(), params, m_encrypted);
        asn_write_pkcs8_encrypted_alg(params, m_algorithm); // `params` may point into m_encrypted and `block`
        wipe(block);

        m_info_size = pkcs12_oid::data.size() + m_algorithm.size() + asn_checked_element_size(m_encrypted.size());
        m_content_size = asn_version(0).size() + asn_checked_element_size(m_info_size);
        m_size = asn_checked_element_size(m_content_size);
    }

    uint64_t size() const { return m_size; }

    void append_to(std::string& out) const {
        uint8_t* at = asn_append_room(out, m_size - m_encrypted.size());
        at = asn_put_header(at, asn_tag_t::SEQUENCE, m_content_size);
        at = asn_put_constant(at, asn_version(0));
        at = asn_put_header(at, asn_tag_t::SEQUENCE, m_info_size);
        at = asn_put_constant(at, pkcs12_oid::data);
        at = std::copy(m_algorithm.begin(), m_algorithm.end(), at);
        asn_put_header(at, pkcs12_tag::primitive_0, m_encrypted.size());
        out.append(m_encrypted);
    }

  private:
    std::string m_encrypted;
    std::string m_algorithm;
    uint64_t m_info_size = 0;
    uint64_t m_content_size = 0;
    uint64_t m_size = 0;
};

// PFX ::= SEQUENCE { version 3, authSafe ContentInfo, macData MacData }                                 (RFC 7292 4)
//
// Its head is all before the OCTET STRING around the AuthenticatedSafe.
uint64_t pfx_content_size(uint64_t safe_size, uint64_t mac_data_size) {
    return asn_version(3).size() + content_info_size(safe_size) + mac_data_size;
}

uint64_t pfx_head_size(uint64_t safe_size, uint64_t mac_data_size) {
    return asn_checked_element_size(pfx_content_size(safe_size, mac_data_size)) - safe_size - mac_data_size;
}

uint8_t* put_pfx_head(uint8_t* at, uint64_t safe_size, uint64_t mac_data_size) {
    at = asn_put_header(at, asn_tag_t::SEQUENCE, pfx_content_size(safe_size, mac_data_size));
    at = asn_put_constant(at, asn_version(3));
    return put_content_info_head(at, pkcs12_oid::data, safe_size);
}

// A PFX up to its MacData.
struct unfinished_pfx_t {
    std::string bytes;
    uint64_t head_size = 0;
    uint64_t safe_size = 0; // the OCTET STRING, header included

    const uint8_t* safe() const { return reinterpret_cast<const uint8_t*>(bytes.data()) + head_size; }
};

// The MAC can only be made over the finished AuthenticatedSafe, which is between a header that counts the MacData
// and the MacData. So its size is assumed: a digest of 32 bytes, a salt of 8, a count of 3. A larger one that still
// fits the room, and does not change the size of the first header, costs nothing either.
constexpr uint64_t usual_mac_data_size = 65;
constexpr uint64_t mac_data_room = 256;

// Headers, algorithm and MacData around encrypted contents, so that one block serves for their plaintext and the file.
constexpr uint64_t usual_overhead = 1024;

// Gives an empty string room for exactly `size` bytes: to enlarge the room it has would double it.
void reserve_room(std::string& empty, uint64_t size) {
    if (empty.capacity() >= size) return;
    std::string().swap(empty);
    empty.reserve(checked_size(size));
}

unfinished_pfx_t begin_pfx(const pkcs12_easy_t& in, pbe_crypto_t& crypto) {
    unfinished_pfx_t pfx;
    std::optional<safe_contents_writer_t> plain;
    std::optional<encrypted_data_writer_t> encrypted;
    uint64_t infos_size = 0;
    if (!in.plain_items.empty()) infos_size += content_info_size(plain.emplace(in.plain_items).size());
    if (!in.protected_items.empty()) {
        const safe_contents_writer_t safe(in.protected_items);
        reserve_room(pfx.bytes, infos_size + safe.size() + usual_overhead);
        infos_size += content_info_size(encrypted.emplace(safe, crypto, pfx.bytes).size());
    }
    const uint64_t octets_size = asn_checked_element_size(infos_size);
    pfx.safe_size = asn_checked_element_size(octets_size);
    pfx.head_size = pfx_head_size(pfx.safe_size, usual_mac_data_size);
    reserve_room(pfx.bytes, pfx.head_size + pfx.safe_size + mac_data_room);

    uint8_t* at = asn_append_room(pfx.bytes, pfx.head_size + pfx.safe_size - infos_size);
    at = put_pfx_head(at, pfx.safe_size, usual_mac_data_size);
    at = asn_put_header(at, asn_tag_t::OCTET_STRING, octets_size);
    asn_put_header(at, asn_tag_t::SEQUENCE, infos_size);
    if (plain) {
        append_content_info_head(pkcs12_oid::data, plain->size(), pfx.bytes);
        plain->append_to(pfx.bytes);
    }
    if (encrypted) {
        append_content_info_head(pkcs12_oid::encrypted_data, encrypted->size(), pfx.bytes);
        encrypted->append_to(pfx.bytes);
    }
    return pfx;
}

std::string finish_pfx(unfinished_pfx_t pfx, const pkcs12_mac_t& mac) {
    const mac_data_writer_t mac_data(mac);
    const uint64_t head_size = pfx_head_size(pfx.safe_size, mac_data.size());
    const uint64_t size = head_size + pfx.safe_size + mac_data.size();

    std::string bytes;
    if (head_size == pfx.head_size && size <= pfx.bytes.capacity()) { // as foreseen
        bytes.swap(pfx.bytes);
    } else {
        bytes.reserve(checked_size(size));
        bytes.append(checked_size(head_size), '\0');
        bytes.append(pfx.bytes, checked_size(pfx.head_size), checked_size(pfx.safe_size));
    }
    put_pfx_head(reinterpret_cast<uint8_t*>(bytes.data()), pfx.safe_size, mac_data.size());
    mac_data.append_to(bytes);
    return bytes;
}

} // namespace
} // namespace pkider

void asn_write_pkcs12_easy(const pkcs12_easy_t& in, pbe_crypto_t* crypto, std::string& out) {
    using namespace pkider;

    unfinished_pfx_t pfx = begin_pfx(in, *crypto);
    pkcs12_mac_t mac;
    const bool made = crypto->make_mac(pfx.safe(), pfx.safe_size, mac);
    out = finish_pfx(std::move(pfx), made ? mac : in.mac);
}
