#include <pkider/pkcs12.h>

#include "tests/support/hex.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <string>
#include <vector>

using namespace pkider_test;

namespace {

// Encrypts by flipping every bit, counts the calls, and notes what it was given.
class flipping_crypto_t final : public pbe_crypto_t {
  public:
    bool check_mac(const pkcs12_mac_t& mac, const uint8_t* data, uint64_t size) override {
        calls.push_back("check_mac");
        return std::string(data, data + size) == m_authenticated && mac.iterations == 1000 && mac.digest_len == 2;
    }

    bool make_mac(const uint8_t* data, uint64_t size, pkcs12_mac_t& mac) override {
        calls.push_back("make_mac");
        m_authenticated.assign(data, data + size);
        mac.digest_len = sizeof m_digest;
        mac.digest = m_digest;
        mac.iterations = 1000;
        return true;
    }

    bool decrypt(const pkcs8_encrypted_pki_gost_t& params, const uint8_t* data, uint64_t size,
                 std::string& plain) override {
        calls.push_back("decrypt");
        if (throws_in_decrypt) throw std::runtime_error("no key");
        plain = flipped(data, size);
        return params.iterations == 7;
    }

    bool encrypt(const uint8_t* data, uint64_t size, pkcs8_encrypted_pki_gost_t& params,
                 std::string& storage) override {
        calls.push_back("encrypt");
        storage = flipped(data, size);
        params.iterations = 7;
        return true;
    }

    std::vector<std::string> calls;
    bool throws_in_decrypt = false;

  private:
    static std::string flipped(const uint8_t* data, uint64_t size) {
        std::string out(data, data + size);
        for (char& c : out) c = static_cast<char>(~c);
        return out;
    }

    static constexpr uint8_t m_digest[2] = {0xD1, 0xD2};
    std::string m_authenticated;
};

const bytes_t certificate = "30 03 02 01 01"_hex;
const bytes_t key = "30 03 02 01 02"_hex;
const bytes_t name = "00 6D 00 65"_hex;

pkcs12_item_t item(pkcs12_item_type_t type, const bytes_t& data) {
    pkcs12_item_t out;
    out.type = type;
    out.data_len = data.size();
    out.data = data.data();
    out.friendly_name_len = name.size();
    out.friendly_name = name.data();
    return out;
}

std::string write(flipping_crypto_t& crypto) {
    pkcs12_easy_t in;
    in.plain_items.push_back(item(PKCS12_ITEM_CERT, certificate));
    in.protected_items.push_back(item(PKCS12_ITEM_KEY, key));
    std::string pfx = "replaced";
    asn_write_pkcs12_easy(in, &crypto, pfx);
    return pfx;
}

bool read(const std::string& pfx, flipping_crypto_t& crypto, pkcs12_easy_t& out) {
    return asn_read_pkcs12_easy(reinterpret_cast<const uint8_t*>(pfx.data()), pfx.size(), &crypto, out);
}

} // namespace

TEST(InterfacePkcs12, WritesAndReadsThroughTheHostsObject) {
    flipping_crypto_t crypto;
    const std::string pfx = write(crypto);
    pkcs12_easy_t out;
    ASSERT_TRUE(read(pfx, crypto, out));
    EXPECT_EQ(crypto.calls, (std::vector<std::string>{"encrypt", "make_mac", "check_mac", "decrypt"}));

    ASSERT_EQ(out.plain_items.size(), 1U);
    const pkcs12_item_t& plain = out.plain_items.front();
    EXPECT_EQ(plain.type, PKCS12_ITEM_CERT);
    EXPECT_EQ(bytes_t(plain.data, plain.data + plain.data_len), certificate);
    EXPECT_EQ(bytes_t(plain.friendly_name, plain.friendly_name + plain.friendly_name_len), name);

    ASSERT_EQ(out.protected_items.size(), 1U);
    const pkcs12_item_t& hidden = out.protected_items.front();
    EXPECT_EQ(hidden.type, PKCS12_ITEM_KEY);
    EXPECT_EQ(bytes_t(hidden.data, hidden.data + hidden.data_len), key);
    EXPECT_EQ(out.buffers.size(), 1U);
}

TEST(InterfacePkcs12, ItemsOutliveTheMoveOfTheirRecord) {
    flipping_crypto_t crypto;
    pkcs12_easy_t out;
    ASSERT_TRUE(read(write(crypto), crypto, out));
    const pkcs12_easy_t moved = std::move(out);
    const pkcs12_item_t& hidden = moved.protected_items.front();
    EXPECT_EQ(bytes_t(hidden.data, hidden.data + hidden.data_len), key);
}

TEST(InterfacePkcs12, LetsAnExceptionOfTheHostsObjectPass) {
    flipping_crypto_t crypto;
    const std::string pfx = write(crypto);
    crypto.throws_in_decrypt = true;
    pkcs12_easy_t out;
    EXPECT_THROW(read(pfx, crypto, out), std::runtime_error);
}

TEST(InterfacePkcs12, ReadsMacDataAlone) {
    // The contents of the MacData, without its own header.
    const bytes_t mac_data = "30 0E 30 0A 06 06 2A 85 03 02 02 09 05 00 04 00"
                             "04 02 AA BB"
                             "02 02 03 E8"_hex;
    pkcs12_mac_t mac;
    ASSERT_TRUE(asn_read_pkcs12_MacData(mac_data.data(), mac_data.size(), mac));
    EXPECT_EQ(bytes_t(mac.salt, mac.salt + mac.salt_len), "AA BB"_hex);
    EXPECT_EQ(mac.iterations, 1000U);
}
