// For any record: the writer gives the bytes that nested elements would give. The reader finds every item and the MAC
// again, unless a length is 65,536 or more or an item is neither a key nor a certificate.
#include "fuzz/check.h"
#include "fuzz/count.h"
#include "tests/support/bottom_up_pfx.h"
#include "tests/support/plain_crypto.h"

#include <pkider/pkcs12.h>

#include <algorithm>
#include <string>

namespace {

// Encrypts by copying. The record chooses salt, counts and MAC.
class copying_crypto_t final : public pkider_test::plain_crypto_t {
  public:
    pkcs8_encrypted_pki_gost_t params;
    pkcs12_mac_t mac;
    bool has_mac = false;

    bool make_mac(const uint8_t*, uint64_t, pkcs12_mac_t& out) override {
        if (has_mac) out = mac;
        return has_mac;
    }
    bool encrypt(const uint8_t* data, uint64_t size, pkcs8_encrypted_pki_gost_t& out, std::string& storage) override {
        const bool encrypted = plain_crypto_t::encrypt(data, size, out, storage);
        out = params;
        return encrypted;
    }
};

// The input as a source of numbers and spans; at its end, of zeros and empty spans.
class source_t {
  public:
    source_t(const uint8_t* data, std::size_t size) : m_at(data), m_left(size) {}

    bool empty() const { return m_left == 0; }
    uint32_t number(int num_bytes) {
        uint32_t out = 0;
        for (; num_bytes > 0 && m_left != 0; --num_bytes, --m_left) out = out << 8 | *m_at++;
        return out;
    }
    // A few bytes of the input; or up to 70,000 zeros, without a pointer.
    void span(uint64_t& len, const uint8_t*& data) {
        len = number(1);
        data = nullptr;
        if (len == 0xFF) {
            len = number(3) % 70'000;
            return;
        }
        len = std::min<uint64_t>(len, m_left);
        data = m_at;
        m_at += len;
        m_left -= static_cast<std::size_t>(len);
    }

  private:
    const uint8_t* m_at;
    std::size_t m_left;
};

bool same_bytes(uint64_t a_len, const uint8_t* a, uint64_t b_len, const uint8_t* b) {
    if (a_len != b_len) return false;
    if (a == nullptr || b == nullptr) { // zeros
        const uint8_t* const given = a == nullptr ? b : a;
        return given == nullptr || std::all_of(given, given + a_len, [](uint8_t byte) { return byte == 0; });
    }
    return std::equal(a, a + a_len, b);
}

bool same_item(const pkcs12_item_t& a, const pkcs12_item_t& b) {
    return a.type == b.type && same_bytes(a.data_len, a.data, b.data_len, b.data) &&
           same_bytes(a.friendly_name_len, a.friendly_name, b.friendly_name_len, b.friendly_name) &&
           same_bytes(a.local_key_id_len, a.local_key_id, b.local_key_id_len, b.local_key_id);
}

bool same_items(const std::list<pkcs12_item_t>& a, const std::list<pkcs12_item_t>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), same_item);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    source_t source(data, size);
    copying_crypto_t crypto;
    crypto.has_mac = source.number(1) % 2 == 0;
    crypto.params.iterations = source.number(4);
    source.span(crypto.params.salt_len, crypto.params.salt);
    source.span(crypto.params.iv_len, crypto.params.iv);
    pkcs12_easy_t in;
    pkcs12_mac_t& mac = crypto.has_mac ? crypto.mac : in.mac;
    mac.iterations = source.number(4);
    source.span(mac.digest_len, mac.digest);
    source.span(mac.salt_len, mac.salt);

    bool readable = true;
    for (int num_items = 0; !source.empty() && num_items < 100; ++num_items) {
        const uint32_t kind = source.number(1);
        pkcs12_item_t item;
        item.type = static_cast<pkcs12_item_type_t>(kind % 3);
        source.span(item.data_len, item.data);
        source.span(item.friendly_name_len, item.friendly_name);
        source.span(item.local_key_id_len, item.local_key_id);
        (kind & 0x80 ? in.protected_items : in.plain_items).push_back(item);
        readable = readable && item.type <= PKCS12_ITEM_CERT;
    }

    std::string pfx = "before";
    asn_write_pkcs12_easy(in, &crypto, pfx);
    CHECK_TRUE(pfx == pkider_test::bottom_up_pfx(in, crypto));
    if (pfx.size() >= 0x10000) return 0;

    pkcs12_easy_t back;
    const bool read = asn_read_pkcs12_easy(reinterpret_cast<const uint8_t*>(pfx.data()), pfx.size(), &crypto, back);
    CHECK_TRUE(read == readable);
    if (!read) return 0;
    CHECK_TRUE(same_items(back.plain_items, in.plain_items) && same_items(back.protected_items, in.protected_items));
    CHECK_TRUE(same_bytes(back.mac.digest_len, back.mac.digest, mac.digest_len, mac.digest));
    CHECK_TRUE(same_bytes(back.mac.salt_len, back.mac.salt, mac.salt_len, mac.salt));
    CHECK_TRUE(back.mac.iterations == without_zero_bytes(mac.iterations));
    return 0;
}
