#include "tools/pkider/facts/p12_reading.h"

#include "tools/pkider/base/count_text.h"
#include "tools/pkider/base/failure.h"
#include "tools/pkider/facts/pbe_algorithm.h"

namespace tool {
namespace {

/// Any version of one byte, or one that begins with 3, as the library accepts it.
bool is_accepted_version(bytes_t contents) {
    return contents.size() == 1 || (!contents.empty() && contents[0] == 3);
}

/// Throws the words for a MAC that was not accepted.
[[noreturn]] void refuse_mac(const gost_pbe_t& crypto) {
    switch (crypto.fault()) {
    case pbe_fault_t::wrong_mac:
        throw failure_t(exit_code_t::wrong_password, "wrong password or MAC");
    case pbe_fault_t::too_many_iterations:
        throw data_fault_t("the MAC asks for " + crypto.too_many_iterations());
    default:
        throw data_fault_t(std::string("the MAC cannot be checked: ") + pbe_fault_text(crypto.fault()));
    }
}

} // namespace

pfx_t read_pfx(bytes_t file) {
    der_cursor_t input(file);
    der_cursor_t pfx(input.next(asn_tag_t::SEQUENCE, "a PFX"));
    const der_element_t version = pfx.next(asn_tag_t::INTEGER, "the version");
    der_cursor_t content_info(pfx.next(asn_tag_t::SEQUENCE, "authSafe"));
    if (!is_accepted_version(version.contents)) throw der_fault_t(version.offset, "version 3");

    const der_element_t type = content_info.next(asn_tag_t::OBJECT_IDENTIFIER, "the content type");
    if (!type.holds(data_type)) {
        throw der_fault_t(type.offset, "content type data: files that are signed have no MAC by a password");
    }
    der_cursor_t explicit_content(content_info.next(asn_tag_t::CONTEXT_0, "the content"));

    pfx_t out;
    out.authenticated_safe = explicit_content.next(asn_tag_t::OCTET_STRING, "the AuthenticatedSafe");
    const der_element_t mac_data = pfx.next(asn_tag_t::SEQUENCE, "the MacData");
    if (!asn_read_pkcs12_MacData(mac_data.contents.data(), mac_data.contents.size(), out.mac)) {
        throw der_fault_t(mac_data.offset, "a well-formed MacData");
    }
    return out;
}

bool recording_pbe_t::check_mac(const pkcs12_mac_t& mac, const uint8_t* data, uint64_t size) {
    m_refused_mac = !m_crypto.check_mac(mac, data, size);
    return !m_refused_mac;
}

bool recording_pbe_t::make_mac(const uint8_t* data, uint64_t size, pkcs12_mac_t& mac) {
    return m_crypto.make_mac(data, size, mac);
}

bool recording_pbe_t::decrypt(const pkcs8_encrypted_pki_gost_t& params, const uint8_t* data, uint64_t size,
                              std::string& plain) {
    const bool done = m_crypto.decrypt(params, data, size, plain);
    m_decryptions.push_back({data, m_crypto.fault(), params.iterations, as_bytes(plain)});
    return done;
}

bool recording_pbe_t::encrypt(const uint8_t* data, uint64_t size, pkcs8_encrypted_pki_gost_t& params,
                              std::string& storage) {
    return m_crypto.encrypt(data, size, params, storage);
}

p12_reading_t::~p12_reading_t() {
    for (std::string& plaintext : content.buffers) wipe(plaintext);
}

std::string mac_text(const pkcs12_mac_t& mac, mac_form_t form) {
    const der_element_t digest =
        der_cursor_t({mac.digest_alg, mac.digest_alg_len}).next(asn_tag_t::OBJECT_IDENTIFIER, "the digest");
    return algorithm_name(digest.contents) +
           (form == mac_form_t::pbkdf2 ? ", PBKDF2 with " : ", PKCS#12 key derivation with ") +
           count_text(mac.iterations, "iteration");
}

void check_mac(const pfx_t& pfx, gost_pbe_t& crypto) {
    const bytes_t safe = pfx.authenticated_safe.whole;
    if (!crypto.check_mac(pfx.mac, safe.data(), safe.size())) refuse_mac(crypto);
}

p12_reading_t read_p12(bytes_t file, gost_pbe_t& crypto) {
    read_pfx(file); // the library has one false for everything; this says what is wrong

    p12_reading_t reading;
    recording_pbe_t recorder(crypto);
    crypto.set_input(file);
    reading.complete = asn_read_pkcs12_easy(file.data(), file.size(), &recorder, reading.content);
    crypto.set_input({});
    if (recorder.refused_mac()) refuse_mac(crypto);
    reading.decryptions = std::move(recorder.decryptions());
    return reading;
}

} // namespace tool
