// A PKCS#12 file written by nested asn_writer_t, one element a call, to hold the counting writer against.
#pragma once

#include <pkider/pkcs12.h>

#include "tests/support/bottom_up.h"
#include "tests/support/bottom_up_keys.h"

#include <list>
#include <string>

namespace pkider_test {

inline std::string bottom_up_attribute(const char* oid, uint8_t tag, const uint8_t* value, uint64_t len) {
    if (len == 0) return {};
    return bottom_up(0x30, {hex_string(oid), bottom_up(0x31, {bottom_up(tag, value, len)})});
}

inline std::string bottom_up_bag(const pkcs12_item_t& item) {
    std::string type, value;
    if (item.type == PKCS12_ITEM_KEY) {
        type = hex_string("06 0B 2A 86 48 86 F7 0D 01 0C 0A 01 01");
        value = bottom_up(0xA0, item.data, item.data_len);
    } else if (item.type == PKCS12_ITEM_CERT) {
        const std::string octets = bottom_up(0x04, item.data, item.data_len);
        const std::string cert_type = hex_string("06 0A 2A 86 48 86 F7 0D 01 09 16 01");
        type = hex_string("06 0B 2A 86 48 86 F7 0D 01 0C 0A 01 03");
        value = bottom_up(0xA0, {bottom_up(0x30, {cert_type, bottom_up(0xA0, {octets})})});
    }
    const std::string name =
        bottom_up_attribute("06 09 2A 86 48 86 F7 0D 01 09 14", 0x1E, item.friendly_name, item.friendly_name_len);
    const std::string id =
        bottom_up_attribute("06 09 2A 86 48 86 F7 0D 01 09 15", 0x04, item.local_key_id, item.local_key_id_len);
    const std::string attributes = name.empty() && id.empty() ? std::string() : bottom_up(0x31, {name, id});
    return bottom_up(0x30, {type, value, attributes});
}

inline std::string bottom_up_safe(const std::list<pkcs12_item_t>& items) {
    std::string bags;
    for (const pkcs12_item_t& item : items) bags += bottom_up_bag(item);
    return bottom_up(0x04, {bottom_up(0x30, {bags})});
}

inline std::string bottom_up_content_info(const char* oid, const std::string& content) {
    return bottom_up(0x30, {hex_string(oid), bottom_up(0xA0, {content})});
}

inline std::string bottom_up_mac_data(const pkcs12_mac_t& mac) {
    const std::string algorithm = bottom_up(0x30, {hex_string("06 06 2A 85 03 02 02 09 05 00")});
    const std::string digest_info = bottom_up(0x30, {algorithm, bottom_up(0x04, mac.digest, mac.digest_len)});
    const std::string salt = bottom_up(0x04, mac.salt, mac.salt_len);
    return bottom_up(0x30, {digest_info, salt, bottom_up_count(mac.iterations)});
}

inline std::string bottom_up_pfx(const pkcs12_easy_t& in, pbe_crypto_t& crypto) {
    const char* const data = "06 09 2A 86 48 86 F7 0D 01 07 01";
    const char* const encrypted_data = "06 09 2A 86 48 86 F7 0D 01 07 06";
    const auto bytes = [](const std::string& text) { return reinterpret_cast<const uint8_t*>(text.data()); };

    std::string infos;
    if (!in.plain_items.empty()) infos += bottom_up_content_info(data, bottom_up_safe(in.plain_items));
    if (!in.protected_items.empty()) {
        const std::string safe = bottom_up_safe(in.protected_items);
        pkcs8_encrypted_pki_gost_t params;
        std::string storage;
        crypto.encrypt(bytes(safe), safe.size(), params, storage);
        const std::string content = bottom_up(0x80, {storage});
        const std::string info = bottom_up(0x30, {hex_string(data), bottom_up_encrypted_alg(params), content});
        infos += bottom_up_content_info(encrypted_data, bottom_up(0x30, {hex_string("02 01 00"), info}));
    }
    const std::string auth_safe = bottom_up(0x04, {bottom_up(0x30, {infos})});
    pkcs12_mac_t mac;
    const bool made = crypto.make_mac(bytes(auth_safe), auth_safe.size(), mac);
    return bottom_up(0x30, {hex_string("02 01 03"), bottom_up_content_info(data, auth_safe),
                            bottom_up_mac_data(made ? mac : in.mac)});
}

} // namespace pkider_test
