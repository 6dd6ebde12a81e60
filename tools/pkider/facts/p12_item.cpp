#include "tools/pkider/facts/p12_item.h"

#include "tools/pkider/base/failure.h"
#include "tools/pkider/explain/name_fault.h"
#include "tools/pkider/facts/certificate.h"
#include "tools/pkider/facts/private_key.h"
#include "tools/pkider/formats/encodings.h"
#include "tools/pkider/formats/utf16.h"

namespace tool {

std::string certificate_subject(bytes_t certificate, oid_map_handle_t map) {
    der_cursor_t input(certificate);
    const der_element_t subject = read_certificate_subject(input);
    if (!input.at_end()) input.fail("the end of the certificate");
    const std::string text = print_name(subject.whole, map, false, subject.offset);
    return text.empty() ? "(empty)" : text;
}

p12_item_text_t describe_item(const pkcs12_item_t& item, oid_map_handle_t map) {
    p12_item_text_t text;
    text.is_key = item.type == PKCS12_ITEM_KEY;
    text.friendly_name = utf16be_to_utf8({item.friendly_name, item.friendly_name_len});
    text.local_key_id = to_hex(as_text({item.local_key_id, item.local_key_id_len}));
    try {
        text.what = text.is_key ? private_key_line(read_private_key(item_data(item)))
                                : certificate_subject(item_data(item), map);
    } catch (const data_fault_t& fault) {
        text.what = std::string(text.is_key ? "no PrivateKeyInfo: " : "no certificate: ") + fault.what();
    }
    return text;
}

} // namespace tool
