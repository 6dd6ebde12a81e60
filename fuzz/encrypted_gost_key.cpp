// For any bytes: every span of an encrypted key that was read is inside the input. Any record is written as nested
// elements would be, and reads back equal except for the zero bytes of the count.
#include "pkcs8/encrypted_gost_key.h"
#include "fuzz/check.h"
#include "fuzz/count.h"
#include "fuzz/spans.h"
#include "tests/support/bottom_up_keys.h"

#include <algorithm>

namespace {

void check_writer(const pkcs8_encrypted_pki_gost_t& key) {
    std::string der = "before", algorithm = "before";
    asn_write_pkcs8_encrypted_pki_gost(key, der);
    pkider::asn_write_pkcs8_encrypted_alg(key, algorithm);
    CHECK_TRUE(der == pkider_test::bottom_up_encrypted_gost_key(key));
    CHECK_TRUE(algorithm == pkider_test::bottom_up_encrypted_alg(key));
    if (der.size() >= 0x10000) return; // a length may have been cut

    pkcs8_encrypted_pki_gost_t again;
    CHECK_TRUE(asn_read_pkcs8_encrypted_pki_gost(reinterpret_cast<const uint8_t*>(der.data()), der.size(), again));
    CHECK_TRUE(again.iterations == without_zero_bytes(key.iterations));
    CHECK_TRUE(std::equal(again.salt, again.salt + again.salt_len, key.salt, key.salt + key.salt_len));
    CHECK_TRUE(std::equal(again.iv, again.iv + again.iv_len, key.iv, key.iv + key.iv_len));
    CHECK_TRUE(std::equal(again.encrypted, again.encrypted + again.encrypted_len, key.encrypted,
                          key.encrypted + key.encrypted_len));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    pkcs8_encrypted_pki_gost_t key;
    const bool read = asn_read_pkcs8_encrypted_pki_gost(data, size, key);
    if (read) {
        CHECK_TRUE(lies_inside(key.salt_len, key.salt, data, size));
        CHECK_TRUE(lies_inside(key.iv_len, key.iv, data, size));
        CHECK_TRUE(lies_inside(key.encrypted_len, key.encrypted, data, size));
        CHECK_TRUE(key.salt < key.iv && key.iv < key.encrypted);
        check_writer(key);
    }

    // The contents of the algorithm alone: neither reader touches what it does not fill.
    pkcs8_encrypted_pki_gost_t alone;
    if (pkider::asn_read_pkcs8_encrypted_alg(data, size, alone)) {
        CHECK_TRUE(lies_inside(alone.salt_len, alone.salt, data, size) &&
                   lies_inside(alone.iv_len, alone.iv, data, size));
    }
    CHECK_TRUE(alone.encrypted == nullptr && alone.encrypted_len == 0);
    pkcs8_encrypted_pki_gost_t derivation;
    if (pkider::asn_read_pbkdf2_gost_params(data, size, derivation)) {
        CHECK_TRUE(lies_inside(derivation.salt_len, derivation.salt, data, size));
    }
    CHECK_TRUE(derivation.iv == nullptr && derivation.encrypted == nullptr);

    // The input cut into three spans, its first bytes as the count.
    pkcs8_encrypted_pki_gost_t record;
    for (std::size_t i = 0; i < std::min<std::size_t>(size, 4); ++i)
        record.iterations = record.iterations << 8 | data[i];
    record.salt = data;
    record.salt_len = size / 3;
    record.iv = record.salt + record.salt_len;
    record.iv_len = size / 3;
    record.encrypted = record.iv + record.iv_len;
    record.encrypted_len = size - 2 * (size / 3);
    check_writer(record);
    return 0;
}
