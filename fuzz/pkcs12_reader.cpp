// For any bytes and any results of the crypto object: every span is inside the input or a plaintext that the record
// keeps, and contents that nobody can decrypt do not change the unencrypted ones.
#include "fuzz/check.h"
#include "fuzz/spans.h"

#include <pkider/pkcs12.h>

#include <algorithm>
#include <string>

namespace {

enum class answer_t { no, yes, wrapped, thrown };

struct refused_t {};

// Takes every MAC. Decrypts by copying: as it is, or with the OCTET STRING around contents that other programs leave
// out.
class fuzz_crypto_t final : public pbe_crypto_t {
  public:
    explicit fuzz_crypto_t(answer_t answer) : m_answer(answer) {}

    bool check_mac(const pkcs12_mac_t& mac, const uint8_t* data, uint64_t size) override {
        CHECK_TRUE(mac.digest_alg != nullptr && mac.digest != nullptr && mac.salt != nullptr);
        CHECK_TRUE(data != nullptr || size == 0);
        return true;
    }
    bool make_mac(const uint8_t*, uint64_t, pkcs12_mac_t&) override { return false; }
    bool encrypt(const uint8_t*, uint64_t, pkcs8_encrypted_pki_gost_t&, std::string&) override { return false; }

    bool decrypt(const pkcs8_encrypted_pki_gost_t& params, const uint8_t* data, uint64_t size,
                 std::string& plain) override {
        CHECK_TRUE(plain.empty() && params.salt != nullptr && params.iv != nullptr);
        const bool is_key = params.encrypted != nullptr;
        if (is_key) CHECK_TRUE(params.encrypted == data && params.encrypted_len == size);
        if (!is_key) CHECK_TRUE(params.encrypted_len == 0);
        if (m_answer == answer_t::no) return false;
        if (m_answer == answer_t::thrown) throw refused_t();
        if (m_answer == answer_t::wrapped && !is_key) {
            plain = {'\x04', '\x84'};
            for (int shift = 24; shift >= 0; shift -= 8) plain.push_back(static_cast<char>(size >> shift));
        }
        plain.append(reinterpret_cast<const char*>(data), static_cast<std::size_t>(size));
        return true;
    }

  private:
    answer_t m_answer;
};

class reading_t {
  public:
    reading_t(const uint8_t* data, std::size_t size, answer_t answer) : m_data(data), m_size(size) {
        fuzz_crypto_t crypto(answer);
        try {
            accepted = asn_read_pkcs12_easy(data, size, &crypto, out);
        } catch (const refused_t&) {
            CHECK_TRUE(answer == answer_t::thrown);
        }
        for (const pkcs12_item_t& item : out.plain_items) check_item(item, false);
        for (const pkcs12_item_t& item : out.protected_items) check_item(item, true);
    }

    pkcs12_easy_t out;
    bool accepted = false;

  private:
    bool is_live(uint64_t len, const uint8_t* at, bool with_buffers) const {
        if (lies_inside(len, at, m_data, m_size)) return true;
        return with_buffers && std::any_of(out.buffers.begin(), out.buffers.end(), [&](const std::string& buffer) {
                   return lies_inside(len, at, reinterpret_cast<const uint8_t*>(buffer.data()), buffer.size());
               });
    }
    void check_item(const pkcs12_item_t& item, bool is_protected) const {
        CHECK_TRUE(item.type == PKCS12_ITEM_KEY || item.type == PKCS12_ITEM_CERT);
        CHECK_TRUE(is_live(item.data_len, item.data, is_protected));
        if (item.friendly_name_len != 0) CHECK_TRUE(is_live(item.friendly_name_len, item.friendly_name, is_protected));
        if (item.local_key_id_len != 0) CHECK_TRUE(is_live(item.local_key_id_len, item.local_key_id, is_protected));
    }

    const uint8_t* m_data;
    std::size_t m_size;
};

bool same_place(const pkcs12_item_t& a, const pkcs12_item_t& b) {
    return a.type == b.type && a.data == b.data && a.data_len == b.data_len && a.friendly_name == b.friendly_name &&
           a.local_key_id == b.local_key_id;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const reading_t locked(data, size, answer_t::no);
    CHECK_TRUE(locked.out.protected_items.empty() && locked.out.buffers.empty());

    // What is decrypted can end the reading early, and adds protected items; the plain ones are the same.
    for (const answer_t answer : {answer_t::yes, answer_t::wrapped, answer_t::thrown}) {
        const reading_t opened(data, size, answer);
        const auto& plain = opened.out.plain_items;
        CHECK_TRUE(plain.size() <= locked.out.plain_items.size());
        CHECK_TRUE(std::equal(plain.begin(), plain.end(), locked.out.plain_items.begin(), same_place));
        if (opened.accepted) CHECK_TRUE(locked.accepted && plain.size() == locked.out.plain_items.size());
    }
    return 0;
}
