#include "tools/pkider/crypto/gcrypt_handle.h"

namespace tool {
namespace {

/// Room for the contexts of a digest and a cipher, which hold keys, many times over. No plaintext is put there.
constexpr int secure_memory_size = 32'768;

} // namespace

bool gcrypt_ready() {
    static const bool ready = [] {
        if (gcry_check_version(GCRYPT_VERSION) == nullptr) return false;
        gcry_control(GCRYCTL_DISABLE_SECMEM_WARN, 0); // where nothing may be locked, it goes on unlocked
        gcry_control(GCRYCTL_INIT_SECMEM, secure_memory_size, 0);
        gcry_control(GCRYCTL_INITIALIZATION_FINISHED, 0);
        return true;
    }();
    return ready;
}

md_handle_t open_md(int hash, unsigned flags) {
    gcry_md_hd_t handle = nullptr;
    if (!gcrypt_ready() || gcry_md_test_algo(hash) != 0) return nullptr; // opening an unknown one prints to stderr
    if (gcry_md_open(&handle, hash, flags | GCRY_MD_FLAG_SECURE) != 0) return nullptr;
    return md_handle_t(handle);
}

} // namespace tool
