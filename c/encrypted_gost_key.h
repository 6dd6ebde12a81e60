// The record of an encrypted GOST key on both sides of the border.
#pragma once

#include "c/spans.h"

#include <pkider/pkcs8.h>

namespace pkider::c {

inline pkider_encrypted_gost_key_t shown(const pkcs8_encrypted_pki_gost_t& key) {
    return {span_of(key.salt_len, key.salt), key.iterations, span_of(key.iv_len, key.iv),
            span_of(key.encrypted_len, key.encrypted)};
}

inline pkcs8_encrypted_pki_gost_t record_of(const pkider_encrypted_gost_key_t& key) {
    pkcs8_encrypted_pki_gost_t out;
    store(key.salt, out.salt_len, out.salt);
    out.iterations = key.iterations;
    store(key.iv, out.iv_len, out.iv);
    store(key.encrypted, out.encrypted_len, out.encrypted);
    return out;
}

} // namespace pkider::c
