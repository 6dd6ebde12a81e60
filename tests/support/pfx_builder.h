// PKCS#12 files for tests, a function for each structure of RFC 7292; made without the library.
//
//     pfx(data_content(safe({cert_bag(cert), key_bag(key, attributes({name_attribute(name)}))})))
#pragma once

#include "tests/support/der_builder.h"
#include "tests/support/hex.h"

namespace pkider_test {

inline const bytes_t data_oid = "06 09 2A 86 48 86 F7 0D 01 07 01"_hex;
inline const bytes_t enveloped_data_oid = "06 09 2A 86 48 86 F7 0D 01 07 03"_hex;
inline const bytes_t encrypted_data_oid = "06 09 2A 86 48 86 F7 0D 01 07 06"_hex;
inline const bytes_t key_bag_oid = "06 0B 2A 86 48 86 F7 0D 01 0C 0A 01 01"_hex;
inline const bytes_t shrouded_key_bag_oid = "06 0B 2A 86 48 86 F7 0D 01 0C 0A 01 02"_hex;
inline const bytes_t cert_bag_oid = "06 0B 2A 86 48 86 F7 0D 01 0C 0A 01 03"_hex;
inline const bytes_t crl_bag_oid = "06 0B 2A 86 48 86 F7 0D 01 0C 0A 01 04"_hex;
inline const bytes_t secret_bag_oid = "06 0B 2A 86 48 86 F7 0D 01 0C 0A 01 05"_hex;
inline const bytes_t safe_contents_bag_oid = "06 0B 2A 86 48 86 F7 0D 01 0C 0A 01 06"_hex;
inline const bytes_t x509_certificate_oid = "06 0A 2A 86 48 86 F7 0D 01 09 16 01"_hex;
inline const bytes_t sdsi_certificate_oid = "06 0A 2A 86 48 86 F7 0D 01 09 16 02"_hex;
inline const bytes_t friendly_name_oid = "06 09 2A 86 48 86 F7 0D 01 09 14"_hex;
inline const bytes_t local_key_id_oid = "06 09 2A 86 48 86 F7 0D 01 09 15"_hex;

// Attributes

inline bytes_t attribute(const bytes_t& oid, const bytes_t& values) {
    return der(0x30, {oid, der(0x31, values)});
}
inline bytes_t name_attribute(const bytes_t& name) {
    return attribute(friendly_name_oid, der(0x1E, name));
}
inline bytes_t id_attribute(const bytes_t& id) {
    return attribute(local_key_id_oid, der(0x04, id));
}
inline bytes_t attributes(std::initializer_list<bytes_t> list) {
    return der(0x31, list);
}

// Bags and their list

inline bytes_t bag(const bytes_t& oid, const bytes_t& value, const bytes_t& attribute_set = {}) {
    return der(0x30, {oid, der(0xA0, value), attribute_set});
}
inline bytes_t key_bag(const bytes_t& key, const bytes_t& attribute_set = {}) {
    return bag(key_bag_oid, key, attribute_set);
}
inline bytes_t cert_value(const bytes_t& type_oid, const bytes_t& cert) {
    return der(0x30, {type_oid, der(0xA0, der(0x04, cert))});
}
inline bytes_t cert_bag(const bytes_t& cert, const bytes_t& attribute_set = {}) {
    return bag(cert_bag_oid, cert_value(x509_certificate_oid, cert), attribute_set);
}

/// An OCTET STRING around SafeContents.
inline bytes_t safe(std::initializer_list<bytes_t> bags) {
    return der(0x04, der(0x30, bags));
}

// Encryption

/// A PBES2 AlgorithmIdentifier. `count` is the whole INTEGER.
inline bytes_t pbes2(const bytes_t& salt, const bytes_t& count, const bytes_t& iv) {
    const bytes_t prf = "30 0A 06 06 2A 85 03 02 02 0A 05 00"_hex;
    const bytes_t pbkdf2_params = der(0x30, {der(0x04, salt), count, prf});
    const bytes_t derivation = der(0x30, {"06 09 2A 86 48 86 F7 0D 01 05 0C"_hex, pbkdf2_params});
    const bytes_t cipher_params = der(0x30, {der(0x04, iv), "06 07 2A 85 03 02 02 1F 01"_hex});
    const bytes_t scheme = der(0x30, {"06 06 2A 85 03 02 02 15"_hex, cipher_params});
    return der(0x30, {"06 09 2A 86 48 86 F7 0D 01 05 0D"_hex, der(0x30, {derivation, scheme})});
}
inline bytes_t sample_pbes2() {
    return pbes2("51 52 53 54"_hex, "02 02 03 E8"_hex, "61 62 63"_hex);
}

/// An EncryptedPrivateKeyInfo.
inline bytes_t encrypted_key(const bytes_t& ciphertext, const bytes_t& algorithm = sample_pbes2()) {
    return der(0x30, {algorithm, der(0x04, ciphertext)});
}
inline bytes_t shrouded_bag(const bytes_t& value, const bytes_t& attribute_set = {}) {
    return bag(shrouded_key_bag_oid, value, attribute_set);
}

inline bytes_t encrypted_data(const bytes_t& ciphertext, const bytes_t& algorithm = sample_pbes2()) {
    return der(0x30, {"02 01 00"_hex, der(0x30, {data_oid, algorithm, der(0x80, ciphertext)})});
}

// Contents and the whole

inline bytes_t content_info(const bytes_t& oid, const bytes_t& content) {
    return der(0x30, {oid, der(0xA0, content)});
}
inline bytes_t data_content(const bytes_t& wrapped_safe) {
    return content_info(data_oid, wrapped_safe);
}
inline bytes_t encrypted_content(const bytes_t& data) {
    return content_info(encrypted_data_oid, data);
}

/// The OCTET STRING that carries the AuthenticatedSafe.
inline bytes_t auth_safe(std::initializer_list<bytes_t> infos) {
    return der(0x04, der(0x30, infos));
}

inline const bytes_t mac_algorithm = "06 06 2A 85 03 02 02 09 05 00"_hex;

inline bytes_t mac_data(const bytes_t& digest, const bytes_t& salt, const bytes_t& count) {
    return der(0x30, {der(0x30, {der(0x30, mac_algorithm), der(0x04, digest)}), der(0x04, salt), count});
}
inline bytes_t sample_mac_data() {
    return mac_data("D1 D2 D3"_hex, "C1 C2"_hex, "02 02 07 D0"_hex);
}

inline bytes_t pfx_around(const bytes_t& octets, const bytes_t& mac = sample_mac_data()) {
    return der(0x30, {"02 01 03"_hex, content_info(data_oid, octets), mac});
}
inline bytes_t pfx(std::initializer_list<bytes_t> infos) {
    return pfx_around(auth_safe(infos));
}

} // namespace pkider_test
