// For any bytes: the identifier and the key are inside the input, in this order and with parameters between them.
// Refused input leaves the key unchanged.
#include "fuzz/check.h"
#include "fuzz/spans.h"

#include <pkider/pkcs8.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    asn_pkcs8_priv_key_info_t info;
    const bool read = asn_read_pkcs8_priv_key_info(data, static_cast<uint32_t>(size), info);
    if (info.alg_oid != nullptr) CHECK_TRUE(lies_inside(info.alg_oid_len, info.alg_oid, data, size));
    if (!read) {
        CHECK_TRUE(is_none(info.private_key_len, info.private_key));
        return 0;
    }
    CHECK_TRUE(lies_inside(info.private_key_len, info.private_key, data, size));
    CHECK_TRUE(info.private_key >= info.alg_oid + info.alg_oid_len + 4); // two headers
    return 0;
}
