// For any bytes, taken as an object identifier and as a value: each lookup returns the result of a scan over the rows,
// the first row that matches.
#include "alg/cert_sign_rows.h"
#include "alg/display_names.h"
#include "alg/hash_rows.h"
#include "alg/ike_rows.h"
#include "alg/key_rows.h"
#include "fuzz/check.h"
#include "tests/support/row_scan.h"

#include <algorithm>
#include <cstddef>
#include <span>

using namespace pkider;
using namespace pkider_test;

namespace {

bool same(const PKI_OID& a, const PKI_OID& b) {
    return a.data == b.data && a.len == b.len;
}

void check_oid(std::span<const uint8_t> oid) {
    const auto len = static_cast<uint32_t>(oid.size());
    const pki_alg_t hash = scan(hash_rows, oid), key = scan(key_rows, oid), sign = scan(cert_sign_rows, oid);
    CHECK_TRUE(PKI_OID_TO_HASH_ALG(oid.data(), len) == hash);
    CHECK_TRUE(PKI_OID_TO_KEY_ALG(oid.data(), len) == key);
    CHECK_TRUE(PKI_OID_TO_CERT_SIGN_ALG(oid.data(), len) == sign);
    CHECK_TRUE(PKI_OID_TO_ALG(oid.data(), len) == (hash != 0 ? hash : key != 0 ? key : sign));
}

void check_value(pki_alg_t alg) {
    CHECK_TRUE(same(PKI_HASH_ALG_TO_OID(alg), scan(hash_rows, alg)));
    CHECK_TRUE(same(PKI_KEY_ALG_TO_OID(alg), scan(key_rows, alg)));
    CHECK_TRUE(same(PKI_CERT_SIGN_ALG_TO_OID(alg), scan(cert_sign_rows, alg)));
    CHECK_TRUE(same(asn_form_ike_signalg(alg), scan(ike_rows, alg)));
    CHECK_TRUE(alg_display_name(alg) == scan_names(alg));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    check_oid({data, size});
    uint32_t value = 0;
    for (const uint8_t byte : std::span(data, std::min<std::size_t>(size, 4))) value = value << 8 | byte;
    check_value(static_cast<pki_alg_t>(value));
    return 0;
}
