#include "tools/pkider/facts/oid_names.h"

#include "tools/pkider/formats/der_header.h"
#include "tools/pkider/formats/oid_text.h"
#include "tools/pkider/formats/tags.h"

#include <pkider/alg.h>

#include <algorithm>
#include <string_view>
#include <unordered_map>

namespace tool {
namespace {

struct name_row_t {
    const char* dotted;
    const char* name;
};

// The names that the standards themselves use; a family a block, in the order of their numbers.
constexpr name_row_t name_rows[] = {
    // X.520 and neighbours: attribute types that are rarely in a map of short names
    {"2.5.4.5", "serialNumber"},
    {"2.5.4.13", "description"},
    {"2.5.4.15", "businessCategory"},
    {"2.5.4.16", "postalAddress"},
    {"2.5.4.17", "postalCode"},
    {"2.5.4.97", "organizationIdentifier"},
    {"1.3.6.1.4.1.311.60.2.1.1", "jurisdictionLocalityName"},
    {"1.3.6.1.4.1.311.60.2.1.2", "jurisdictionStateOrProvinceName"},
    {"1.3.6.1.4.1.311.60.2.1.3", "jurisdictionCountryName"},
    {"1.2.643.3.131.1.1", "INN"},
    {"1.2.643.100.1", "OGRN"},
    {"1.2.643.100.3", "SNILS"},
    {"1.2.643.100.4", "INNLE"},
    {"1.2.643.100.5", "OGRNIP"},

    // RFC 5280 4.2.1, 5.2, 5.3: extensions
    {"2.5.29.14", "subjectKeyIdentifier"},
    {"2.5.29.15", "keyUsage"},
    {"2.5.29.16", "privateKeyUsagePeriod"},
    {"2.5.29.17", "subjectAltName"},
    {"2.5.29.18", "issuerAltName"},
    {"2.5.29.19", "basicConstraints"},
    {"2.5.29.20", "cRLNumber"},
    {"2.5.29.21", "cRLReason"},
    {"2.5.29.24", "invalidityDate"},
    {"2.5.29.27", "deltaCRLIndicator"},
    {"2.5.29.28", "issuingDistributionPoint"},
    {"2.5.29.29", "certificateIssuer"},
    {"2.5.29.30", "nameConstraints"},
    {"2.5.29.31", "cRLDistributionPoints"},
    {"2.5.29.32", "certificatePolicies"},
    {"2.5.29.32.0", "anyPolicy"},
    {"2.5.29.33", "policyMappings"},
    {"2.5.29.35", "authorityKeyIdentifier"},
    {"2.5.29.36", "policyConstraints"},
    {"2.5.29.37", "extKeyUsage"},
    {"2.5.29.37.0", "anyExtendedKeyUsage"},
    {"2.5.29.46", "freshestCRL"},
    {"2.5.29.54", "inhibitAnyPolicy"},
    {"1.3.6.1.5.5.7.1.1", "authorityInfoAccess"},
    {"1.3.6.1.5.5.7.1.3", "qcStatements"},
    {"1.3.6.1.5.5.7.1.11", "subjectInfoAccess"},
    {"1.3.6.1.5.5.7.1.24", "tlsFeature"},
    {"1.3.6.1.4.1.11129.2.4.2", "signedCertificateTimestampList"},
    {"1.2.643.100.111", "subjectSignTool"},
    {"1.2.643.100.112", "issuerSignTool"},

    // RFC 5280 4.2.1.4, 4.2.1.12, 4.2.2.1: policy qualifiers, key purposes, access methods
    {"1.3.6.1.5.5.7.2.1", "cps"},
    {"1.3.6.1.5.5.7.2.2", "unotice"},
    {"1.3.6.1.5.5.7.3.1", "serverAuth"},
    {"1.3.6.1.5.5.7.3.2", "clientAuth"},
    {"1.3.6.1.5.5.7.3.3", "codeSigning"},
    {"1.3.6.1.5.5.7.3.4", "emailProtection"},
    {"1.3.6.1.5.5.7.3.8", "timeStamping"},
    {"1.3.6.1.5.5.7.3.9", "OCSPSigning"},
    {"1.3.6.1.5.5.7.3.17", "ipsecIKE"},
    {"1.3.6.1.5.5.7.48.1", "ocsp"},
    {"1.3.6.1.5.5.7.48.2", "caIssuers"},

    // RFC 5480, RFC 5758, RFC 8410: elliptic curves
    {"1.2.840.10045.2.1", "ecPublicKey"},
    {"1.2.840.10045.3.1.1", "secp192r1"},
    {"1.2.840.10045.3.1.7", "secp256r1"},
    {"1.3.132.0.10", "secp256k1"},
    {"1.3.132.0.33", "secp224r1"},
    {"1.3.132.0.34", "secp384r1"},
    {"1.3.132.0.35", "secp521r1"},
    {"1.3.36.3.3.2.8.1.1.7", "brainpoolP256r1"},
    {"1.3.36.3.3.2.8.1.1.11", "brainpoolP384r1"},
    {"1.3.36.3.3.2.8.1.1.13", "brainpoolP512r1"},
    {"1.2.840.10045.4.1", "ecdsa-with-SHA1"},
    {"1.2.840.10045.4.3.1", "ecdsa-with-SHA224"},
    {"1.2.840.10045.4.3.2", "ecdsa-with-SHA256"},
    {"1.2.840.10045.4.3.3", "ecdsa-with-SHA384"},
    {"1.2.840.10045.4.3.4", "ecdsa-with-SHA512"},
    {"1.3.101.110", "X25519"},
    {"1.3.101.111", "X448"},
    {"1.3.101.112", "Ed25519"},
    {"1.3.101.113", "Ed448"},

    // RFC 8017, RFC 3279, RFC 5758: what the algorithm catalogue does not have
    {"1.2.840.113549.1.1.7", "RSAES-OAEP"},
    {"1.2.840.113549.1.1.8", "MGF1"},
    {"1.2.840.113549.1.1.9", "pSpecified"},
    {"1.2.840.113549.1.3.1", "dhKeyAgreement"},
    {"1.2.840.10046.2.1", "dhpublicnumber"},
    {"2.16.840.1.101.3.4.3.1", "dsa-with-SHA224"},
    {"2.16.840.1.101.3.4.3.2", "dsa-with-SHA256"},
    {"2.16.840.1.101.3.4.2.5", "SHA512-224"},
    {"2.16.840.1.101.3.4.2.6", "SHA512-256"},
    {"2.16.840.1.101.3.4.2.7", "SHA3-224"},
    {"2.16.840.1.101.3.4.2.8", "SHA3-256"},
    {"2.16.840.1.101.3.4.2.9", "SHA3-384"},
    {"2.16.840.1.101.3.4.2.10", "SHA3-512"},

    // RFC 8018: password-based encryption, and its ciphers and pseudo-random functions
    {"1.2.840.113549.1.5.3", "pbeWithMD5AndDES-CBC"},
    {"1.2.840.113549.1.5.10", "pbeWithSHA1AndDES-CBC"},
    {"1.2.840.113549.1.5.12", "PBKDF2"},
    {"1.2.840.113549.1.5.13", "PBES2"},
    {"1.2.840.113549.1.5.14", "PBMAC1"},
    {"1.3.6.1.4.1.11591.4.11", "scrypt"},
    {"1.2.840.113549.2.7", "hmacWithSHA1"},
    {"1.2.840.113549.2.8", "hmacWithSHA224"},
    {"1.2.840.113549.2.9", "hmacWithSHA256"},
    {"1.2.840.113549.2.10", "hmacWithSHA384"},
    {"1.2.840.113549.2.11", "hmacWithSHA512"},
    {"1.3.14.3.2.7", "desCBC"},
    {"1.2.840.113549.3.2", "rc2CBC"},
    {"1.2.840.113549.3.7", "des-EDE3-CBC"},
    {"2.16.840.1.101.3.4.1.2", "aes128-CBC"},
    {"2.16.840.1.101.3.4.1.22", "aes192-CBC"},
    {"2.16.840.1.101.3.4.1.42", "aes256-CBC"},

    // RFC 5652, RFC 2985: content types and attributes
    {"1.2.840.113549.1.7.1", "data"},
    {"1.2.840.113549.1.7.2", "signedData"},
    {"1.2.840.113549.1.7.3", "envelopedData"},
    {"1.2.840.113549.1.7.4", "signedAndEnvelopedData"},
    {"1.2.840.113549.1.7.5", "digestedData"},
    {"1.2.840.113549.1.7.6", "encryptedData"},
    {"1.2.840.113549.1.9.2", "unstructuredName"},
    {"1.2.840.113549.1.9.3", "contentType"},
    {"1.2.840.113549.1.9.4", "messageDigest"},
    {"1.2.840.113549.1.9.5", "signingTime"},
    {"1.2.840.113549.1.9.7", "challengePassword"},
    {"1.2.840.113549.1.9.14", "extensionRequest"},
    {"1.2.840.113549.1.9.15", "smimeCapabilities"},
    {"1.2.840.113549.1.9.16.1.4", "tSTInfo"},
    {"1.2.840.113549.1.9.16.2.12", "signingCertificate"},
    {"1.2.840.113549.1.9.16.2.47", "signingCertificateV2"},
    {"1.2.840.113549.1.9.20", "friendlyName"},
    {"1.2.840.113549.1.9.21", "localKeyId"},
    {"1.2.840.113549.1.9.22.1", "x509Certificate"},
    {"1.2.840.113549.1.9.22.2", "sdsiCertificate"},
    {"1.2.840.113549.1.9.23.1", "x509Crl"},

    // RFC 7292 appendix C and 4.2: encryption schemes and bags
    {"1.2.840.113549.1.12.1.1", "pbeWithSHAAnd128BitRC4"},
    {"1.2.840.113549.1.12.1.2", "pbeWithSHAAnd40BitRC4"},
    {"1.2.840.113549.1.12.1.3", "pbeWithSHAAnd3-KeyTripleDES-CBC"},
    {"1.2.840.113549.1.12.1.4", "pbeWithSHAAnd2-KeyTripleDES-CBC"},
    {"1.2.840.113549.1.12.1.5", "pbeWithSHAAnd128BitRC2-CBC"},
    {"1.2.840.113549.1.12.1.6", "pbeWithSHAAnd40BitRC2-CBC"},
    {"1.2.840.113549.1.12.10.1.1", "keyBag"},
    {"1.2.840.113549.1.12.10.1.2", "pkcs8ShroudedKeyBag"},
    {"1.2.840.113549.1.12.10.1.3", "certBag"},
    {"1.2.840.113549.1.12.10.1.4", "crlBag"},
    {"1.2.840.113549.1.12.10.1.5", "secretBag"},
    {"1.2.840.113549.1.12.10.1.6", "safeContentsBag"},

    // RFC 4357, RFC 7836, RFC 9215, RFC 9337: GOST ciphers, MACs and parameter sets
    {"1.2.643.2.2.10", "id-HMACGostR3411-94"},
    {"1.2.643.2.2.21", "id-Gost28147-89"},
    {"1.2.643.2.2.22", "id-Gost28147-89-MAC"},
    {"1.2.643.7.1.1.4.1", "id-tc26-hmac-gost-3411-12-256"},
    {"1.2.643.7.1.1.4.2", "id-tc26-hmac-gost-3411-12-512"},
    {"1.2.643.2.2.30.0", "id-GostR3411-94-TestParamSet"},
    {"1.2.643.2.2.30.1", "id-GostR3411-94-CryptoProParamSet"},
    {"1.2.643.2.2.31.0", "id-Gost28147-89-TestParamSet"},
    {"1.2.643.2.2.31.1", "id-Gost28147-89-CryptoPro-A-ParamSet"},
    {"1.2.643.2.2.31.2", "id-Gost28147-89-CryptoPro-B-ParamSet"},
    {"1.2.643.2.2.31.3", "id-Gost28147-89-CryptoPro-C-ParamSet"},
    {"1.2.643.2.2.31.4", "id-Gost28147-89-CryptoPro-D-ParamSet"},
    {"1.2.643.7.1.2.5.1.1", "id-tc26-gost-28147-param-Z"},
    {"1.2.643.2.2.32.0", "id-GostR3410-94-TestParamSet"},
    {"1.2.643.2.2.32.2", "id-GostR3410-94-CryptoPro-A-ParamSet"},
    {"1.2.643.2.2.32.3", "id-GostR3410-94-CryptoPro-B-ParamSet"},
    {"1.2.643.2.2.32.4", "id-GostR3410-94-CryptoPro-C-ParamSet"},
    {"1.2.643.2.2.32.5", "id-GostR3410-94-CryptoPro-D-ParamSet"},
    {"1.2.643.2.2.33.1", "id-GostR3410-94-CryptoPro-XchA-ParamSet"},
    {"1.2.643.2.2.33.2", "id-GostR3410-94-CryptoPro-XchB-ParamSet"},
    {"1.2.643.2.2.33.3", "id-GostR3410-94-CryptoPro-XchC-ParamSet"},
    {"1.2.643.2.2.35.0", "id-GostR3410-2001-TestParamSet"},
    {"1.2.643.2.2.35.1", "id-GostR3410-2001-CryptoPro-A-ParamSet"},
    {"1.2.643.2.2.35.2", "id-GostR3410-2001-CryptoPro-B-ParamSet"},
    {"1.2.643.2.2.35.3", "id-GostR3410-2001-CryptoPro-C-ParamSet"},
    {"1.2.643.2.2.36.0", "id-GostR3410-2001-CryptoPro-XchA-ParamSet"},
    {"1.2.643.2.2.36.1", "id-GostR3410-2001-CryptoPro-XchB-ParamSet"},
    {"1.2.643.7.1.2.1.1.1", "id-tc26-gost-3410-2012-256-paramSetA"},
    {"1.2.643.7.1.2.1.1.2", "id-tc26-gost-3410-2012-256-paramSetB"},
    {"1.2.643.7.1.2.1.1.3", "id-tc26-gost-3410-2012-256-paramSetC"},
    {"1.2.643.7.1.2.1.1.4", "id-tc26-gost-3410-2012-256-paramSetD"},
    {"1.2.643.7.1.2.1.2.0", "id-tc26-gost-3410-2012-512-paramSetTest"},
    {"1.2.643.7.1.2.1.2.1", "id-tc26-gost-3410-2012-512-paramSetA"},
    {"1.2.643.7.1.2.1.2.2", "id-tc26-gost-3410-2012-512-paramSetB"},
    {"1.2.643.7.1.2.1.2.3", "id-tc26-gost-3410-2012-512-paramSetC"},
};

const char* find_name(const std::string& dotted) {
    static const auto index = [] {
        std::unordered_map<std::string_view, const char*> rows;
        for (const name_row_t& row : name_rows) rows.emplace(row.dotted, row.name);
        return rows;
    }();
    const auto found = index.find(dotted);
    return found == index.end() ? nullptr : found->second;
}

bool is_minimal(bytes_t contents) {
    bool is_first = true; // of a subidentifier
    for (const std::uint8_t byte : contents) {
        if (is_first && byte == 0x80) return false;
        is_first = byte < 0x80;
    }
    return true;
}

std::string name_of(bytes_t contents, const std::string& dotted, oid_map_handle_t map) {
    if (const OIDdescr_t* const entry = oid_map_find_asn(map, contents.data(), contents.size())) {
        return {entry->sn, entry->sn_len};
    }
    const auto len = static_cast<std::uint32_t>(contents.size());
    if (PKI_OID_TO_ALG(contents.data(), len) != PKI_ALG_NONE) {
        const std::string element = der_header(oid_tag, len).append(as_text(contents));
        std::string name;
        asn_oid_to_printable(as_bytes(element).data(), static_cast<std::uint32_t>(element.size()), name, false, {});
        return name;
    }
    const char* const known = find_name(dotted);
    return known == nullptr ? "" : known;
}

} // namespace

oid_text_t describe_oid(bytes_t contents, oid_map_handle_t map) {
    const auto dotted = exact_oid_dotted(as_text(contents));
    if (!dotted) return {};
    oid_text_t oid{{}, *dotted, is_minimal(contents)};
    if (oid.minimal) oid.name = name_of(contents, oid.dotted, map);
    return oid;
}

std::string oid_label(const oid_text_t& oid) {
    if (oid.dotted.empty()) return "not an object identifier";
    if (!oid.minimal) return oid.dotted + ", not minimal";
    return oid.name.empty() ? oid.dotted : oid.name + " (" + oid.dotted + ")";
}

std::string oid_name(const oid_text_t& oid) {
    return oid.name.empty() ? oid_label(oid) : oid.name;
}

json_t oid_json(const oid_text_t& oid) {
    const auto or_null = [](const std::string& text) { return text.empty() ? json_t() : json_text(text); };
    return {{"name", or_null(oid.name)}, {"oid", or_null(oid.dotted)}};
}

} // namespace tool
