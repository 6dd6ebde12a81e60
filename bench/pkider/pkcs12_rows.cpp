#include "bench/pkider/rows.h"
#include "bench/support/made_files.h"
#include "bench/support/row.h"
#include "bench/support/row_names.h"

#include <pkider/pkcs12.h>

#include <memory>

namespace pkider_bench {
namespace {

// Leaves the bytes as they are, so that only the library's own work is measured.
class plain_crypto_t final : public pbe_crypto_t {
  public:
    bool check_mac(const pkcs12_mac_t&, const uint8_t*, uint64_t) override { return true; }
    bool make_mac(const uint8_t*, uint64_t, pkcs12_mac_t& mac) override {
        mac.digest_len = m_mac.size();
        mac.digest = m_mac.data();
        mac.salt_len = 8;
        mac.salt = m_mac.data();
        mac.iterations = 2000;
        return true;
    }
    bool decrypt(const pkcs8_encrypted_pki_gost_t&, const uint8_t*, uint64_t, std::string&) override { return false; }
    bool encrypt(const uint8_t*, uint64_t, pkcs8_encrypted_pki_gost_t&, std::string&) override { return false; }

  private:
    bytes_t m_mac = made_bytes(32, 7);
};

plain_crypto_t crypto;

void fill(const std::vector<made_item_t>& items, pkcs12_easy_t& out) {
    for (const made_item_t& made : items) {
        pkcs12_item_t item;
        item.type = PKCS12_ITEM_CERT;
        item.data_len = made.certificate->size();
        item.data = made.certificate->data();
        item.friendly_name_len = made.friendly_name.size();
        item.friendly_name = made.friendly_name.data();
        item.local_key_id_len = made.local_key_id.size();
        item.local_key_id = made.local_key_id.data();
        out.plain_items.push_back(item);
    }
}

pass_t make_reading(std::size_t num_certificates) {
    return [der = made_pfx(num_certificates)]() -> uint64_t {
        pkcs12_easy_t out;
        if (!asn_read_pkcs12_easy(der.data(), der.size(), &crypto, out)) return 1;
        uint64_t sum = 0;
        for (const pkcs12_item_t& item : out.plain_items) sum += item.data_len + item.local_key_id_len;
        return sum;
    };
}

pass_t make_writing(std::size_t num_certificates) {
    const auto items = std::make_shared<std::vector<made_item_t>>(made_items(num_certificates));
    const auto record = std::make_shared<pkcs12_easy_t>();
    fill(*items, *record);
    return [items, record]() -> uint64_t {
        std::string out;
        asn_write_pkcs12_easy(*record, &crypto, out);
        return out.size();
    };
}

} // namespace

void register_pkcs12_rows() {
    for (const std::size_t num : {10u, 100u, 1'000u, 10'000u, 100'000u}) {
        add_made_row(row_name::pkcs12_read + std::to_string(num), num, [=] { return make_reading(num); });
        add_made_row(row_name::pkcs12_write + std::to_string(num), num, [=] { return make_writing(num); });
    }
}

} // namespace pkider_bench
