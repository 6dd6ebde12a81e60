#include "tools/pkider/crypto/gost_pbe.h"

#include "tools/pkider/crypto/gcrypt_handle.h"
#include "tools/pkider/crypto/iteration_count.h"
#include "tools/pkider/formats/der_header.h"
#include "tools/pkider/formats/oid_constant.h"

#include <pkider/der.h>

#include <algorithm>
#include <functional>
#include <iterator>

namespace tool {
namespace {

using bytes_view_t = std::span<const uint8_t>;

constexpr std::size_t key_size = 32;
constexpr std::size_t iv_size = 8;
constexpr uint32_t mac_key_offset = 64; // the MAC key is the last 32 of 96 derived bytes

// ---- DER ---------------------------------------------------------------------------------------------------------

/// The element at the start of `bytes`; its contents, and what follows it.
struct element_t {
    bytes_view_t contents, rest;
    bool found = false;
};

element_t read_element(asn_tag_t::Type tag, bytes_view_t bytes) {
    uint64_t length = 0;
    const uint8_t* const contents = asn1_read_tag_(tag, bytes.data(), bytes.size(), &length);
    if (contents == nullptr) return {};
    const auto start = static_cast<std::size_t>(contents - bytes.data());
    return {bytes.subspan(start, length), bytes.subspan(start + length), true};
}

/// The element is all there is in `bytes`.
bool is_whole(const element_t& element) {
    return element.found && element.rest.empty();
}

/// SafeContents ::= SEQUENCE OF SafeBag, and SafeBag is a SEQUENCE.
bool is_safe_contents(bytes_view_t bytes) {
    const element_t safe = read_element(asn_tag_t::SEQUENCE, bytes);
    return is_whole(safe) && (safe.contents.empty() || read_element(asn_tag_t::SEQUENCE, safe.contents).found);
}

/// PrivateKeyInfo ::= SEQUENCE { INTEGER version, SEQUENCE algorithm, OCTET STRING key, ... }
bool is_private_key_info(bytes_view_t bytes) {
    const element_t info = read_element(asn_tag_t::SEQUENCE, bytes);
    if (!is_whole(info)) return false;
    const element_t version = read_element(asn_tag_t::INTEGER, info.contents);
    const element_t algorithm = read_element(asn_tag_t::SEQUENCE, version.rest);
    return algorithm.found && read_element(asn_tag_t::OCTET_STRING, algorithm.rest).found;
}

// ---- Algorithms --------------------------------------------------------------------------------------------------

/// Parameter sets of GOST 28147-89. libgcrypt names their S-boxes by the dotted text.
struct param_set_t {
    bytes_view_t oid;
    const char* sbox;
};
template <pkider::literal_t Dotted>
constexpr param_set_t param_set{oid<Dotted>, Dotted.text};

constexpr param_set_t cryptopro_a = param_set<"1.2.643.2.2.31.1">; // the one that the library writes
// clang-format off
constexpr param_set_t param_sets[] = {
    param_set<"1.2.643.2.2.31.0">,
    cryptopro_a,
    param_set<"1.2.643.2.2.31.2">,
    param_set<"1.2.643.2.2.31.3">,
    param_set<"1.2.643.2.2.31.4">,
    param_set<"1.2.643.7.1.2.5.1.1">,
};
// clang-format on

/// Digests that a MAC is made with. GOST files derive its key with PBKDF2, or as all others do. The work was measured
/// with libgcrypt and rounded up; for the SHA family it is that of a processor without instructions for it.
struct mac_digest_t {
    bytes_view_t oid;
    int hash;
    std::size_t block_size;
    bool has_pbkdf2_form;
    iteration_work_t work;
};
// clang-format off
constexpr mac_digest_t mac_digests[] = {
    {oid<"1.2.643.2.2.9">,          GCRY_MD_GOSTR3411_CP, 32,  true,  {16, 8}},
    {oid<"1.2.643.7.1.1.2.2">,      GCRY_MD_STRIBOG256,   64,  true,  {12, 6}},
    {oid<"1.2.643.7.1.1.2.3">,      GCRY_MD_STRIBOG512,   64,  true,  {16, 8}},
    {oid<"1.3.14.3.2.26">,          GCRY_MD_SHA1,         64,  false, {2, 1}},
    {oid<"2.16.840.1.101.3.4.2.4">, GCRY_MD_SHA224,       64,  false, {2, 1}},
    {oid<"2.16.840.1.101.3.4.2.1">, GCRY_MD_SHA256,       64,  false, {2, 1}},
    {oid<"2.16.840.1.101.3.4.2.2">, GCRY_MD_SHA384,       128, false, {2, 1}},
    {oid<"2.16.840.1.101.3.4.2.3">, GCRY_MD_SHA512,       128, false, {2, 1}},
};
// clang-format on

template <typename Row, std::size_t Size>
const Row* find_row(const Row (&rows)[Size], bytes_view_t wanted) {
    const auto row = std::ranges::find_if(rows, [&](const Row& each) { return std::ranges::equal(each.oid, wanted); });
    return row == std::end(rows) ? nullptr : row;
}

/// GOST 28147-89, CFB of 8 octets, with the key meshing of RFC 4357 2.3.2. Works in place.
bool run_cipher(bool decrypting, const char* sbox, bytes_view_t key, bytes_view_t iv, std::span<uint8_t> bytes) {
    // MESH: the plain GCRY_CIPHER_GOST28147 gives the same up to 1024 octets, and garbage after them. Each message
    // gets a handle of its own, because meshing changes the key in it. Without an S-box libgcrypt takes the test
    // parameters.
    gcry_cipher_hd_t opened = nullptr;
    if (gcry_cipher_open(&opened, GCRY_CIPHER_GOST28147_MESH, GCRY_CIPHER_MODE_CFB, GCRY_CIPHER_SECURE) != 0)
        return false;
    const cipher_handle_t cipher(opened);
    if (gcry_cipher_ctl(opened, GCRYCTL_SET_SBOX, const_cast<char*>(sbox), 0) != 0) return false;
    if (gcry_cipher_setkey(opened, key.data(), key.size()) != 0) return false;
    if (gcry_cipher_setiv(opened, iv.data(), iv.size()) != 0) return false;
    return (decrypting ? gcry_cipher_decrypt(opened, bytes.data(), bytes.size(), nullptr, 0)
                       : gcry_cipher_encrypt(opened, bytes.data(), bytes.size(), nullptr, 0)) == 0;
}

/// Empty when libgcrypt refuses.
std::vector<uint8_t> hmac(int hash, bytes_view_t key, bytes_view_t data) {
    const md_handle_t md = open_md(hash, GCRY_MD_FLAG_HMAC);
    if (!md || gcry_md_setkey(md.get(), key.data(), key.size()) != 0) return {};
    gcry_md_write(md.get(), data.data(), data.size());
    const uint8_t* const result = gcry_md_read(md.get(), hash);
    return {result, result + gcry_md_get_algo_dlen(hash)};
}

/// Takes the same time wherever the first difference is, so that nobody can feel his way to a right MAC.
bool equal_in_constant_time(bytes_view_t left, bytes_view_t right) {
    if (left.size() != right.size()) return false;
    volatile uint8_t difference = 0;
    for (std::size_t i = 0; i < left.size(); ++i) difference = difference | (left[i] ^ right[i]);
    return difference == 0;
}

bool is_mac(bytes_view_t stored, int hash, bytes_view_t key, bytes_view_t data) {
    const std::vector<uint8_t> made = hmac(hash, key, data);
    return !made.empty() && equal_in_constant_time(made, stored);
}

std::span<uint8_t> writable(std::string& text, std::size_t offset) {
    return {reinterpret_cast<uint8_t*>(text.data()) + offset, text.size() - offset};
}

} // namespace

const char* pbe_fault_text(pbe_fault_t fault) {
    switch (fault) {
    case pbe_fault_t::none:
        return "nothing is wrong";
    case pbe_fault_t::malformed:
        return "there is no OCTET STRING";
    case pbe_fault_t::unknown_digest:
        return "the MAC's digest is not known";
    case pbe_fault_t::wrong_mac:
        return "wrong password or MAC";
    case pbe_fault_t::too_many_iterations:
        return "more iterations than allowed";
    case pbe_fault_t::bad_parameters:
        return "no iterations, or an IV that is not 8 bytes long";
    case pbe_fault_t::unknown_param_set:
        return "unknown parameter set of GOST 28147-89";
    case pbe_fault_t::wrong_plaintext:
        return "wrong password, or damaged";
    case pbe_fault_t::no_cipher:
        return "libgcrypt refuses the algorithm";
    }
    return "";
}

gost_pbe_t::gost_pbe_t(secret_t password, gost_pbe_options_t options)
    : m_password(std::move(password)), m_options(std::move(options)), m_budget(m_options.max_iterations) {
    if (!is_storable_count(m_options.iterations)) throw std::invalid_argument("iteration count with a zero byte");
    if (!gcrypt_ready()) throw pbe_error_t(pbe_fault_t::no_cipher);
}

void gost_pbe_t::set_input(bytes_view_t input) {
    m_readable.assign(1, input);
}

bool gost_pbe_t::fail(pbe_fault_t fault) {
    m_fault = fault;
    return false;
}

// ---- Keys --------------------------------------------------------------------------------------------------------

bool gost_pbe_t::may_iterate(const asked_iterations_t& asked) {
    m_asked = asked;
    if (asked.iterations == 0) return fail(pbe_fault_t::bad_parameters);
    return budget().take(asked) || fail(pbe_fault_t::too_many_iterations);
}

/// One block of PBKDF2. Empty, with the fault set, when that is not allowed or not possible. Valid until the next call.
bytes_view_t gost_pbe_t::pbkdf2(int hash, bytes_view_t salt, const asked_iterations_t& asked, uint32_t block) {
    const auto iterations = static_cast<uint32_t>(asked.iterations);
    for (const derived_key_t& known : m_derived) {
        if (known.hash == hash && known.iterations == iterations && known.block == block &&
            std::ranges::equal(known.salt, salt) && !known.key.empty())
            return known.key.view();
    }
    if (!may_iterate(asked)) return {};
    secret_t key = pbkdf2_block(hash, m_password.view(), salt, iterations, block, m_options.on_progress);
    if (key.empty()) {
        fail(pbe_fault_t::no_cipher);
        return {};
    }
    derived_key_t& place = m_derived[m_next_derived++ % m_derived.size()];
    place = derived_key_t{hash, iterations, block, {salt.begin(), salt.end()}, std::move(key)};
    return place.key.view();
}

/// The last 32 of 96 derived bytes. No hash has a block of which they would be cut: 32 and 64 bytes both divide 64.
bytes_view_t gost_pbe_t::pbkdf2_mac_key(int hash, bytes_view_t salt, const asked_iterations_t& asked) {
    const auto hash_size = static_cast<uint32_t>(gcry_md_get_algo_dlen(hash));
    const bytes_view_t block = pbkdf2(hash, salt, asked, mac_key_offset / hash_size + 1);
    return block.empty() ? block : block.first(key_size);
}

// ---- MAC ---------------------------------------------------------------------------------------------------------

bool gost_pbe_t::check_mac(const pkcs12_mac_t& mac, const uint8_t* data, uint64_t size) {
    m_fault = pbe_fault_t::none;
    // The MAC covers the contents alone (RFC 7292 4), and bytes may follow the element.
    const element_t authenticated = read_element(asn_tag_t::OCTET_STRING, {data, size});
    if (!authenticated.found) return fail(pbe_fault_t::malformed);

    // What follows the OID, a NULL or nothing, has no meaning.
    const element_t digest_oid = read_element(asn_tag_t::OBJECT_IDENTIFIER, {mac.digest_alg, mac.digest_alg_len});
    const mac_digest_t* const digest = find_row(mac_digests, digest_oid.contents);
    if (!digest_oid.found || digest == nullptr) return fail(pbe_fault_t::unknown_digest);

    const bytes_view_t stored(mac.digest, mac.digest_len);
    const bytes_view_t salt(mac.salt, mac.salt_len);
    if (digest->has_pbkdf2_form) {
        const bytes_view_t key = pbkdf2_mac_key(digest->hash, salt, {mac.iterations, digest->work.pbkdf2});
        if (key.empty()) return false;
        m_mac_form = mac_form_t::pbkdf2;
        if (is_mac(stored, digest->hash, key, authenticated.contents)) return true;
    }

    // Where this is more than allowed and PBKDF2 was not, the password may be wrong or right: too many iterations.
    if (!may_iterate({mac.iterations, digest->work.pkcs12})) return false;
    const secret_t key = pkcs12_mac_key(digest->hash, digest->block_size, m_password.text(), salt, mac.iterations,
                                        m_options.on_progress);
    m_mac_form = mac_form_t::pkcs12;
    if (!key.empty() && is_mac(stored, digest->hash, key.view(), authenticated.contents)) return true;
    return fail(pbe_fault_t::wrong_mac);
}

bool gost_pbe_t::make_mac(const uint8_t* data, uint64_t size, pkcs12_mac_t& mac) {
    const element_t authenticated = read_element(asn_tag_t::OCTET_STRING, {data, size});
    if (!authenticated.found) throw pbe_error_t(pbe_fault_t::malformed);

    // The writer always names GOST R 34.11-94; `mac` cannot change it.
    const mac_digest_t& digest = mac_digests[0];
    gcry_randomize(m_mac_salt.data(), m_mac_salt.size(), GCRY_STRONG_RANDOM);
    const bytes_view_t key = pbkdf2_mac_key(digest.hash, m_mac_salt, {m_options.iterations, digest.work.pbkdf2});
    if (key.empty()) throw pbe_error_t(m_fault);
    m_digest = hmac(digest.hash, key, authenticated.contents);
    if (m_digest.empty()) throw pbe_error_t(pbe_fault_t::no_cipher);

    static const std::string algorithm =
        der_header(asn_tag_t::OBJECT_IDENTIFIER, digest.oid.size()).append(as_text(digest.oid));
    mac = {algorithm.size(),  as_bytes(algorithm).data(), m_digest.size(),     m_digest.data(),
           m_mac_salt.size(), m_mac_salt.data(),          m_options.iterations};
    return true;
}

// ---- Decryption --------------------------------------------------------------------------------------------------

/// The record does not name the cipher's parameter set, but the reader has passed it: its OID is the element right
/// after the IV. It is searched only where memory is known: IV and ciphertext must lie, in this order, in the input
/// or in one plaintext, and nothing beyond the start of the ciphertext is read. Null for a set that is not known.
const char* gost_pbe_t::sbox_behind_iv(const pkcs8_encrypted_pki_gost_t& params, const uint8_t* data) const {
    const std::less_equal<const uint8_t*> not_behind; // a total order, also of pointers into different objects
    for (const bytes_view_t memory : m_readable) {
        if (!not_behind(memory.data(), params.iv) || !not_behind(data, memory.data() + memory.size())) continue;
        if (!not_behind(params.iv, data) || static_cast<uint64_t>(data - params.iv) < params.iv_len) continue;
        const bytes_view_t between(params.iv + params.iv_len, data);
        const element_t set_oid = read_element(asn_tag_t::OBJECT_IDENTIFIER, between);
        const param_set_t* const set = find_row(param_sets, set_oid.contents);
        return set_oid.found && set != nullptr ? set->sbox : nullptr;
    }
    return cryptopro_a.sbox;
}

bool gost_pbe_t::decrypt(const pkcs8_encrypted_pki_gost_t& params, const uint8_t* data, uint64_t size,
                         std::string& plain) {
    m_fault = pbe_fault_t::none;
    if (params.iv_len != iv_size) return fail(pbe_fault_t::bad_parameters);
    const char* const sbox = sbox_behind_iv(params, data);
    if (sbox == nullptr) return fail(pbe_fault_t::unknown_param_set);
    const bytes_view_t key = pbkdf2(GCRY_MD_GOSTR3411_CP, {params.salt, params.salt_len}, {params.iterations}, 1);
    if (key.empty()) return false;

    // The reader fills `encrypted` for a shrouded key and leaves it null for an encryptedData.
    const bool is_key = params.encrypted != nullptr;
    const std::string header = is_key ? std::string() : der_header(asn_tag_t::OCTET_STRING, size);
    plain.reserve(header.size() + size);
    plain = header;
    plain.append(reinterpret_cast<const char*>(data), size);
    const std::span<uint8_t> text = writable(plain, header.size());
    if (!run_cipher(true, sbox, key, {params.iv, iv_size}, text)) {
        wipe(plain);
        return fail(pbe_fault_t::no_cipher);
    }
    if (take_plaintext(is_key, header.size(), plain)) return true;
    wipe(plain);
    return fail(pbe_fault_t::wrong_plaintext);
}

/// `plain` has `room` bytes of header before the decrypted bytes. True when that is what the reader expects.
bool gost_pbe_t::take_plaintext(bool is_key, std::size_t room, std::string& plain) {
    const bytes_view_t text = writable(plain, room);
    if (is_key) return is_private_key_info(text);

    // Other programs encrypt the bare SafeContents; with the header it is the element that the reader expects.
    // Files of hosts without this bridge hold the element itself.
    const element_t wrapped = read_element(asn_tag_t::OCTET_STRING, text);
    if (is_whole(wrapped) && read_element(asn_tag_t::SEQUENCE, wrapped.contents).found) {
        plain.erase(0, room);
    } else if (!is_safe_contents(text)) {
        return false;
    }
    m_readable.emplace_back(reinterpret_cast<const uint8_t*>(plain.data()), plain.size());
    return true;
}

// ---- Encryption --------------------------------------------------------------------------------------------------

bool gost_pbe_t::encrypt(const uint8_t* data, uint64_t size, pkcs8_encrypted_pki_gost_t& params, std::string& storage) {
    const element_t safe = read_element(asn_tag_t::OCTET_STRING, {data, size});
    if (!is_whole(safe)) throw pbe_error_t(pbe_fault_t::malformed);
    encrypt_bytes(safe.contents, params, storage);
    return true;
}

void gost_pbe_t::encrypt_key(bytes_view_t info, pkcs8_encrypted_pki_gost_t& params, std::string& storage) {
    encrypt_bytes(info, params, storage);
    params.encrypted = reinterpret_cast<const uint8_t*>(storage.data());
    params.encrypted_len = storage.size();
}

void gost_pbe_t::encrypt_bytes(bytes_view_t plain, pkcs8_encrypted_pki_gost_t& params, std::string& storage) {
    gcry_randomize(m_salt.data(), m_salt.size(), GCRY_STRONG_RANDOM);
    gcry_randomize(m_iv.data(), m_iv.size(), GCRY_STRONG_RANDOM);
    const bytes_view_t key = pbkdf2(GCRY_MD_GOSTR3411_CP, m_salt, {m_options.iterations}, 1);
    if (key.empty()) throw pbe_error_t(m_fault);

    storage.assign(reinterpret_cast<const char*>(plain.data()), plain.size());
    if (!run_cipher(false, cryptopro_a.sbox, key, m_iv, writable(storage, 0))) {
        wipe(storage); // it still holds the plaintext, and the writer would put that into the file
        throw pbe_error_t(pbe_fault_t::no_cipher);
    }
    params = {};
    params.salt_len = m_salt.size();
    params.salt = m_salt.data();
    params.iterations = m_options.iterations;
    params.iv_len = m_iv.size();
    params.iv = m_iv.data();
}

} // namespace tool
