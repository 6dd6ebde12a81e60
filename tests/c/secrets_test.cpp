// What the C interface gives back to the heap: anybody may find what is still there.
#include "tests/c/c_output.h"
#include "tests/c/host_operations.h"
#include "tests/support/pfx_builder.h"
#include "tests/tools/freed_memory.h"

#include <gtest/gtest.h>

#include <string>

using namespace pkider_test;

namespace {

const bytes_t secret = to_bytes("a secret of thirty-two letters..");

int ignore(void*, const uint8_t*, uint64_t) {
    return 0;
}

template <typename Call>
std::size_t freed_secrets(const Call& call) {
    return count_freed_with(secret.str(), [&] {
        pkider_output_t out = pkider_output_to_sink(ignore, nullptr);
        call(out);
    });
}

// A file with the secret in both lists: a plain key and an encrypted one.
const bytes_t file =
    pfx({data_content(safe({key_bag(secret)})), encrypted_content(encrypted_data(safe({key_bag(secret)})))});

std::size_t freed_by_reading(host_operations_t host) {
    const pkider_pbe_crypto_t crypto = host.crypto();
    return freed_secrets([&](pkider_output_t&) {
        pkider_pkcs12_t* record = nullptr;
        pkider_pkcs12_read(file.data(), file.size(), &crypto, &record);
        pkider_pkcs12_release(record);
    });
}

// Its ciphertext is not the plaintext.
int encrypt(void* context, const uint8_t* data, uint64_t size, pkider_encrypted_gost_key_t*, const pkider_sink_t* out) {
    for (uint64_t i = 0; i < size; ++i) {
        const uint8_t turned = data[i] ^ 0xFF;
        out->write(out->context, &turned, 1);
    }
    return static_cast<host_operations_t*>(context)->encrypt;
}

std::size_t freed_by_writing(host_operations_t host) {
    const pkider_pkcs12_item_t item{PKIDER_PKCS12_ITEM_KEY, span_of(secret), {}, {}};
    const pkider_pkcs12_contents_t contents{nullptr, 0, &item, 1, {}};
    pkider_pbe_crypto_t crypto = host.crypto();
    crypto.encrypt = encrypt;
    return freed_secrets([&](pkider_output_t& out) { pkider_pkcs12_write(&contents, &crypto, &out); });
}

} // namespace

TEST(CSecrets, OfAKeyThatIsWrittenAreWiped) {
    const pkider_gost_private_key_t key{0, span_of(secret)};
    EXPECT_EQ(freed_secrets([&](pkider_output_t& out) { pkider_gost_private_key_write(&key, &out); }), 0U);
}

TEST(CSecrets, OfAFileThatIsReadAreWiped) {
    EXPECT_EQ(freed_by_reading({}), 0U);
    for (const int result : {int{PKIDER_CALLBACK_REFUSED}, int{PKIDER_CALLBACK_FAILED}}) {
        EXPECT_EQ(freed_by_reading({.check_mac = result}), 0U);
        EXPECT_EQ(freed_by_reading({.decrypt = result}), 0U);
    }
}

TEST(CSecrets, OfAFileThatIsWrittenAreWiped) {
    EXPECT_EQ(freed_by_writing({}), 0U);
    for (const int result : {int{PKIDER_CALLBACK_REFUSED}, int{PKIDER_CALLBACK_FAILED}}) {
        EXPECT_EQ(freed_by_writing({.encrypt = result}), 0U);
        EXPECT_EQ(freed_by_writing({.make_mac = result}), 0U);
    }
}
