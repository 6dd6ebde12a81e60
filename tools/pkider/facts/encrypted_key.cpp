#include "tools/pkider/facts/encrypted_key.h"

#include "tools/pkider/base/failure.h"
#include "tools/pkider/facts/pbe_algorithm.h"

namespace tool {

encrypted_info_t read_encrypted_info(der_cursor_t& bytes) {
    der_cursor_t info(bytes.next(asn_tag_t::SEQUENCE, "an EncryptedPrivateKeyInfo"));
    encrypted_info_t out;
    out.algorithm = info.next(asn_tag_t::SEQUENCE, "the encryption algorithm").contents;
    out.ciphertext = info.next(asn_tag_t::OCTET_STRING, "the encrypted key").contents;
    return out;
}

encrypted_key_t read_encrypted_key(bytes_t der) {
    der_cursor_t input(der);
    encrypted_key_t key;
    key.algorithm = read_encrypted_info(input).algorithm;
    if (!input.at_end()) input.fail("the end of the encrypted key");
    if (!asn_read_pkcs8_encrypted_pki_gost(der.data(), der.size(), key.record)) {
        key.refusal = why_refused(key.algorithm);
    }
    return key;
}

void check_decryptable(const encrypted_key_t& key) {
    if (!key.refusal.empty()) throw data_fault_t("cannot be decrypted here: " + key.refusal);
}

std::string decrypt_key(const encrypted_key_t& key, bytes_t der, gost_pbe_t& crypto) {
    std::string plain;
    crypto.set_input(der);
    const bool done = crypto.decrypt(key.record, key.record.encrypted, key.record.encrypted_len, plain);
    crypto.set_input({});
    if (done) return plain;
    switch (crypto.fault()) {
    case pbe_fault_t::wrong_plaintext:
        throw failure_t(exit_code_t::wrong_password, "wrong password");
    case pbe_fault_t::too_many_iterations:
        throw data_fault_t("the key asks for " + crypto.too_many_iterations());
    default:
        throw data_fault_t(std::string("cannot be decrypted here: ") + pbe_fault_text(crypto.fault()));
    }
}

} // namespace tool
