#include "tools/pkider/facts/alg_names.h"

#include "tools/pkider/formats/oid_constant.h"

#include <algorithm>
#include <cstdio>

namespace tool {
namespace {

#define ROW(enumerator, name)                                                                                          \
    { enumerator, name, #enumerator }
constexpr alg_row_t rows[] = {
    // Public keys and ciphers
    ROW(PKI_ALG_RSA, "RSA"),
    ROW(PKI_ALG_DSA, "DSA"),
    ROW(PKI_ALG_DH_KEY_AGREEMENT, "DHKA"),
    ROW(PKI_ALG_OLD_DSA, "OLD DSA"),
    ROW(PKI_ALG_DH_PUBLIC_NUMBER, "DHPN"),
    ROW(PKI_ALG_RC2, "RC2"),
    ROW(PKI_ALG_RC4, "RC4"),
    ROW(PKI_ALG_RC5, "RC5"),
    ROW(PKI_ALG_DES, "DES"),
    ROW(PKI_ALG_3DES_2KEY, "2KEY 3DES"),
    ROW(PKI_ALG_3DES_3KEY, "3KEY 3DES"),
    ROW(PKI_ALG_GOST3410_94, "GOST R 34.10-94"),
    ROW(PKI_ALG_GOST3410_2001, "GOST R 34.10-2001"),
    ROW(PKI_ALG_GOST3410_2012_256, "GOST R 34.10-2012 256"),
    ROW(PKI_ALG_GOST3410_2012_512, "GOST R 34.10-2012 512"),
    ROW(PKI_ALG_GOST3410_94_TIK, "GOST R 34.10-94 (TIK)"),
    ROW(PKI_ALG_GOST3410_94_CPRO, "GOST R 34.10-94 (CPRO)"),
    ROW(PKI_ALG_GOST3410_2001_CPRO, "GOST R 34.10-2001 (CPRO)"),
    ROW(PKI_ALG_GOST3410_94_SIGNALCOM, "GOST R 34.10-94 (SignalCOM)"),
    ROW(PKI_ALG_GOST3410_2001_SIGNALCOM, "GOST R 34.10-2001 (SignalCOM)"),

    // Hashes
    ROW(PKI_ALG_SHA, "SHA"),
    ROW(PKI_ALG_SHA1, "SHA1"),
    ROW(PKI_ALG_SHA224, "SHA224"),
    ROW(PKI_ALG_SHA256, "SHA256"),
    ROW(PKI_ALG_SHA384, "SHA384"),
    ROW(PKI_ALG_SHA512, "SHA512"),
    ROW(PKI_ALG_MD2, "MD2"),
    ROW(PKI_ALG_MD5, "MD5"),
    ROW(PKI_ALG_GOST3411_94, "GOST 34.11-94"),
    ROW(PKI_ALG_GOST3411_2012_256, "GOST 34.11-2012 256"),
    ROW(PKI_ALG_GOST3411_2012_512, "GOST 34.11-2012 512"),
    ROW(PKI_ALG_GOST3411_94_TIK, "GOST 34.11-94 (TIK)"),
    ROW(PKI_ALG_GOST3411_94_CPRO, "GOST 34.11-94 (CPRO)"),
    ROW(PKI_ALG_GOST3411_94_SIGNALCOM, "GOST 34.11-94 (SignalCOM)"),

    // Signatures and MACs: hash | key
    ROW(PKI_ALG_SHA_RSA, "shaRSA"),
    ROW(PKI_ALG_SHA1_RSA, "sha1RSA"),
    ROW(PKI_ALG_SHA224_RSA, "sha224RSA"),
    ROW(PKI_ALG_SHA256_RSA, "sha256RSA"),
    ROW(PKI_ALG_SHA384_RSA, "sha384RSA"),
    ROW(PKI_ALG_SHA512_RSA, "sha512RSA"),
    ROW(PKI_ALG_RSASSA_PSS, "RSASSA-PSS"),
    ROW(PKI_ALG_RSASSA_PSS_SHA1, "sha1RSASSA-PSS"),
    ROW(PKI_ALG_RSASSA_PSS_SHA224, "sha224RSASSA-PSS"),
    ROW(PKI_ALG_RSASSA_PSS_SHA256, "sha256RSASSA-PSS"),
    ROW(PKI_ALG_RSASSA_PSS_SHA384, "sha384RSASSA-PSS"),
    ROW(PKI_ALG_RSASSA_PSS_SHA512, "sha512RSASSA-PSS"),
    ROW(PKI_ALG_MD2_RSA, "md2RSA"),
    ROW(PKI_ALG_MD5_RSA, "md5RSA"),
    ROW(PKI_ALG_SHA_DSA, "shaDSA"),
    ROW(PKI_ALG_SHA1_DSA, "sha1DSA"),
    ROW(PKI_ALG_3DES_2KEY_SHA1, "2KEY 3DES SHA1"),
    ROW(PKI_ALG_3DES_3KEY_SHA1, "3KEY 3DES SHA1"),
    ROW(PKI_ALG_HMAC_SHA1, "sha1HMAC"),
    ROW(PKI_ALG_GOST3411_94_GOST3410_94, "GOST R 34.11/34.10-94"),
    ROW(PKI_ALG_GOST3411_94_GOST3410_2001, "GOST R 34.11/34.10-2001"),
    ROW(PKI_ALG_GOST3411_2012_256_GOST3410_2012_256, "GOST R 34.11-2012/34.10-2012 256"),
    ROW(PKI_ALG_GOST3411_2012_512_GOST3410_2012_512, "GOST R 34.11-2012/34.10-2012 512"),
    ROW(PKI_ALG_GOST3411_94_GOST3410_94_TIK, "GOST R 34.11/34.10-94 (TIK)"),
    ROW(PKI_ALG_GOST3411_94_GOST3410_94_CPRO, "GOST R 34.11/34.10-94 (CryptoPro)"),
    ROW(PKI_ALG_GOST3411_94_GOST3410_2001_CPRO, "GOST R 34.11/34.10-2001 (CryptoPro)"),
    ROW(PKI_ALG_GOST3411_94_GOST3410_94_SIGNALCOM, "GOST R 34.11/34.10-94 (SignalCOM)"),
    ROW(PKI_ALG_GOST3411_94_GOST3410_2001_SIGNALCOM, "GOST R 34.11/34.10-2001 (SignalCOM)"),
};
#undef ROW

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool equal_without_case(const std::string& text, std::string_view name) {
    return std::ranges::equal(text, name, {}, lower, lower);
}

} // namespace

std::span<const alg_row_t> alg_rows() {
    return rows;
}

const alg_row_t* find_alg(pki_alg_t alg) {
    const auto* const row = std::ranges::find(rows, alg, &alg_row_t::alg);
    return row == std::end(rows) ? nullptr : row;
}

const alg_row_t* find_alg(const std::string& name) {
    const auto* const row = std::ranges::find_if(rows, [&](const alg_row_t& candidate) {
        return equal_without_case(name, candidate.name) || equal_without_case(name, candidate.enumerator);
    });
    return row == std::end(rows) ? nullptr : row;
}

const char* alg_name(pki_alg_t alg) {
    const alg_row_t* const row = find_alg(alg);
    return row == nullptr ? "unknown" : row->name;
}

std::string alg_value_text(pki_alg_t alg) {
    char text[11];
    std::snprintf(text, sizeof text, "0x%08X", static_cast<unsigned>(alg));
    return text;
}

bool is_hash_oid(std::span<const std::uint8_t> oid) {
    constexpr bytes_t nist_hashes = tool::oid<"2.16.840.1.101.3.4.2">;
    constexpr std::size_t prefix = nist_hashes.size();
    if (oid.size() == prefix + 1 && std::ranges::equal(oid.first(prefix), nist_hashes)) return true;
    return oid.size() <= UINT32_MAX &&
           PKI_OID_TO_HASH_ALG(oid.data(), static_cast<std::uint32_t>(oid.size())) != PKI_ALG_NONE;
}

std::uint32_t hash_size(pki_alg_t hash) {
    switch (hash_field(hash)) {
    case PKI_ALG_MD2:
    case PKI_ALG_MD5:
        return 16;
    case PKI_ALG_SHA:
    case PKI_ALG_SHA1:
        return 20;
    case PKI_ALG_SHA224:
        return 28;
    case PKI_ALG_SHA256:
    case PKI_ALG_GOST3411_94:
    case PKI_ALG_GOST3411_2012_256:
        return 32;
    case PKI_ALG_SHA384:
        return 48;
    case PKI_ALG_SHA512:
    case PKI_ALG_GOST3411_2012_512:
        return 64;
    default:
        return 0;
    }
}

} // namespace tool
