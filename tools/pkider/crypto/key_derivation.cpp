#include "tools/pkider/crypto/key_derivation.h"

#include "tools/pkider/crypto/gcrypt_handle.h"
#include "tools/pkider/formats/utf16.h"

namespace tool {
namespace {

constexpr uint32_t progress_step = 10'000;

void report(const progress_t& on_progress, uint32_t done, uint32_t total) {
    if (on_progress && (done == total || done % progress_step == 0)) on_progress(done, total);
}

/// Copies `source`, over and over, until `size` bytes are filled (RFC 7292 B.2, steps 2 and 3).
void append_repeated(std::span<const uint8_t> source, std::size_t size, std::vector<uint8_t>& out) {
    for (std::size_t i = 0; i < size; ++i) out.push_back(source[i % source.size()]);
}

std::size_t rounded_up(std::size_t size, std::size_t block) {
    return (size + block - 1) / block * block;
}

} // namespace

secret_t pbkdf2_block(int hash, std::span<const uint8_t> password, std::span<const uint8_t> salt, uint32_t iterations,
                      uint32_t index, const progress_t& on_progress) {
    const md_handle_t hmac = open_md(hash, GCRY_MD_FLAG_HMAC);
    if (!hmac || iterations == 0 || gcry_md_setkey(hmac.get(), password.data(), password.size()) != 0) return {};

    // T = U_1 xor U_2 xor ... xor U_c, U_1 = HMAC(password, salt || index), U_j = HMAC(password, U_j-1)
    const std::size_t size = gcry_md_get_algo_dlen(hash);
    const uint8_t index_octets[] = {static_cast<uint8_t>(index >> 24), static_cast<uint8_t>(index >> 16),
                                    static_cast<uint8_t>(index >> 8), static_cast<uint8_t>(index)};
    gcry_md_write(hmac.get(), salt.data(), salt.size());
    gcry_md_write(hmac.get(), index_octets, sizeof index_octets);

    secret_t u(size);
    secret_t t(size);
    for (uint32_t done = 1;; ++done) {
        std::memcpy(u.data(), gcry_md_read(hmac.get(), hash), size);
        for (std::size_t i = 0; i < size; ++i) t.data()[i] ^= u.data()[i];
        report(on_progress, done, iterations);
        if (done == iterations) return t;
        gcry_md_reset(hmac.get()); // back to the state after the key
        gcry_md_write(hmac.get(), u.data(), size);
    }
}

secret_t pkcs12_mac_key(int hash, std::size_t block_size, std::string_view password, std::span<const uint8_t> salt,
                        uint32_t iterations, const progress_t& on_progress) {
    std::string utf16;
    const wipe_guard_t wipe_utf16(utf16);
    utf16.reserve(2 * password.size() + 2);
    const md_handle_t md = open_md(hash, 0);
    if (!md || iterations == 0 || !append_utf16be(password, utf16)) return {};
    utf16.append(2, '\0');

    constexpr uint8_t mac_key_id = 3; // RFC 7292 B.3
    const std::span<const uint8_t> password_octets(reinterpret_cast<const uint8_t*>(utf16.data()), utf16.size());
    std::vector<uint8_t> input;
    input.reserve(block_size + rounded_up(salt.size(), block_size) + rounded_up(utf16.size(), block_size));
    append_repeated({&mac_key_id, 1}, block_size, input);
    append_repeated(salt, rounded_up(salt.size(), block_size), input);
    append_repeated(password_octets, rounded_up(utf16.size(), block_size), input);
    gcry_md_write(md.get(), input.data(), input.size());
    wipe(input.data(), input.size());

    secret_t key(gcry_md_get_algo_dlen(hash));
    for (uint32_t done = 1;; ++done) {
        std::memcpy(key.data(), gcry_md_read(md.get(), hash), key.size());
        report(on_progress, done, iterations);
        if (done == iterations) return key;
        gcry_md_reset(md.get());
        gcry_md_write(md.get(), key.data(), key.size());
    }
}

} // namespace tool
