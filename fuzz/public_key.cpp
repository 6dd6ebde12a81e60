// For any bytes: algorithm, parameters and key are inside the input in this order. The parts of an RSA or a GOST key
// are inside the key bits and the parameters, and no key without bits is read.
#include "fuzz/check.h"
#include "fuzz/spans.h"

#include <pkider/alg.h>

namespace {

constexpr uint32_t no_key_bits = 0xFFFFFFFF;

void check_rsa(const asn_pubkey_t& key) {
    asn_rsa_pubkey_t rsa;
    if (!asn_read_rsa_pubkey(key, rsa)) return;
    CHECK_TRUE(key.key_len != no_key_bits);
    CHECK_TRUE(lies_inside(rsa.modulus_len, rsa.modulus, key.key, key.key_len));
    CHECK_TRUE(lies_inside(rsa.exponent_len, rsa.exponent, key.key, key.key_len));
    CHECK_TRUE(rsa.exponent >= rsa.modulus + rsa.modulus_len + 2);
    if (rsa.modulus_len > 1) CHECK_TRUE(rsa.modulus[0] != 0);
}

bool is_oid_element(uint32_t len, const uint8_t* data, const asn_pubkey_t& key) {
    return lies_inside(len, data, key.params, key.params_len) && len >= 2 && data[0] == 0x06;
}

void check_gost(const asn_pubkey_t& key) {
    asn_gost_pubkey_t gost;
    const bool read = asn_read_gost_pubkey(key, gost);
    if (read) CHECK_TRUE(key.key_len != no_key_bits && lies_inside(gost.key_len, gost.key, key.key, key.key_len));
    if (!read) CHECK_TRUE(is_none(gost.key_len, gost.key));

    const bool has_sets = gost.digest_param_set != nullptr;
    if (read) CHECK_TRUE(has_sets);
    if (has_sets) {
        CHECK_TRUE(is_oid_element(gost.public_key_param_set_len, gost.public_key_param_set, key));
        CHECK_TRUE(is_oid_element(gost.digest_param_set_len, gost.digest_param_set, key));
        CHECK_TRUE(is_none(gost.encryption_param_set_len, gost.encryption_param_set) ||
                   is_oid_element(gost.encryption_param_set_len, gost.encryption_param_set, key));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    asn_pubkey_t key;
    if (asn_read_pubkey(data, static_cast<int32_t>(size), key)) {
        CHECK_TRUE(lies_inside(key.alg_oid_len, key.alg_oid, data, size));
        CHECK_TRUE(lies_inside(key.params_len, key.params, data, size));
        CHECK_TRUE(key.params == key.alg_oid + key.alg_oid_len);
        if (key.key_len != no_key_bits) {
            CHECK_TRUE(lies_inside(key.key_len, key.key, data, size));
            CHECK_TRUE(key.key >= key.params + key.params_len + 3);
        }
        check_rsa(key);
        check_gost(key);
    }

    // The whole input as key bits, and its two halves as parameters and key bits.
    asn_pubkey_t bare;
    bare.key = data;
    bare.key_len = static_cast<uint32_t>(size);
    check_rsa(bare);
    bare.params = data;
    bare.params_len = static_cast<uint32_t>(size / 2);
    bare.key += size / 2;
    bare.key_len = static_cast<uint32_t>(size - size / 2);
    check_gost(bare);
    return 0;
}
