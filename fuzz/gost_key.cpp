// For any bytes: a GOST key is inside the PrivateKeyInfo's key. Any key is written as nested elements would be, and
// reads back equal, unless a length is 65,536 or more.
#include "fuzz/check.h"
#include "fuzz/spans.h"
#include "tests/support/bottom_up_keys.h"

#include <pkider/pkcs8.h>

#include <algorithm>

namespace {

void check_writer(const pkcs8_pki_gost_t& key) {
    std::string der = "before";
    asn_write_pkcs8_pki_gost(key, der);
    CHECK_TRUE(der == pkider_test::bottom_up_gost_key(key));
    if (der.size() >= 0x10000) return;

    pkcs8_pki_gost_t again;
    const bool read = asn_read_pkcs8_pki_gost(reinterpret_cast<const uint8_t*>(der.data()), der.size(), again);
    CHECK_TRUE(read == (key.key_type <= 2));
    if (!read) return;
    CHECK_TRUE(again.key_type == key.key_type);
    CHECK_TRUE(std::equal(again.key, again.key + again.key_len, key.key, key.key + key.key_len));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    asn_pkcs8_priv_key_info_t info;
    const bool is_info = asn_read_pkcs8_priv_key_info(data, static_cast<uint32_t>(size), info);
    pkcs8_pki_gost_t key;
    if (asn_read_pkcs8_pki_gost(data, size, key)) {
        CHECK_TRUE(is_info && key.key_type <= 2);
        CHECK_TRUE(lies_inside(key.key_len, key.key, info.private_key, info.private_key_len));
        check_writer(key);
    } else {
        CHECK_TRUE(key.key_len == 0 && key.key == nullptr);
    }

    // The input as a key, of the kind that its first byte names.
    if (size == 0) return 0;
    key.key_type = data[0] % 4;
    key.key_len = size - 1;
    key.key = data + 1;
    check_writer(key);
    return 0;
}
