// libgcrypt, set up once, its handles closed on every path. What a handle holds is in libgcrypt's secure memory.
#pragma once

#include <gcrypt.h>

#include <memory>
#include <type_traits>

namespace tool {

/// Makes libgcrypt ready for use. Everything that opens a handle calls it first; all calls but the first cost nothing.
bool gcrypt_ready();

struct gcrypt_closer_t {
    void operator()(gcry_md_hd_t handle) const { gcry_md_close(handle); } // wipes what the handle held
    void operator()(gcry_cipher_hd_t handle) const { gcry_cipher_close(handle); }
};
using md_handle_t = std::unique_ptr<std::remove_pointer_t<gcry_md_hd_t>, gcrypt_closer_t>;
using cipher_handle_t = std::unique_ptr<std::remove_pointer_t<gcry_cipher_hd_t>, gcrypt_closer_t>;

/// Opens a digest, null when libgcrypt does not have it. `flags`: 0 or GCRY_MD_FLAG_HMAC.
md_handle_t open_md(int hash, unsigned flags);

} // namespace tool
