#include <pkider/pkcs12.h>

#include "der/element_steps.h"
#include "pkcs12/identifiers.h"
#include "pkcs12/safe_contents_reader.h"
#include "pkcs12/tags.h"
#include "pkcs8/encrypted_gost_key.h"

namespace pkider {
namespace {

// Any single byte counts as the right version; of more bytes only the first is compared.
// Required: Pkcs12Version.RequiredLenientTest.
bool is_version(const asn_element_t& version, uint8_t wanted) {
    return version.length == 1 || (version.length > 1 && version.content[0] == wanted);
}

// ContentInfo ::= SEQUENCE { contentType OBJECT IDENTIFIER, content [0] }                              (RFC 2315 7)
bool read_content_info(asn_element_t info, asn_element_t& type, asn_element_t& content) {
    return asn_next_element(asn_tag_t::OBJECT_IDENTIFIER, info, type) &&
           asn_next_element(asn_tag_t::CONTEXT_0, info, content);
}

struct encrypted_data_t {
    asn_element_t content_type;
    asn_element_t algorithm; // contents of the AlgorithmIdentifier
    asn_element_t encrypted;
};

// EncryptedData ::= SEQUENCE {                                                                         (RFC 2315 13)
//     version                INTEGER,
//     encryptedContentInfo   SEQUENCE { contentType, algorithm, encryptedContent [0] IMPLICIT OCTET STRING },
//     unprotectedAttributes  ANY OPTIONAL }
bool read_encrypted_data(asn_element_t content, encrypted_data_t& out) {
    asn_element_t data, version, info, more;
    if (!asn_next_element(asn_tag_t::SEQUENCE, content, data)) return false;
    if (!asn_next_element(asn_tag_t::INTEGER, data, version) || !is_version(version, 0)) return false;
    if (!asn_next_element(asn_tag_t::SEQUENCE, data, info)) return false;
    if (data.length != 0 && !asn_next_element(asn_tag_t::ANY, data, more)) return false;

    return asn_next_element(asn_tag_t::OBJECT_IDENTIFIER, info, out.content_type) &&
           asn_next_element(asn_tag_t::SEQUENCE, info, out.algorithm) &&
           asn_next_element(pkcs12_tag::primitive_0, info, out.encrypted);
}

// Puts a plaintext at the end of `buffers` when the walk of its contents ends in any way: a span that was read from it
// never dangles, and the plaintexts found inside it precede it. Splicing keeps the address of the bytes.
class buffer_keeper_t {
  public:
    buffer_keeper_t(std::list<std::string>& buffers, std::list<std::string>& plain)
        : m_buffers(buffers), m_plain(plain) {}
    ~buffer_keeper_t() { m_buffers.splice(m_buffers.end(), m_plain); }
    buffer_keeper_t(const buffer_keeper_t&) = delete;
    buffer_keeper_t& operator=(const buffer_keeper_t&) = delete;

  private:
    std::list<std::string>& m_buffers;
    std::list<std::string>& m_plain;
};

// SafeContents are in an OCTET STRING, both unencrypted and in a plaintext; in RFC 7292 a plaintext has no OCTET
// STRING. Required: Pkcs12Reader.RequiredPlaintextOfAContentIsAnOctetString.
bool read_wrapped_safe(asn_element_t content, safe_kind_t kind, pbe_crypto_t& crypto, pkcs12_easy_t& out) {
    asn_element_t safe;
    return asn_next_element(asn_tag_t::OCTET_STRING, content, safe) &&
           read_safe_contents(safe.content, safe.length, kind, crypto, out);
}

bool read_encrypted_safe(const asn_element_t& content, pbe_crypto_t& crypto, pkcs12_easy_t& out) {
    encrypted_data_t data;
    if (!read_encrypted_data(content, data)) return false;
    if (!asn_is_oid(data.content_type, pkcs12_oid::data)) return true;

    // `encrypted` stays null: by that, the host's pbe_crypto_t distinguishes a content from a shrouded key.
    // Required: Pkcs12Reader.RequiredEncryptedSpanIsNullForContents.
    // Malformed DER fails the read; what cannot be decrypted is skipped, and the rest is read.
    // Required: Pkcs12Reader.RequiredContentOfAnotherAlgorithmIsSkipped and
    // Pkcs12Reader.RequiredContentThatCannotBeDecryptedIsSkipped.
    pkcs8_encrypted_pki_gost_t params;
    if (!asn_read_pkcs8_encrypted_alg(data.algorithm.content, data.algorithm.length, params)) return true;
    std::list<std::string> plain(1);
    if (!crypto.decrypt(params, data.encrypted.content, data.encrypted.length, plain.front())) return true;

    const buffer_keeper_t keeper(out.buffers, plain);
    const auto* const bytes = reinterpret_cast<const uint8_t*>(plain.front().data());
    return read_wrapped_safe(asn_contents(bytes, plain.front().size()), safe_kind_t::ENCRYPTED, crypto, out);
}

// AuthenticatedSafe ::= SEQUENCE OF ContentInfo                                                        (RFC 7292 4.1)
bool read_authenticated_safe(asn_element_t input, pbe_crypto_t& crypto, pkcs12_easy_t& out) {
    asn_element_t contents;
    if (!asn_next_element(asn_tag_t::SEQUENCE, input, contents)) return false;
    while (contents.length != 0) {
        asn_element_t info, type, content;
        if (!asn_next_element(asn_tag_t::SEQUENCE, contents, info)) return false;
        if (!read_content_info(info, type, content)) return false;
        if (asn_is_oid(type, pkcs12_oid::data)) {
            if (!read_wrapped_safe(content, safe_kind_t::PLAIN, crypto, out)) return false;
        } else if (asn_is_oid(type, pkcs12_oid::encrypted_data)) {
            if (!read_encrypted_safe(content, crypto, out)) return false;
        }
    }
    return true;
}

} // namespace
} // namespace pkider

// PFX ::= SEQUENCE { version INTEGER, authSafe ContentInfo, macData MacData OPTIONAL }                  (RFC 7292 4)
//
// `out` is not emptied first. Required: Pkcs12Reader.RequiredReadingTwiceAppends.
bool asn_read_pkcs12_easy(const uint8_t* data, uint64_t size, pbe_crypto_t* crypto, pkcs12_easy_t& out) {
    using namespace pkider;

    asn_element_t input = asn_contents(data, size);
    asn_element_t pfx, version, auth_safe, mac_data;
    if (!asn_next_element(asn_tag_t::SEQUENCE, input, pfx)) return false;
    if (!asn_next_element(asn_tag_t::INTEGER, pfx, version)) return false;
    if (!asn_next_element(asn_tag_t::SEQUENCE, pfx, auth_safe)) return false;
    // Required: Pkcs12Reader.RequiredFileWithoutMacIsRefused.
    if (!asn_next_element(asn_tag_t::SEQUENCE, pfx, mac_data)) return false;
    if (!is_version(version, 3)) return false;

    asn_element_t type, content;
    if (!read_content_info(auth_safe, type, content) || !asn_is_oid(type, pkcs12_oid::data)) return false;
    if (!asn_read_pkcs12_MacData(mac_data.content, mac_data.length, out.mac)) return false;

    // The MAC is checked before the OCTET STRING is read, over the whole contents of the [0], header included.
    // Required: Pkcs12Reader.RequiredMacCoversTheWholeElement.
    if (!crypto->check_mac(out.mac, content.content, content.length)) return false;
    asn_element_t safe;
    return asn_next_element(asn_tag_t::OCTET_STRING, content, safe) && read_authenticated_safe(safe, *crypto, out);
}
