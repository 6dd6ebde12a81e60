// For any bytes: object identifier and parameters are inside the input, and the parameters reach to its end. The
// algorithm is one of the certificate signatures or a hash with RSASSA-PSS, and its ready-made identifier reads back as
// the same algorithm.
#include "fuzz/check.h"
#include "fuzz/spans.h"

#include <pkider/alg.h>

namespace {

pki_alg_t algorithm_of(const uint8_t* der, std::size_t size) {
    asn_ike_signalg_t signalg;
    return asn_read_ike_signalg(der, static_cast<uint32_t>(size), signalg) ? signalg.to_pki_alg() : PKI_ALG_NONE;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    asn_ike_signalg_t signalg;
    if (!asn_read_ike_signalg(data, static_cast<uint32_t>(size), signalg)) {
        CHECK_TRUE(is_none(signalg.oid_len, signalg.oid) && is_none(signalg.params_len, signalg.params));
        return 0;
    }
    CHECK_TRUE(lies_inside(signalg.oid_len, signalg.oid, data, size));
    CHECK_TRUE(signalg.params == signalg.oid + signalg.oid_len);
    CHECK_TRUE(signalg.params + signalg.params_len == data + size);

    const pki_alg_t alg = signalg.to_pki_alg();
    const pki_alg_t by_oid = PKI_OID_TO_CERT_SIGN_ALG(signalg.oid, signalg.oid_len);
    if (by_oid != PKI_ALG_RSASSA_PSS) {
        CHECK_TRUE(alg == by_oid);
    } else if (alg != PKI_ALG_NONE) {
        CHECK_TRUE((alg & 0xFF00FFFF) == PKI_ALG_RSASSA_PSS && (alg & 0x00FF0000) != 0);
    }

    const PKI_OID& ready_made = asn_form_ike_signalg(alg);
    if (ready_made.len != 0) CHECK_TRUE(algorithm_of(ready_made.data, ready_made.len) == alg);
    return 0;
}
