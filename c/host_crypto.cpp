#include "c/host_crypto.h"

#include "c/border.h"
#include "c/encrypted_gost_key.h"
#include "c/spans.h"
#include "c/wiping.h"

namespace pkider::c {
namespace {

// What a callback returned, as what an operation returns.
bool is_accepted(int result) {
    if (result == PKIDER_CALLBACK_OK) return true;
    if (result == PKIDER_CALLBACK_REFUSED) return false;
    throw stopped_t{PKIDER_HOST};
}

// Whether a callback that writes succeeded, the writing included. A fault of the sink is the fault of the call, also
// when the host ignores it.
bool is_accepted(int result, const wiping_sink_t& sink) {
    if (sink.status() != PKIDER_OK) throw stopped_t{sink.status()};
    return is_accepted(result);
}

template <typename Callback>
void require(Callback* callback) {
    if (callback == nullptr) throw stopped_t{PKIDER_HOST};
}

// A plaintext that the library does not keep is wiped.
class kept_plaintext_t {
  public:
    explicit kept_plaintext_t(std::string& plain) : m_plain(plain) {}
    ~kept_plaintext_t() {
        if (!m_is_kept) wipe(m_plain);
    }
    kept_plaintext_t(const kept_plaintext_t&) = delete;
    kept_plaintext_t& operator=(const kept_plaintext_t&) = delete;

    void keep() { m_is_kept = true; }

  private:
    std::string& m_plain;
    bool m_is_kept = false;
};

} // namespace

pkider_pkcs12_mac_t shown(const pkcs12_mac_t& mac) {
    return {span_of(mac.digest_alg_len, mac.digest_alg), span_of(mac.digest_len, mac.digest),
            span_of(mac.salt_len, mac.salt), mac.iterations};
}

pkcs12_mac_t record_of(const pkider_pkcs12_mac_t& mac) {
    pkcs12_mac_t out;
    store(mac.digest_alg, out.digest_alg_len, out.digest_alg);
    store(mac.digest, out.digest_len, out.digest);
    store(mac.salt, out.salt_len, out.salt);
    out.iterations = mac.iterations;
    return out;
}

bool host_crypto_t::check_mac(const pkcs12_mac_t& mac, const uint8_t* data, uint64_t size) {
    require(m_host.check_mac);
    const pkider_pkcs12_mac_t record = shown(mac);
    m_has_refused_mac = !is_accepted(m_host.check_mac(m_host.context, &record, data, size));
    return !m_has_refused_mac;
}

bool host_crypto_t::make_mac(const uint8_t* data, uint64_t size, pkcs12_mac_t& mac) {
    if (m_encryption_fault != PKIDER_OK) return false;
    require(m_host.make_mac);
    pkider_pkcs12_mac_t record{};
    if (!is_accepted(m_host.make_mac(m_host.context, data, size, &record))) return false;
    mac = record_of(record);
    return true;
}

bool host_crypto_t::decrypt(const pkcs8_encrypted_pki_gost_t& params, const uint8_t* data, uint64_t size,
                            std::string& plain) {
    require(m_host.decrypt);
    const pkider_encrypted_gost_key_t record = shown(params);
    wiping_sink_t writer(plain);
    const pkider_sink_t sink = writer.sink();
    kept_plaintext_t kept(plain);
    if (!is_accepted(m_host.decrypt(m_host.context, &record, data, size, &sink), writer)) return false;
    kept.keep();
    return true;
}

// The library ignores the result, and writes what is in `storage`.
bool host_crypto_t::encrypt(const uint8_t* data, uint64_t size, pkcs8_encrypted_pki_gost_t& params,
                            std::string& storage) {
    m_encryption_fault = at_border([&] {
        require(m_host.encrypt);
        pkider_encrypted_gost_key_t record{};
        wiping_sink_t writer(storage);
        const pkider_sink_t sink = writer.sink();
        if (!is_accepted(m_host.encrypt(m_host.context, data, size, &record, &sink), writer)) return PKIDER_HOST;
        params = record_of(record);
        return PKIDER_OK;
    });
    return m_encryption_fault == PKIDER_OK;
}

} // namespace pkider::c
