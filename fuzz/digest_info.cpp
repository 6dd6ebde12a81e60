// For any bytes: the hash found in them is inside, and wrapping them gives a DigestInfo that ends with them and in
// which the hash is found again.
#include "fuzz/check.h"
#include "fuzz/spans.h"

#include <pkider/alg.h>

#include <algorithm>
#include <string>

namespace {

void check_reader(const std::string& info) {
    asn_algorid_t out{1, nullptr};
    const bool read = asn_read_alg_from_digest(&out, info);
    const auto* const begin = reinterpret_cast<const uint8_t*>(info.data());
    CHECK_TRUE((!read && is_none(out.oid_len, out.oid)) || lies_inside(out.oid_len, out.oid, begin, info.size()));
}

void check_writer(const std::string& digest, pki_alg_t hash) {
    std::string info = digest;
    asn_add_alg_to_digest(info, hash);
    CHECK_TRUE(info.ends_with(digest));
    if (digest.size() >= 0xFF00) return; // longer ones may get a length that says less

    asn_algorid_t found;
    const PKI_OID& expected = PKI_HASH_ALG_TO_OID(hash);
    CHECK_TRUE(asn_read_alg_from_digest(&found, info));
    CHECK_TRUE(std::equal(found.oid, found.oid + found.oid_len, expected.data, expected.data + expected.len));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const std::string bytes(data, data + size);
    check_reader(bytes);
    for (const uint32_t variant : {0u, 1u, 2u, 4u})
        check_writer(bytes, static_cast<pki_alg_t>(variant << 24 | (size != 0 ? data[0] & 0x0Fu : 0u) << 16));
    return 0;
}
