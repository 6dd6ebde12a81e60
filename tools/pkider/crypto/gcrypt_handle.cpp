#include "tools/pkider/crypto/gcrypt_handle.h"

namespace tool {

bool gcrypt_ready() {
    static const bool ready = [] {
        if (gcry_check_version(GCRYPT_VERSION) == nullptr) return false;
        gcry_control(GCRYCTL_DISABLE_SECMEM, 0); // a few pages that cannot be swapped would not hold a whole .p12
        gcry_control(GCRYCTL_INITIALIZATION_FINISHED, 0);
        return true;
    }();
    return ready;
}

md_handle_t open_md(int hash, unsigned flags) {
    gcry_md_hd_t handle = nullptr;
    if (!gcrypt_ready() || gcry_md_test_algo(hash) != 0) return nullptr; // opening an unknown one is told on stderr
    if (gcry_md_open(&handle, hash, flags) != 0) return nullptr;
    return md_handle_t(handle);
}

} // namespace tool
