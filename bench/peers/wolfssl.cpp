// wolfSSL's crypto layer.
#include "bench/support/inputs.h"
#include "bench/support/row.h"
#include "bench/support/row_names.h"

#include <wolfssl/options.h>
#include <wolfssl/wolfcrypt/asn.h>
#include <wolfssl/wolfcrypt/asn_public.h>
#include <wolfssl/wolfcrypt/hash.h>
#include <wolfssl/wolfcrypt/rsa.h>
#include <wolfssl/wolfcrypt/signature.h>

namespace pkider_bench {

void register_rows() {
    add_row(row_name::digest_info_build, digests().size(), [] {
        uint64_t sum = 0;
        unsigned char out[128];
        for (const std::string& digest : digests()) {
            const auto* const bytes = reinterpret_cast<const unsigned char*>(digest.data());
            const word32 size = wc_EncodeSignature(out, bytes, static_cast<word32>(digest.size()), SHA256h);
            sum += answer_of(out, size);
        }
        return sum;
    });
    add_row(row_name::rsa_public_key, rsa_public_keys().size(), []() -> uint64_t {
        for (const bytes_t& der : rsa_public_keys()) {
            word32 at = 0, modulus_len = 0, exponent_len = 0;
            const unsigned char *modulus = nullptr, *exponent = nullptr;
            keep(wc_RsaPublicKeyDecode_ex(der.data(), &at, static_cast<word32>(der.size()), &modulus, &modulus_len,
                                          &exponent, &exponent_len));
        }
        return 0;
    });
}

} // namespace pkider_bench
