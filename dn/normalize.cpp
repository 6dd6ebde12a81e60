#include <pkider/dn.h>

#include "dn/dn_decoder.h"
#include "dn/dn_encoder.h"

#include <utility>

asn_dn_result_t printable_dn_normalize_r(const std::string& dn, std::string& out, std::string* der,
                                         oid_map_handle_t map) {
    // The line is text and ends at its first NUL. Required: DnNormalize.RequiredLineEndsAtItsFirstNul.
    std::string encoding;
    asn_dn_result_t result = pkider::printable_to_asn_dn_r(dn.c_str(), encoding, map);
    if (result.code != 0) return result;

    // A faulty "#" value shows only here; what was printed before it is handed out with the DER. So does a length that
    // the encoder had to cut. Required: DnNormalize.RequiredValueOf0x10000BytesReadsAsAnother.
    std::string text;
    result = pkider::asn_dn_to_printable_r(reinterpret_cast<const uint8_t*>(encoding.data()),
                                           static_cast<uint32_t>(encoding.size()), text, DN_ORDER_AS_ENCODED, map);
    if (der != nullptr) *der = std::move(encoding);
    out = std::move(text);
    return result;
}

bool printable_dn_normalize(const std::string& dn, std::string& out, std::string* der, oid_map_handle_t map) {
    return printable_dn_normalize_r(dn, out, der, map).code == 0;
}
