// The names under which algorithms are shown.
#pragma once

#include <pkider/alg.h>

#include <string_view>

namespace pkider {

struct display_name_t {
    pki_alg_t alg;
    std::string_view name;
};

// Key and hash names say "(CPRO)" where signature names say "(CryptoPro)"; both are what hosts show.
// Required: DisplayNames.RequiredVariantsAreLabelledDifferently.
// clang-format off
inline constexpr display_name_t display_names[] = {
    // Public keys and ciphers
    {PKI_ALG_RSA,                                 "RSA"},
    {PKI_ALG_DSA,                                 "DSA"},
    {PKI_ALG_DH_KEY_AGREEMENT,                    "DHKA"},
    {PKI_ALG_OLD_DSA,                             "OLD DSA"},
    {PKI_ALG_DH_PUBLIC_NUMBER,                    "DHPN"},
    {PKI_ALG_RC2,                                 "RC2"},
    {PKI_ALG_RC4,                                 "RC4"},
    {PKI_ALG_RC5,                                 "RC5"},
    {PKI_ALG_DES,                                 "DES"},
    {PKI_ALG_3DES_2KEY,                           "2KEY 3DES"},
    {PKI_ALG_3DES_3KEY,                           "3KEY 3DES"},
    {PKI_ALG_GOST3410_94,                         "GOST R 34.10-94"},
    {PKI_ALG_GOST3410_2001,                       "GOST R 34.10-2001"},
    {PKI_ALG_GOST3410_2012_256,                   "GOST R 34.10-2012 256"},
    {PKI_ALG_GOST3410_2012_512,                   "GOST R 34.10-2012 512"},
    {PKI_ALG_GOST3410_94_TIK,                     "GOST R 34.10-94 (TIK)"},
    {PKI_ALG_GOST3410_94_CPRO,                    "GOST R 34.10-94 (CPRO)"},
    {PKI_ALG_GOST3410_2001_CPRO,                  "GOST R 34.10-2001 (CPRO)"},
    {PKI_ALG_GOST3410_94_SIGNALCOM,               "GOST R 34.10-94 (SignalCOM)"},
    {PKI_ALG_GOST3410_2001_SIGNALCOM,             "GOST R 34.10-2001 (SignalCOM)"},

    // Hashes
    {PKI_ALG_SHA,                                 "SHA"},
    {PKI_ALG_SHA1,                                "SHA1"},
    {PKI_ALG_SHA224,                              "SHA224"},
    {PKI_ALG_SHA256,                              "SHA256"},
    {PKI_ALG_SHA384,                              "SHA384"},
    {PKI_ALG_SHA512,                              "SHA512"},
    {PKI_ALG_MD2,                                 "MD2"},
    {PKI_ALG_MD5,                                 "MD5"},
    {PKI_ALG_GOST3411_94,                         "GOST 34.11-94"},
    {PKI_ALG_GOST3411_2012_256,                   "GOST 34.11-2012 256"},
    {PKI_ALG_GOST3411_2012_512,                   "GOST 34.11-2012 512"},
    {PKI_ALG_GOST3411_94_TIK,                     "GOST 34.11-94 (TIK)"},
    {PKI_ALG_GOST3411_94_CPRO,                    "GOST 34.11-94 (CPRO)"},
    {PKI_ALG_GOST3411_94_SIGNALCOM,               "GOST 34.11-94 (SignalCOM)"},

    // Signatures and MACs
    {PKI_ALG_SHA_RSA,                             "shaRSA"},
    {PKI_ALG_SHA1_RSA,                            "sha1RSA"},
    {PKI_ALG_SHA224_RSA,                          "sha224RSA"},
    {PKI_ALG_SHA256_RSA,                          "sha256RSA"},
    {PKI_ALG_SHA384_RSA,                          "sha384RSA"},
    {PKI_ALG_SHA512_RSA,                          "sha512RSA"},
    {PKI_ALG_RSASSA_PSS,                          "RSASSA-PSS"},
    {PKI_ALG_RSASSA_PSS_SHA1,                     "sha1RSASSA-PSS"},
    {PKI_ALG_RSASSA_PSS_SHA224,                   "sha224RSASSA-PSS"},
    {PKI_ALG_RSASSA_PSS_SHA256,                   "sha256RSASSA-PSS"},
    {PKI_ALG_RSASSA_PSS_SHA384,                   "sha384RSASSA-PSS"},
    {PKI_ALG_RSASSA_PSS_SHA512,                   "sha512RSASSA-PSS"},
    {PKI_ALG_MD2_RSA,                             "md2RSA"},
    {PKI_ALG_MD5_RSA,                             "md5RSA"},
    {PKI_ALG_SHA_DSA,                             "shaDSA"},
    {PKI_ALG_SHA1_DSA,                            "sha1DSA"},
    {PKI_ALG_3DES_2KEY_SHA1,                      "2KEY 3DES SHA1"},
    {PKI_ALG_3DES_3KEY_SHA1,                      "3KEY 3DES SHA1"},
    {PKI_ALG_HMAC_SHA1,                           "sha1HMAC"},
    {PKI_ALG_GOST3411_94_GOST3410_94,             "GOST R 34.11/34.10-94"},
    {PKI_ALG_GOST3411_94_GOST3410_2001,           "GOST R 34.11/34.10-2001"},
    {PKI_ALG_GOST3411_2012_256_GOST3410_2012_256, "GOST R 34.11-2012/34.10-2012 256"},
    {PKI_ALG_GOST3411_2012_512_GOST3410_2012_512, "GOST R 34.11-2012/34.10-2012 512"},
    {PKI_ALG_GOST3411_94_GOST3410_94_TIK,         "GOST R 34.11/34.10-94 (TIK)"},
    {PKI_ALG_GOST3411_94_GOST3410_94_CPRO,        "GOST R 34.11/34.10-94 (CryptoPro)"},
    {PKI_ALG_GOST3411_94_GOST3410_2001_CPRO,      "GOST R 34.11/34.10-2001 (CryptoPro)"},
    {PKI_ALG_GOST3411_94_GOST3410_94_SIGNALCOM,   "GOST R 34.11/34.10-94 (SignalCOM)"},
    {PKI_ALG_GOST3411_94_GOST3410_2001_SIGNALCOM, "GOST R 34.11/34.10-2001 (SignalCOM)"},
};
// clang-format on

/// The name of `alg`, or "unknown". The text is constant and ends with a NUL that the view does not count.
std::string_view alg_display_name(pki_alg_t alg);

} // namespace pkider
