#include "tests/pkcs12/record_traits.h"

static_assert(__cplusplus / 100 == 2020);

// A fresh record is all zeros, made without a brace, so that it means the same before and after C++20.
extern "C" bool fresh_record_is_empty_cxx20() {
    const pkcs12_easy_t record;
    const pkcs12_mac_t& mac = record.mac;
    return record.plain_items.empty() && record.protected_items.empty() && record.buffers.empty() &&
           mac.digest_alg_len == 0 && mac.digest_alg == nullptr && mac.digest_len == 0 && mac.digest == nullptr &&
           mac.salt_len == 0 && mac.salt == nullptr && mac.iterations == 0;
}
